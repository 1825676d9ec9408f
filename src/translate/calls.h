/* Calls and indices in parentheses, which MATLAB writes alike. */
#pragma once

#include "translate/expressions.h"

/* name(arguments), or a command with its words as strings. Unless the name is a known variable,
 * the call is offered to the host's function translator; where that has no answer the name is
 * recorded in CalledNames, and not offered again while it stands there. The builder's own form
 * turns colons, and ranges of an indexed variable, into host index ranges.
 * arguments: null for none; the cells are read during the call only. */
mExpr *new_function_node(const mExpr *name, const vExpr *arguments);
