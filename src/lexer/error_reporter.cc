// Reporting errors in the source: header, excerpt and caret in one text for the host.
#include "lexer/error_reporter.h"

#include <stdio.h>
#include <string.h>

#include "lexer/position.h"
#include "run/last_error.h"
#include "run/run_state.h"

namespace {

constexpr size_t MESSAGE_SIZE = 2048;
constexpr size_t CAPACITY = MESSAGE_SIZE - 1;
// A longer text is cut to this length, line ends included.
constexpr size_t LONGEST_EXCERPT = 1024;
// Carets stand on columns below these: under the column reached, or a previous line's end.
constexpr int CARET_COLUMNS = 80;
constexpr size_t CARET_LINE_COLUMNS = 900;

// The line shown, and the caret under it.
struct Excerpt {
    const char *text;
    size_t length;       // characters shown of the text
    const char *ending;  // what is written after them
    long caret;          // its column from 0, or NO_CARET
};
constexpr long NO_CARET = -1;

const char *skip_line_end(const char *text) {
    if (*text == '\r') text++;
    if (*text == '\n') text++;
    return text;
}

// An error found at the start of a line belongs to the line that has just ended.
bool choose_line() {
    SourceText = skip_line_end(SourceText);
    if (SourcePos != 0) return false;
    PrevLine = skip_line_end(PrevLine);
    SourceText = PrevLine;
    return true;
}

long caret_column(const Excerpt *excerpt, bool is_previous, bool is_cut) {
    if (!is_previous) return SourcePos > 0 && SourcePos < CARET_COLUMNS ? SourcePos : NO_CARET;
    if (is_cut || excerpt->length >= CARET_LINE_COLUMNS) return NO_CARET;
    return excerpt->length > 0 ? static_cast<long>(excerpt->length) - 1 : 0;
}

Excerpt choose_excerpt() {
    bool is_previous = choose_line();
    bool is_cut = strlen(SourceText) > LONGEST_EXCERPT;
    Excerpt excerpt = {SourceText, LONGEST_EXCERPT, "...\n", NO_CARET};
    if (!is_cut) {
        excerpt.length = strcspn(SourceText, "\n\r");
        excerpt.ending = "\n";
    }
    excerpt.caret = caret_column(&excerpt, is_previous, is_cut);
    return excerpt;
}

size_t caret_size(const Excerpt *excerpt) {
    return excerpt->caret == NO_CARET ? 0 : static_cast<size_t>(excerpt->caret) + 2;
}

// Formats the header into capacity characters and a NUL; answers the length that it needs.
size_t format_header(char *to, size_t capacity, const char *dots, const char *name,
                     const ErrorRecord *error) {
    const char *message = error->message;
    int length = name ? snprintf(to, capacity + 1, "on line %u of %s%s, %s\n", error->line, dots,
                                 name, message)
                      : snprintf(to, capacity + 1, "on line %u, %s\n", error->line, message);
    return static_cast<size_t>(length);
}

// A header that is too long loses the beginning of the file name, then the end of its message.
size_t write_header(char *to, size_t capacity, const ErrorRecord *error) {
    const char *name = error->file;
    size_t length = format_header(to, capacity, "", name, error);
    if (length > capacity && name) {
        size_t excess = length - capacity + strlen("...");
        size_t name_length = strlen(name);
        name += excess < name_length ? excess : name_length;
        length = format_header(to, capacity, "...", name, error);
    }
    if (length <= capacity) return length;
    to[capacity - 1] = '\n';
    return capacity;
}

char *write_excerpt(char *to, size_t capacity, const Excerpt *excerpt) {
    size_t ending = strlen(excerpt->ending);
    size_t length = excerpt->length + ending <= capacity ? excerpt->length : capacity - ending;
    memcpy(to, excerpt->text, length);
    return stpcpy(to + length, excerpt->ending);
}

void write_caret(char *to, long column) {
    memset(to, ' ', static_cast<size_t>(column));
    memcpy(to + column, "^\n", 3);
}

// Header and caret always fit: what is too long is cut from the excerpt's end.
HostValue raise_excerpt(const ErrorRecord *error, const Excerpt *excerpt) {
    char text[MESSAGE_SIZE];
    size_t after_header = strlen(excerpt->ending) + caret_size(excerpt);
    size_t header = write_header(text, CAPACITY - after_header, error);
    char *at = write_excerpt(text + header, CAPACITY - header - caret_size(excerpt), excerpt);
    if (excerpt->caret != NO_CARET) write_caret(at, excerpt->caret);
    return raise_framed_error(error, text);
}

}  // namespace

static HostValue raise_read(const char *message, EndCause cause) {
    Excerpt excerpt = choose_excerpt();
    ErrorRecord error = {message, InputFileName, SourceLine, TokenOffset, cause};
    return raise_excerpt(&error, &excerpt);
}

HostValue yyerror(const char *message) { return raise_read(message, GIVEN_IS_WRONG); }

void raise_where_read(const RunEnd &end) { raise_read(end.message, end.cause); }

HostValue raise_in_line(const ErrorRecord *error, const char *line, size_t length, size_t column) {
    bool is_cut = length > LONGEST_EXCERPT;
    Excerpt excerpt = {line, is_cut ? LONGEST_EXCERPT : length, is_cut ? "...\n" : "\n", NO_CARET};
    if (column < CARET_COLUMNS) excerpt.caret = static_cast<long>(column);
    return raise_excerpt(error, &excerpt);
}
