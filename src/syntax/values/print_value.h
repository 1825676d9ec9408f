/* Values as text. */
#pragma once

#include "support/long_string.h"
#include "syntax/tree/value.h"

/* Appends what a value may be and answers the text's new handle: its kinds with | between them, or
 * any (count: whole numbers from 0 on; whole: of either sign; positive: from 0 on, or NaN); then,
 * unless it is one value held plainly, in brackets its size: 1 for a row, ; for a column, . for one
 * element, 0 for none, nothing for what may have any; ? where it may be held plainly as well; and +
 * where it has elements. After all that ? where a variable may have no value. */
[[nodiscard]] LongString print_value(LongString text, Value value);
