/* Functions that are written like other constructs: horzcat(a, b) is [a, b], feval(@f, x) is f(x),
 * getfield(s, 'f') is s.f. */
#pragma once

#include "lower/library/offered_call.h"

/* The call as the other construct, or null. */
mExpr *new_rewritten_call(const OfferedCall *call);
