/* Sources as one text in memory. */
#pragma once

#include <stdint.h>

/* The bytes of the file opened last, with a NUL after them, as a tracked text. A read error ends
 * the run, as does a file of 2 GB or more. */
char *read_whole_source(uint32_t *length);
