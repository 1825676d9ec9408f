/* The values of calls of MATLAB's own functions. */
#pragma once

#include "syntax/library/library_table.h"

/* The value of a call with these arguments, first one of ARGUMENTS, whose values have been traced;
 * first: null for none. */
Value library_value(const LibraryFunction *function, const Node *arguments);
/* The value of each result after the first. */
Value library_others(const LibraryFunction *function, const Node *arguments);
