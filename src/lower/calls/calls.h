/* Names alone, and calls of functions. */
#pragma once

#include "lower/calls/keyword_calls.h"
#include "syntax/tree/tree.h"

/* A NAME as a value: a variable, or a call without arguments. */
mExpr *lower_name(const Node *name);
/* A call of the function that the NAME, no variable, means. The host is asked for the name, then,
 * with the arguments' texts, for the call. */
mExpr *lower_call(const Node *name, const Node *arguments);
/* The same with texts that are there already: of the arguments first and its siblings, or null.
 * results: that it is asked for, as requested_results says. */
mExpr *call_with_values(const Node *name, Node *first, const vExpr *values, int32_t results);
/* A call of a host procedure, which the NAME means: of a function, or of a variable that may hold
 * some. */
mExpr *new_procedure_call(const char *procedure, const Node *name, const Node *arguments);
/* The same with the words of a COMMAND. */
mExpr *lower_command(const Node *command);
/* The host's name of the function that the NAME means, as a kept text, or null. */
const char *host_name(const Node *name);
/* The NAME of a function as the base of fields and braces: the host's name, without a call. */
mExpr *lower_function_name(const Node *name);
/* Tells of cells that the REFERENCE gives to a function which takes elements of them, where it
 * calls what a variable holds, or a part of it. */
void check_held_call(const Node *reference);
