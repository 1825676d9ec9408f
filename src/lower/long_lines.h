/* Long lines of host text, broken between arguments and at operators. */
#pragma once

#include <stdint.h>

constexpr uint32_t LONGEST_LINE = 100;

/* The line that follows margin columns, as a kept text: where its code is longer than LONGEST_LINE
 * it goes on in further lines, a level deeper; a comment stays whole. Line ends in the text,
 * outside of strings, begin lines with margins of their own. */
const char *break_line(const char *text, uint32_t margin);
