/* What calls of the program's own functions give. The functions of a file are traced together: what
 * an output may be where its function ends is what a call of the function gives, whatever its
 * arguments are. Functions that call each other are traced anew until nothing new comes. */
#pragma once

#include "syntax/trace/calls_traced.h"

/* No function has been added. */
void begin_summaries();
/* A function of the file, whose names have been settled, and those nested in it. It calls no
 * scripts: their nodes belong to one caller at a time. */
void add_function(Scope *scope);
/* Traces all that have been added. may_know_calls: nobody else calls those that are not nested, but
 * for the first: then what all their calls give is what their parameters are. */
void trace_functions(FunctionFinders finders, bool may_know_calls);

/* The function ends here, where the flow is: so its outputs may be what they are now. The value of
 * end, its RETURN or BLOCK, or null, becomes what the first one is. Without an effect for a
 * script. */
void note_function_end(const Scope *scope, Node *end);
/* A result, from 0, of a call of a name with these arguments, first and siblings, whose values have
 * been traced; null for none. Of a function that has not been added it is what the finders know. */
Value value_of_own(const Node *name, Node *arguments, int index);
/* The same of what the first result is when somebody calls a HANDLE; without kinds where it has not
 * returned so far. */
Value value_of_handled(const Node *handle);
/* MATLAB's own function that is being called calls the HANDLE's with these values, and perhaps with
 * more. */
void note_applied_call(const Node *handle, const GivenValue *values, int32_t number, bool has_more);
/* What a function that has been added gives, for whoever calls it from another file. */
FunctionResults results_of(const Scope *scope);
/* What is known of the inside of a result; null for nothing. */
const KnownParts *parts_of_own(const Node *name, int index);
