/* Lines and marks are found once; what is asked is counted from the nearest one. */
#include "cli/support/text_places.h"

#include <algorithm>

namespace mtranslate {

namespace {

constexpr std::size_t MARK_DISTANCE = 256; /* bytes, at least */

bool begins_character(char c) { return (c & 0xC0) != 0x80; }

/* The first of the marks, sorted by the field, that is beyond the value. */
template <class Mark>
auto first_beyond(const std::vector<Mark> &marks, std::size_t value, std::size_t Mark::*field) {
    return std::upper_bound(
        marks.begin(), marks.end(), value,
        [=](std::size_t wanted, const Mark &mark) { return wanted < mark.*field; });
}

}  // namespace

TextPlaces::TextPlaces(std::string_view text) : text_(text), lines_{{0, 0}}, marks_{{0, 0}} {
    std::size_t character = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (begins_character(text[at])) {
            if (at >= marks_.back().offset + MARK_DISTANCE) marks_.push_back({at, character});
            ++character;
        }
        if (text[at] == '\n') lines_.push_back({at + 1, character});
    }
}

std::size_t TextPlaces::offset_of(TextPlace place) const {
    if (place.line > lines_.size()) return text_.size();
    const Mark line = lines_[place.line == 0 ? 0 : place.line - 1];
    const std::size_t wanted = line.character + std::max<std::size_t>(place.column, 1) - 1;
    const auto after = first_beyond(marks_, wanted, &Mark::character);
    const Mark mark = std::max(line, *std::prev(after), [](const Mark &a, const Mark &b) {
        return a.character < b.character;
    });
    std::size_t at = mark.offset;
    for (std::size_t left = wanted - mark.character; left > 0 && at < text_.size(); --left)
        for (++at; at < text_.size() && !begins_character(text_[at]);) ++at;
    return at;
}

/* Of the bytes in front, those that begin one. */
std::size_t TextPlaces::character_of(std::size_t offset) const {
    const auto after = first_beyond(marks_, offset, &Mark::offset);
    const Mark mark = *std::prev(after);
    const std::string_view rest = text_.substr(mark.offset, offset - mark.offset);
    return mark.character +
           static_cast<std::size_t>(std::count_if(rest.begin(), rest.end(), begins_character));
}

TextPlace TextPlaces::place_of(std::size_t offset) const {
    const auto after = first_beyond(lines_, offset, &Mark::offset);
    const Mark &line = *std::prev(after);
    return {static_cast<std::size_t>(after - lines_.begin()),
            character_of(offset) - line.character + 1};
}

std::size_t TextPlaces::begin_of_line(std::size_t offset) const {
    return std::prev(first_beyond(lines_, offset, &Mark::offset))->offset;
}

}  // namespace mtranslate
