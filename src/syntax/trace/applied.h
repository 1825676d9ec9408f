/* Functions that MATLAB's own cellfun, arrayfun, structfun and feval are given: what they are
 * called with is known. */
#pragma once

#include "syntax/trace/calls_traced.h"

/* A call of such a one, by a NAME with ARGUMENTS after it, with a function among its arguments that
 * is written there. */
bool applies_written(const Node *name);
/* Traces the arguments. */
void trace_applied(const Node *name);
/* cellfun and arrayfun, whatever they are given. */
bool applies_to_each(const Node *name);
/* Those of its arguments that give the function cells where it takes elements get the flag
 * GIVES_CELL. */
void note_applied_cells(const Node *name);
