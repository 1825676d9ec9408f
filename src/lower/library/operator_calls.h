/* Functions that mean an operator: plus(a, b), not(a), colon(a, b). */
#pragma once

#include "lower/library/offered_call.h"

/* The call as operators, or null. */
mExpr *new_operator_call(const OfferedCall *call);
/* Such a function as a procedure; null for others. */
const char *operator_value(const char *name);
