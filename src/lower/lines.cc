// Lines of host text that wait to be written.
#include "lower/lines.h"

#include <string.h>

#include "emit/output.h"
#include "support/allocation.h"
#include "translate/text_forms.h"

void add_line(Lines *lines, int level, const char *text) {
    Line *line = AllocRecord<Line>();
    *line = {level, text, nullptr};
    Lines one = {line, line};
    append_lines(lines, &one);
}

void append_lines(Lines *lines, Lines *more) {
    if (!more->first) return;
    (lines->last ? lines->last->next : lines->first) = more->first;
    lines->last = more->last;
    *more = {nullptr, nullptr};
}

void write_lines(const Lines *lines) {
    for (const Line *line = lines->first; line; line = line->next) {
        if (*line->text) write_indent(line->level);
        write_output({line->text, "\n"});
    }
}

const char *form_text(const char *form, std::initializer_list<const char *> operands) {
    size_t size = strlen(form) + 1;
    for (const char *operand : operands) size += strlen(operand);
    char *text = static_cast<char *>(AllocKept(size));
    write_form(text, form, operands);
    return text;
}
