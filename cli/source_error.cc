/* From the library's error text and offset to a compiler's message. */
#include "cli/source_error.h"

#include <algorithm>

namespace mtranslate {

namespace {

constexpr std::string_view LINE_ENDS = "\n\r\f";

bool skip(std::string_view &text, std::string_view prefix) {
    if (!text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

/* Skips "FILE, ", where the library has cut a long name to "..." and its end. */
bool skip_file_name(std::string_view &text, std::string_view file) {
    if (skip(text, std::string(file) + ", ")) return true;
    if (!skip(text, "...")) return false;
    for (std::size_t end = text.find(", "); end != text.npos; end = text.find(", ", end + 1)) {
        if (!file.ends_with(text.substr(0, end))) continue;
        text.remove_prefix(end + 2);
        return true;
    }
    return false;
}

/* Skips the header up to the message: "on line 7 of f.m, " or "on line 7, ". */
bool skip_header(std::string_view &text, const std::optional<std::string> &file) {
    if (!skip(text, "on line ")) return false;
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(digits);
    if (!file) return skip(text, ", ");
    return skip(text, " of ") && skip_file_name(text, *file);
}

/* Where the line behind the one around offset begins; npos behind the last line. A carriage return
 * and the line feed after it are one line end. */
std::size_t next_line(std::string_view text, std::size_t offset) {
    const std::size_t end = text.find_first_of(LINE_ENDS, offset);
    if (end == text.npos) return text.npos;
    return end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
}

/* Blanks up to column, as wide as the characters before it: a tab stays a tab, and the bytes that
 * continue a UTF-8 character take no room. */
std::string caret_line(const Place &place) {
    std::string line;
    for (const char c : place.line_text.substr(0, place.column - 1)) {
        const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        if (!continues) line += c == '\t' ? '\t' : ' ';
    }
    return line + "^\n";
}

std::string describe_place(const std::string &name, const std::string &message,
                           const Place &place) {
    return name + ':' + std::to_string(place.line) + ':' + std::to_string(place.column) +
           ": error: " + message + '\n' + std::string(place.line_text) + '\n' + caret_line(place);
}

}  // namespace

Place find_place(std::string_view text, std::size_t offset) {
    text = text.substr(0, text.find_last_not_of(LINE_ENDS) + 1);
    offset = std::min(offset, text.size());
    std::size_t line = 1;
    std::size_t start = 0;
    for (std::size_t next = next_line(text, 0); next <= offset; next = next_line(text, next)) {
        start = next;
        ++line;
    }
    text.remove_prefix(start);
    const std::string_view line_text = text.substr(0, text.find_first_of(LINE_ENDS));
    return {line, std::min(offset - start, line_text.size()) + 1, line_text};
}

std::optional<std::string> message_in_source(const RaisedError &error) {
    std::string_view text = error.message;
    if (!skip_header(text, error.file)) return std::nullopt;
    return std::string(text.substr(0, text.find('\n')));
}

std::string describe(const RaisedError &error, const Source &source) {
    const bool in_called_file = error.file && *error.file != source.argument;
    const std::string &name = in_called_file ? *error.file : source.shown_name;
    const std::optional<std::string> message = message_in_source(error);
    if (!message) return (error.file ? name : "mtranslate") + ": error: " + error.message + '\n';
    const auto text = error.file ? read_regular_file(*error.file) : source.argument;
    if (!text) return name + ": error: " + *message + '\n';
    return describe_place(name, *message, find_place(*text, error.offset));
}

}  // namespace mtranslate
