/* The languages that are read. */
#pragma once

#include <stdint.h>

/* matlab reads what Octave adds too, where MATLAB has an error there. octave differs in this: a
 * double-quoted string has escapes, a ! at the start of a statement negates, and x = y = 1 is
 * read. */
enum SourceLanguage : uint8_t { LANGUAGE_MATLAB, LANGUAGE_OCTAVE };
