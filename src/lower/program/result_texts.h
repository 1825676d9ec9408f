/* What functions of other files give, as texts: a run reads what an earlier one has found. */
#pragma once

#include "syntax/trace/trace.h"

const FunctionResults *keep_results(const FunctionResults &results);
const char *text_of_results(const FunctionResults *results);
/* Null for what text_of_results has not written. */
const FunctionResults *results_in(const char *text);
