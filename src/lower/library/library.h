/* MATLAB's library, as far as the host's known forms say what a function does. Asked after the
 * program's own functions, the host and the files: of a function that is found nowhere else. */
#pragma once

#include "lower/calls/outside_call.h"
#include "syntax/tree/tree.h"
#include "translate/expressions.h"

/* The call; null where the function has no form, or none for these arguments or results. values:
 * the arguments' texts, in the same order. */
mExpr *new_library_call(const OutsideCall *of, const vExpr *values);
/* The function of a HANDLE as a value, a kept text; null for none. */
const char *library_handle(const Node *handle);
