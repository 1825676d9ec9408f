/* Calls and indices in parentheses, which MATLAB writes alike. */
#pragma once

#include "translate/expressions.h"

/* name(arguments), or a command with its words as strings. Unless the name is a known variable,
 * the call is offered to the host's function translator; where that has no answer the name is
 * recorded in CalledNames, and not offered again while it stands there. What the host does not
 * translate gets the builder's own form (indices.h).
 * arguments: null for none; the cells are read during the call only. */
mExpr *new_function_node(const mExpr *name, const vExpr *arguments);
/* The host's form of the call, or null where its function translator has no answer. Asks whatever
 * the name is known to be, and records nothing but the packages of the answer. */
mExpr *new_host_call(const char *name, const vExpr *arguments);
