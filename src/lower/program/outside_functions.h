/* What functions of other files give. Each file tells by itself: what its first function gives,
 * whatever it is given and whatever functions of further files give. So the same is known of it in
 * every run that finds it. */
#pragma once

#include "syntax/names/names.h"
#include "syntax/trace/trace.h"

/* Forgets the run before, at the start of a run. */
void begin_outside_functions();
/* Reads the files of functions that the scope and those nested in it call. The names are settled,
 * in the current file, and no values are being traced. */
void read_outside_functions(const Scope *scope);
/* What is known of an interned name in the current file after that; null for nothing. */
const FunctionResults *outside_results(const char *name);
