/* Long lines of host text, broken between arguments and at operators. */
#pragma once

#include <stddef.h>
#include <stdint.h>

constexpr uint32_t INDENT = 2;       /* columns of a level */
constexpr uint32_t CONTINUATION = 4; /* columns of what goes on in a further line */
constexpr uint32_t LONGEST_LINE = 100;

/* Whether what is so long is one line, as most are, and is not broken. */
bool is_short_line(const char *text, size_t length, size_t margin);

/* Writes the line that follows margin columns into the output, without its end: where its code is
 * longer than LONGEST_LINE it goes on in further lines, CONTINUATION deeper; a comment stays whole.
 * Line ends in the text, outside of strings, begin lines with margins of their own. */
void write_broken(const char *text, uint32_t margin);
