/* Functions that the front end brings along (sources.h). */
#pragma once

#include "lower/library/offered_call.h"

/* At the start of a run. */
void begin_source_calls();
/* A call of the procedure for such a function, or null. */
mExpr *new_source_call(const OfferedCall *call);
/* The same for the row of that name. */
mExpr *new_source_call(const char *row, const OfferedCall *call);
/* Calls all of them. */
void call_all_sources();
/* The procedure's name as a value; null for others. */
const char *source_value(const char *name);
