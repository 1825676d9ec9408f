/* cellfun and arrayfun: calls of a function for each element. */
#pragma once

#include "lower/library/offered_call.h"

/* Such a call, or null. */
mExpr *new_element_call(const OfferedCall *call);
