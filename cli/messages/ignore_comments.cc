/* Comments that leave messages out. */
#include "cli/messages/ignore_comments.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace mtranslate {

namespace {

constexpr std::string_view NAME = "mtranslate:";
constexpr std::string_view BLANKS = " \t\r";
constexpr std::string_view LINE_ENDS = "\r\n";

/* Takes the prefix, and blanks after it, off the text if it is there. */
bool skip(std::string_view &text, std::string_view prefix) {
    if (!text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return true;
}

/* Whether the list, of codes and names with blanks and commas, has the message. */
bool names_message(std::string_view list, const MessageRow &message) {
    while (!list.empty()) {
        const std::size_t length = std::min(list.find_first_of(" \t\r,;"), list.size());
        if (find_message(std::string(list.substr(0, length))) == &message) return true;
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return false;
}

/* Whether a comment after one of the line's % or # has the message left out. */
bool ignores(std::string_view line, const MessageRow &message) {
    for (std::size_t at = 0; (at = line.find_first_of("%#", at)) != line.npos; ++at) {
        std::string_view text = line.substr(at);
        skip(text, text.substr(0, 1));
        if (skip(text, NAME) && skip(text, "ignore") && names_message(text, message)) return true;
    }
    return false;
}

/* The same for the comments in front of the first statement. */
bool head_ignores(std::string_view text, const MessageRow &message) {
    skip(text, "\xEF\xBB\xBF");
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find_first_of(LINE_ENDS));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        skip(line, "");
        if (!line.empty() && line[0] != '%' && line[0] != '#') return false;
        if (ignores(line, message)) return true;
    }
    return false;
}

}  // namespace

bool has_ignore_comments(std::string_view text) { return text.find(NAME) != text.npos; }

bool is_ignored(const MessageRow &message, std::string_view line, std::string_view text) {
    return ignores(line, message) || head_ignores(text, message);
}

}  // namespace mtranslate
