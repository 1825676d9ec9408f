/* Functions that the front end brings along (sources.h). */
#pragma once

#include <initializer_list>

#include "lower/library/offered_call.h"
#include "support/row_index.h"

/* At the start of a run. */
void begin_source_calls();
/* A call of the procedure for such a function, or null. */
mExpr *new_source_call(const OfferedCall *call);
/* The same for the row of that name. */
mExpr *new_source_call(RowName row, const OfferedCall *call);
/* The same, of host texts. */
const char *source_call_text(const char *row, std::initializer_list<const char *> operands);
/* Calls all of them. */
void call_all_sources();
/* The procedure's name as a value; null for others. */
const char *source_value(const char *name);
