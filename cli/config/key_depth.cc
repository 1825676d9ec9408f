/* Counting dots of keys. */
#include "cli/config/key_depth.h"

#include <algorithm>
#include <string>

namespace mtranslate {

namespace {

constexpr std::size_t MOST_DOTS = 256;

/* After the string that begins at the place; one that is not closed ends with its line, a long one
 * with the text. */
std::size_t after_string(std::string_view text, std::size_t at) {
    const char quote = text[at];
    const std::string three(3, quote);
    const bool is_long = text.substr(at, 3) == three;
    const std::string_view end = is_long ? std::string_view(three) : text.substr(at, 1);
    for (at += end.size(); at < text.size(); ++at) {
        if (text.substr(at).starts_with(end) || (!is_long && text[at] == '\n')) break;
        if (quote == '"' && text[at] == '\\') ++at;
    }
    at = std::min(at + end.size(), text.size());
    while (is_long && at < text.size() && text[at] == quote) ++at;
    return at;
}

}  // namespace

std::size_t find_deep_key(std::string_view text) {
    std::size_t dots = 0;
    std::size_t open = 0; /* brackets */
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '#') at = std::min(text.find('\n', at), text.size()) - 1;
        if (c == '"' || c == '\'') at = after_string(text, at) - 1;
        if (c == '[' || c == '{') ++open;
        if ((c == ']' || c == '}') && open > 0) --open;
        if (c == '\n' && open == 0) dots = 0;
        if (c == '.' && ++dots > MOST_DOTS) return at;
    }
    return text.npos;
}

}  // namespace mtranslate
