/* Functions whose results hold what they are given. */
#pragma once

#include "lower/calls/keyword_calls.h"
#include "syntax/tree/tree.h"

/* Whether name is such a function of MATLAB's library. */
bool keeps_arguments(const Node *name);
/* Of such a function: makes copies of those arguments that the result must not share
 * (shared_parts.h). values: the arguments' texts, one for each. */
void hold_arguments(const Node *name, const Node *arguments, ExprList *values);
