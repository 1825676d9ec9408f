/* Lists of arguments, which keep each of them together: none needs parentheses of its own. */
#pragma once

#include "translate/expressions.h"

/* The arguments without them (operands.h): a list that the caller frees. */
vExpr *plain_arguments(const vExpr *arguments);
/* A call of the function with them. */
mExpr *new_call_of(const char *function, const vExpr *arguments);
