#include "cli/messages/message_table.h"

namespace mtranslate {

std::span<const MessageRow *const> message_rows() {
    std::size_t count = 0;
    const MessageRow *const *rows = mTranslateMessageKinds(&count);
    return {rows, count};
}

const char *severity_name(MessageSeverity severity) {
    static constexpr const char *NAMES[] = {"error", "gap", "warning", "note"};
    return NAMES[severity];
}

}  // namespace mtranslate
