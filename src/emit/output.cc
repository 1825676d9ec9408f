// Writing into the output text; each append may move it.
#include "emit/output.h"

#include "run/run_state.h"
#include "support/long_string.h"

void write_output(const char *text) { OutputText = AppendStringToString(OutputText, text); }

void write_character(char character) { OutputText = AppendToString(OutputText, character); }

void write_output(std::initializer_list<const char *> texts) {
    for (const char *text : texts) write_output(text);
}

void write_output(const char *start, const char *end) {
    OutputText = AppendBytesToString(OutputText, start, static_cast<size_t>(end - start));
}

void write_blanks(size_t count) {
    static const char blanks[] = "                                                                ";
    constexpr size_t LENGTH = sizeof blanks - 1;
    for (; count > LENGTH; count -= LENGTH) write_output(blanks);
    if (count > 0) write_output(blanks + LENGTH - count);
}

void write_line(size_t blanks, const char *text, size_t length) {
    OutputText = AppendLineToString(OutputText, blanks, text, length);
}

void write_indent(int level) {
    if (level > 0) write_blanks(4 * static_cast<size_t>(level));
}

void write_list(const vExpr *list, const vExpr *end) {
    for (const vExpr *cell = list; cell != end; cell = cell->next) {
        if (cell != list) write_output(", ");
        write_output(cell->item->text);
    }
}
