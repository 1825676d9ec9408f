/* Values as text. */
#pragma once

#include "support/long_string.h"
#include "syntax/values/value.h"

/* Appends what a value may be and answers the text's new handle: its kinds with | between them, or
 * any (a number that is whole and not negative is a count); its shape, if it may be more than one
 * element: [1] a row, [;] a column, [] another array, [.] an array of one, [?] whatever, 0 no
 * elements; and ? where a variable may have no value. */
[[nodiscard]] LongString print_value(LongString text, Value value);
