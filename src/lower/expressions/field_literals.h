/* Names of fields between quotes, struct('next', 0), which are written as fields are. */
#pragma once

#include "lower/calls/keyword_calls.h"
#include "syntax/tree/tree.h"

/* Renames fields among the arguments of a function that takes their names. values: the arguments'
 * texts, one for each. */
void rename_fields(const char *function, const Node *arguments, ExprList *values);
