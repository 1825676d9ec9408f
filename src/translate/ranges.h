/* Ranges start:stop and start:step:stop. */
#pragma once

#include "translate/expressions.h"

/* A range. Its text is the value form, a row vector; indices and for loops read the parts instead.
 * step is the integer 1 where the source has none; stop is null for end. open_at: kept; where the
 * source has a range without a stop, for an error after it; null for one with a stop. */
mExpr *new_seq_node(mExpr *start, mExpr *step, mExpr *stop, const SourcePosition *open_at);
/* Text of the upper bound: "-1", the last position counted from the end, for end. */
const char *upper_bound(const mRange *range);
