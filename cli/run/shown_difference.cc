#include "cli/run/shown_difference.h"

#include <algorithm>

#include "cli/messages/excerpt.h"

namespace mtranslate {

namespace {

/* Tabs stay, what would steer a terminal does not. */
std::string printable_line(std::string_view line) {
    std::string text;
    for (std::size_t tab; (tab = line.find('\t')) != line.npos; line.remove_prefix(tab + 1))
        text += printable(line.substr(0, tab)) + '\t';
    return text + printable(line);
}

const char *colour_of(std::string_view line) {
    if (line.starts_with("---") || line.starts_with("+++")) return "\x1b[1m";
    switch (line.empty() ? ' ' : line.front()) {
        case '-': return "\x1b[31m";
        case '+': return "\x1b[32m";
        case '@': return "\x1b[36m";
        default: return "";
    }
}

}  // namespace

std::string shown_difference(std::string_view difference, bool has_colours) {
    std::string shown;
    while (!difference.empty()) {
        const std::size_t end = std::min(difference.find('\n'), difference.size());
        const std::string_view line = difference.substr(0, end);
        const std::string colour = has_colours ? colour_of(line) : "";
        shown += colour + printable_line(line) + (colour.empty() ? "\n" : "\x1b[m\n");
        difference.remove_prefix(std::min(end + 1, difference.size()));
    }
    return shown;
}

}  // namespace mtranslate
