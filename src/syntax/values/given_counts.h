/* How many arguments a function has been given, as its conditions tell. */
#pragma once

#include "syntax/tree/tree.h"

struct GivenCounts {
    int32_t least;
    int32_t most;
};

/* What comparisons of nargin with a number tell where the condition is true, or where it is false;
 * 0 and INT32_MAX for nothing. A sum of conditions that have no elements is not asked. */
GivenCounts given_where(const Node *condition, bool is_true);
/* What is known after narginchk(2, 3) or error(nargchk(2, 3, nargin)), which do not go on where
 * another number is given; 0 and INT32_MAX after any other expression. */
GivenCounts given_after(const Node *expression);
