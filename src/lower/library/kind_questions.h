/* Functions that ask of which kind a value is: ischar(x), isa(x, 'cell'), class(x). */
#pragma once

#include "lower/library/offered_call.h"

/* The answer, where the source shows it; null where it does not. */
mExpr *new_kind_answer(const OfferedCall *call);
