/* What the parameters of functions are given, where all their calls are known: those in one file,
 * of functions that nobody else can call. */
#pragma once

#include "syntax/trace/calls_traced.h"

/* No calls are followed; no text names a function. */
void begin_parameters();
/* The calls of a function of the file are to be followed. */
void follow_calls(Summary *summary);
/* A literal text stands in a function that is being traced: it may name another one. */
void note_text(const char *text);
/* A function of that name is called with the first argument, null for none: cellfun('f', c) calls
 * what the text names. */
void note_applied(const char *name, const Node *function);
/* A HANDLE of a function, or a command that calls it by a NAME: others may call it with anything.
 */
void note_handle(const Node *name);
/* The caller has a handle of the function, and knows what it gives. */
void note_handled(Summary *caller, Summary *callee);
/* The caller, which is being traced, has the function called with these values, and perhaps with
 * more. */
void note_values_given(Summary *caller, Summary *callee, const GivenValue *values, int32_t number,
                       bool has_more);
constexpr int32_t MOST_APPLIED = 8;
/* The caller, which is being traced, calls the function with these arguments; null for none. */
void note_call(Summary *caller, Summary *callee, Node *arguments);
/* Traces the functions, the last of the order first, so that callers come before what they call,
 * once more with what is known of their parameters. */
void trace_parameters(Summary *last);
/* What a parameter of the function is given; ANY_VALUE | MAY_BE_MISSING where that is not known. */
Value value_given(const Scope *scope, const Symbol *parameter);
/* What is known of its inside, null for nothing, and of its varargin. */
const KnownParts *parts_of_parameter(const Scope *scope, const Symbol *parameter);
const KnownParts *parts_of_rest(const Scope *scope);
