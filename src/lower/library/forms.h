/* Functions that one expression of the host says. */
#pragma once

#include "lower/library/offered_call.h"

/* The call as such an expression, or null. */
mExpr *new_form_call(const OfferedCall *call);
/* A function of one argument that needs to know nothing of it, as a procedure; null for others. */
const char *form_value(const char *name);
