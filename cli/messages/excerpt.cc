/* From bytes to columns: characters, tabs and escapes. */
#include "cli/messages/excerpt.h"

#include <algorithm>
#include <cassert>

#include "cli/support/characters.h"

namespace mtranslate {

namespace {

constexpr std::size_t COLUMNS = 120;
constexpr std::size_t TAB_STOP = 8;
constexpr std::size_t ESCAPE_COLUMNS = 4;
constexpr std::string_view DOTS = "...";

/* False for control characters, and for what turns the direction of writing. */
bool is_shown(char32_t code) {
    const bool turns = code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
                       (code >= 0x2066 && code <= 0x2069) || code == 0xFEFF;
    return (code >= 0x20 && code < 0x7F) || (code >= 0xA0 && !turns);
}

/* Bytes of the character at the front of text that can be shown as it is; 0 for none. */
std::size_t shown_length(std::string_view text) {
    const Character first = first_character(text);
    return is_shown(first.code) ? first.length : 0;
}

std::string escaped(char c) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    return std::string("\\x") + DIGITS[byte >> 4] + DIGITS[byte & 15];
}

/* One step along a line: the bytes that it takes and the columns that they need. */
struct Step {
    std::size_t bytes;
    std::size_t columns;
    bool is_escaped;
};

/* The step from the front of text, which stands in the column (from 0). */
Step step(std::string_view text, std::size_t column) {
    if (text[0] == '\t') return {1, TAB_STOP - column % TAB_STOP, false};
    if (const std::size_t length = shown_length(text)) return {length, 1, false};
    return {1, ESCAPE_COLUMNS, true};
}

/* Columns of text from a column on; counts no further than the first beyond most. */
std::size_t count_columns(std::string_view text, std::size_t column, std::size_t most) {
    const std::size_t first = column;
    while (!text.empty() && column - first <= most) {
        const Step next = step(text, column);
        column += next.columns;
        text.remove_prefix(next.bytes);
    }
    return column - first;
}

/* Where the character begins that ends before at. */
std::size_t step_back(std::string_view line, std::size_t at) {
    for (std::size_t length = std::min<std::size_t>(4, at); length > 1; --length)
        if (shown_length(line.substr(at - length, length)) == length) return at - length;
    return at - 1;
}

/* Where the part of the line to be shown begins, so that the caret at place is inside: half of the
 * columns lie before it, more where less is after it. */
std::size_t first_shown(std::string_view line, std::size_t place) {
    const std::size_t after =
        std::max<std::size_t>(1, count_columns(line.substr(place), 0, COLUMNS / 2));
    std::size_t width = COLUMNS - std::min(after, COLUMNS / 2);
    if (count_columns(line.substr(0, place), 0, width) <= width) return 0;
    width -= DOTS.size();
    std::size_t first = place;
    for (std::size_t before = place; before > 0;) {
        before = step_back(line, before);
        const Step widest = step(line.substr(before), 0);
        if (widest.columns > width) break;
        width -= widest.columns;
        first = before;
    }
    return first;
}

/* The two lines while they are drawn. */
struct Drawing {
    std::string text;
    std::string marks;
    std::size_t column = 0;
};

/* Draws the front of rest, with mark under its first column and fill under the others. */
std::size_t draw(Drawing &drawing, std::string_view rest, char mark, char fill) {
    const Step next = step(rest, drawing.column);
    const bool is_blank_tab = rest[0] == '\t' && mark == ' ';
    drawing.text += next.is_escaped ? escaped(rest[0]) : rest.substr(0, next.bytes);
    drawing.marks += is_blank_tab ? "\t" : mark + std::string(next.columns - 1, fill);
    drawing.column += next.columns;
    return next.bytes;
}

/* Whether what is left of the line has to be cut here. */
bool is_full(const Drawing &drawing, std::string_view rest) {
    const std::size_t next = drawing.column + step(rest, drawing.column).columns;
    if (next + DOTS.size() <= COLUMNS) return false;
    const std::size_t width = COLUMNS - drawing.column;
    return count_columns(rest, drawing.column, width) > width;
}

/* Whether every character is shown as it is, in one column. */
bool is_plain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/* A short line without tabs and escapes needs no steps. */
std::string plain_excerpt(std::string_view line, std::size_t begin, std::size_t end) {
    const std::size_t after = std::max(std::min(end, line.size()), begin + 1);
    std::string drawn;
    drawn.reserve(line.size() + after + 2);
    drawn.append(line).append(1, '\n').append(begin, ' ').append(1, '^');
    return drawn.append(after - begin - 1, '~').append(1, '\n');
}

}  // namespace

std::string excerpt(std::string_view line, std::size_t begin, std::size_t end) {
    assert(begin <= line.size());
    if (line.size() < COLUMNS && is_plain(line)) return plain_excerpt(line, begin, end);
    std::size_t at = first_shown(line, begin);
    Drawing drawing;
    if (at > 0) drawing = {std::string(DOTS), std::string(DOTS.size(), ' '), DOTS.size()};
    while (at < line.size()) {
        const std::string_view rest = line.substr(at);
        if (is_full(drawing, rest)) {
            drawing.text += DOTS;
            break;
        }
        const char fill = begin <= at && at < end ? '~' : ' ';
        at += draw(drawing, rest, at == begin ? '^' : fill, fill);
    }
    if (begin == line.size()) drawing.marks += '^';
    drawing.marks.resize(drawing.marks.find_last_not_of(" \t") + 1);
    return drawing.text + '\n' + drawing.marks + '\n';
}

std::string printable(std::string_view text) {
    if (is_plain(text)) return std::string(text);
    std::string shown;
    while (!text.empty()) {
        const std::size_t length = shown_length(text);
        shown += length > 0 ? std::string(text.substr(0, length)) : escaped(text[0]);
        text.remove_prefix(std::max<std::size_t>(1, length));
    }
    return shown;
}

}  // namespace mtranslate
