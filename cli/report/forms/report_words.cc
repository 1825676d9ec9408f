/* Numbers and names in words. */
#include "cli/report/forms/report_words.h"

namespace mtranslate {

const char *words_of(FileState state) {
    switch (state) {
        case FileState::Translated: return "translated";
        case FileState::Gaps: return "with gaps";
        case FileState::Errors: return "with errors";
        default: return "failed";
    }
}

const char *words_of(CallEnd end) {
    switch (end) {
        case CallEnd::Found: return "found";
        case CallEnd::Answered: return "answered by the host";
        case CallEnd::BuiltIn: return "built in";
        case CallEnd::ClassOnly: return "found in classes only";
        default: return "unresolved";
    }
}

std::string name_of_message(const std::string &code) {
    const MessageRow *row = find_message(code);
    return row ? std::string(row->code) + ' ' + row->name : "other";
}

std::string grouped(std::size_t number) {
    const std::string digits = std::to_string(number);
    std::string text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
    return text;
}

std::string counted(std::size_t number, const std::string &one, const std::string &several) {
    return grouped(number) + ' ' + (number == 1 ? one : several);
}

}  // namespace mtranslate
