/* Long lines of host text, broken between arguments and at operators. */
#pragma once

#include <stdint.h>

constexpr uint32_t INDENT = 4; /* columns of a level */
constexpr uint32_t LONGEST_LINE = 100;

/* Writes the line that follows margin columns into the output, without its end: where its code is
 * longer than LONGEST_LINE it goes on in further lines, a level deeper; a comment stays whole. Line
 * ends in the text, outside of strings, begin lines with margins of their own. */
void write_broken(const char *text, uint32_t margin);
