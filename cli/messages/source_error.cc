/* From the library's record of an error to a compiler's message. */
#include "cli/messages/source_error.h"

#include <algorithm>
#include <array>

#include "cli/messages/excerpt.h"

namespace mtranslate {

namespace {

constexpr std::string_view LINE_ENDS = "\n\r\f";

/* What a message leaves open: the causes that have it in common, or the way out. */
struct Note {
    std::string_view message; /* the library's text, or its beginning */
    bool has_place;
    std::string_view text;
};

constexpr std::array NOTES = {
    Note{"lexical error.", true, "no token begins here; is a string not closed?"},
    Note{"memory exhausted", true,
         "the source is nested too deeply here, or has too many statements in a row"},
    Note{"out of dynamic memory in ", false, "the system gives no more memory"},
    Note{"fatal error - scanner input buffer overflow", false, "the system gives no more memory"},
    Note{"scripts are nested too deeply", true, "500 scripts, each called by the one before"},
    Note{"input in flex scanner failed", true, "the file cannot be read after this place"},
};

std::string_view note_on(const RaisedError &error) {
    for (const Note &note : NOTES)
        if (note.has_place == (error.line > 0) && error.message.starts_with(note.message))
            return note.text;
    return "";
}

/* Where the line after the one around offset begins; npos after the last line. A carriage return
 * and the line feed after it are one line end. */
std::size_t next_line(std::string_view text, std::size_t offset) {
    const std::size_t end = text.find_first_of(LINE_ENDS, offset);
    if (end == text.npos) return text.npos;
    return end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
}

/* The error, and after it what its message leaves open. */
Diagnostics with_note(Diagnostic diagnostic, const RaisedError &error) {
    diagnostic.text = error.message;
    const std::string_view note_text = note_on(error);
    if (note_text.empty()) return {diagnostic};
    Diagnostic note = diagnostic;
    note.severity = SEVERITY_NOTE;
    note.text = note_text;
    note.excerpt.clear();
    return {diagnostic, note};
}

/* What the tool calls the file that was being read. */
std::string name_of_file(const RaisedError &error, const Source &source) {
    const bool in_called_file = error.file && *error.file != source.argument;
    return in_called_file ? *error.file : source.shown_name;
}

Diagnostic without_place(const RaisedError &error, const Source &source) {
    Diagnostic diagnostic;
    const bool names_file = error.file && error.message.find(*error.file) == std::string::npos;
    if (names_file) diagnostic.file = name_of_file(error, source);
    return diagnostic;
}

struct ErrorPlace {
    std::size_t line;           /* from 1 */
    std::size_t column;         /* in bytes, from 1 */
    std::string_view line_text; /* without its line end */
};

/* An offset after the last line with characters is taken back to its end: where the input ended
 * too early, that is what the user has to complete. */
ErrorPlace find_place(std::string_view text, std::size_t offset) {
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

Diagnostic with_place(const RaisedError &error, const Source &source) {
    Diagnostic diagnostic;
    diagnostic.file = name_of_file(error, source);
    diagnostic.line = error.line;
    const auto text = error.file ? read_regular_file(*error.file) : source.argument;
    if (!text) return diagnostic;
    const ErrorPlace place = find_place(*text, error.offset);
    diagnostic.line = place.line;
    diagnostic.column = diagnostic.end_column = place.column;
    diagnostic.offset = error.offset;
    diagnostic.excerpt = excerpt(place.line_text, place.column - 1, place.column - 1);
    return diagnostic;
}

}  // namespace

Diagnostics diagnostics_of(const RaisedError &error, const Source &source) {
    return with_note(error.line > 0 ? with_place(error, source) : without_place(error, source),
                     error);
}

ExitCode exit_code_of(const RaisedError &error) {
    return error.line > 0 && !error.is_unread ? ExitCode::BadSource : ExitCode::Trouble;
}

}  // namespace mtranslate
