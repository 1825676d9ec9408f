#include "cli/messages/message_writer.h"

namespace mtranslate {

std::unique_ptr<MessageWriter> make_message_writer(MessageFormat format, std::ostream &to,
                                                   TextStyle style) {
    switch (format) {
        case MessageFormat::Json: return make_json_writer(to);
        case MessageFormat::Sarif: return make_sarif_writer(to);
        case MessageFormat::Github: return make_github_writer(to);
        case MessageFormat::Text: break;
    }
    return make_text_writer(to, style);
}

}  // namespace mtranslate
