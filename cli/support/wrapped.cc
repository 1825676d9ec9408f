/* Breaking lines between words. */
#include "cli/support/wrapped.h"

#include <sstream>

namespace mtranslate {

std::string wrapped(const std::string &text, std::size_t indent) {
    constexpr std::size_t COLUMNS = 80;
    std::istringstream words(text);
    std::string lines;
    std::size_t column = indent;
    for (std::string word; words >> word;) {
        const bool is_first = column == indent;
        const bool fits = !is_first && column + 1 + word.size() <= COLUMNS;
        if (!is_first) lines += fits ? " " : '\n' + std::string(indent, ' ');
        column = fits ? column + 1 + word.size() : indent + word.size();
        lines += word;
    }
    return lines + '\n';
}

}  // namespace mtranslate
