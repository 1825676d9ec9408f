/* What the values of a function's expressions and variables may be, found in one walk over it along
 * the ways that it may take: branches are joined, loops are repeated until nothing new comes. */
#pragma once

#include "syntax/trace/trace.h"

/* Traces the values of a function or script whose names have been settled: enters them into its
 * nodes and symbols. The functions nested in it are traced, too. */
void trace_function(Scope *scope, FunctionFinders finders);
/* The same, without those nested in it, with the Finders as they are. */
void trace_alone(Scope *scope);
/* Forgets what trace_alone has entered. */
void forget_trace(Scope *scope);
/* The statements of a FILE, where the flow is now. */
void trace_script(Node *file);
