// Lines of host text that wait to be written.
#include "lower/lines/lines.h"

#include <assert.h>
#include <string.h>

#include <algorithm>

#include "emit/output.h"
#include "lower/lines/long_lines.h"
#include "lower/lines/origins.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "support/long_string.h"
#include "translate/text_forms.h"

namespace {

constexpr int DEEPEST_INDENT = 50;

// A long chain of elif conditions that need lines in front nests deeply: it is not indented
// further.
int shown_level(const Line *line) { return std::min(line->level, DEEPEST_INDENT); }

size_t indentation(const Line *line) {
    return *line->text ? INDENT * static_cast<size_t>(shown_level(line)) : 0;
}

// A line that has become a comment.
void write_comment(const Line *line) {
    int outer = std::min(line->comment, DEEPEST_INDENT);
    write_blanks(INDENT * static_cast<size_t>(outer));
    write_output(*line->text ? "# " : "#");
    if (*line->text) write_blanks(INDENT * static_cast<size_t>(shown_level(line) - outer));
    write_line(0, line->text, strlen(line->text));
}

// What is a comment is as wide as it is.
void write_text_line(const Line *line) {
    size_t margin = indentation(line);
    size_t length = strlen(line->text);
    if (*line->text == '#' || is_short_line(line->text, length, margin))
        return write_line(margin, line->text, length);
    write_blanks(margin);
    write_broken(line->text, static_cast<uint32_t>(margin));
    write_character('\n');
}

}  // namespace

void add_line(Lines *lines, int level, const char *text) {
    assert(level >= 0);
    Line *line = AllocRecord<Line>();
    *line = {level, NO_COMMENT, text, nullptr, CurrentOrigin, 0};
    (lines->last ? lines->last->next : lines->first) = line;
    lines->last = line;
}

void add_line_again(Lines *lines, int level, const Line *line) {
    size_t length = strlen(line->text) - line->trailing;
    add_line(lines, level, line->trailing ? KeepText(line->text, length) : line->text);
    lines->last->comment = line->comment;
    Origin *origin = line->origin;
    while (line->trailing && origin && origin->kind == COMMENT_LINES) origin = origin->also;
    lines->last->origin = origin;
}

void append_lines(Lines *lines, Lines *more) {
    assert(lines != more && !(lines->last && lines->last->next));
    if (!more->first) return;
    (lines->last ? lines->last->next : lines->first) = more->first;
    lines->last = more->last;
    *more = {nullptr, nullptr};
}

void drop_after(Lines *lines, Line *last) {
    (last ? last->next : lines->first) = nullptr;
    lines->last = last;
}

bool is_bare_after(const Lines *lines, const Line *last) {
    const Line *line = last ? last->next : lines->first;
    return line && line == lines->last && line->trailing == 0;
}

void write_lines(const Lines *lines) {
    for (const Line *line = lines->first; line; line = line->next) {
        int32_t begin = Observing.lines ? LengthString(OutputText) : 0;
        if (line->comment == NO_COMMENT)
            write_text_line(line);
        else
            write_comment(line);
        if (!Observing.lines) continue;
        int64_t count = std::count(OutputText + begin, OutputText + LengthString(OutputText), '\n');
        tell_lines(*line->text ? line->origin : nullptr, static_cast<uint32_t>(count));
    }
}

namespace {

void write_blanks(Writer *to, size_t count) {
    for (; count > 0; count--) write_character(to, ' ');
}

// Where a line end is the next one of the text that stands outside of strings; null for none.
const char *next_line_end(const char *text) {
    bool in_string = false;
    for (; *text; text++) {
        if (in_string && *text == '\\' && text[1]) {
            text++;
        } else if (*text == '"') {
            in_string = !in_string;
        } else if (*text == '\n' && !in_string) {
            return text;
        }
    }
    return nullptr;
}

const char *indent_text(const char *text, size_t blanks) {
    size_t ends = 0;
    const char *end = next_line_end(text);
    if (!end) return text;
    for (; end; end = next_line_end(end + 1)) ends++;
    Writer to = new_text(strlen(text) + ends * blanks + 1);
    const char *wider = to.at;
    while ((end = next_line_end(text))) {
        write_bytes(&to, text, static_cast<size_t>(end + 1 - text));
        write_blanks(&to, blanks);
        text = end + 1;
    }
    write_text(&to, text);
    return wider;
}

}  // namespace

const char *lines_text(const Lines *lines) {
    size_t size = 1;
    for (const Line *line = lines->first; line; line = line->next)
        size += indentation(line) + strlen(line->text) + 1;
    Writer to = new_text(size);
    const char *text = to.at;
    for (const Line *line = lines->first; line; line = line->next) {
        if (line != lines->first) write_text(&to, "\n");
        write_blanks(&to, indentation(line));
        write_text(&to, line->text);
    }
    return text;
}

const char *indent_inner_lines(const char *text, int levels) {
    return indent_text(text, INDENT * static_cast<size_t>(levels));
}

namespace {

// What stands after a line end inside of the line's text, as a line of its own.
Line *split_line(Line *line, const char *end) {
    assert(*end == '\n');
    const char *rest = end + 1 + strspn(end + 1, " ");
    Line *second = AllocRecord<Line>();
    int32_t blanks = static_cast<int32_t>(rest - end - 1);
    *second = {
        blanks / static_cast<int32_t>(INDENT), NO_COMMENT, rest, line->next, line->origin, 0};
    line->text = KeepText(line->text, static_cast<size_t>(end - line->text));
    line->next = second;
    return second;
}

}  // namespace

void comment_lines(Lines *lines, int level) {
    for (Line *line = lines->first; line; line = line->next) {
        const char *end = strchr(line->text, '\n');
        if (end && split_line(line, end)->next == nullptr) lines->last = line->next;
        line->comment = level;
    }
}

size_t length_without_last_blanks(const char *text) {
    size_t length = strlen(text);
    while (length > 0 && (text[length - 1] == ' ' || text[length - 1] == '\t')) length--;
    return length;
}
