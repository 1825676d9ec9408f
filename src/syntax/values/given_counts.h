/* How many arguments a function has been given, as its conditions tell. */
#pragma once

#include "syntax/tree/tree.h"

struct GivenCounts {
    int32_t least;
    int32_t most;
};

constexpr GivenCounts ANY_COUNTS = {0, INT32_MAX};
inline bool tells_counts(GivenCounts given) { return given.least > 0 || given.most < INT32_MAX; }

/* What comparisons of nargin with a number tell where the condition is true, or where it is false;
 * ANY_COUNTS for nothing. What has no elements is not true, and its negation is not either, so
 * values must have been traced. */
GivenCounts given_where(const Node *condition, bool is_true);
/* What is known after narginchk(2, 3) or error(nargchk(2, 3, nargin)), which do not go on where
 * another number is given; ANY_COUNTS after any other expression. */
GivenCounts given_after(const Node *expression);
