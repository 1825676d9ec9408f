/* Expressions that may be evaluated although their value is not asked for. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether nothing is known of the function that the NAME, no variable, calls: it may do anything.
 */
bool is_unknown_function(const Node *name);
/* Whether the evaluation can fail or act: the call of a function that is not known, an index, a
 * variable that may have no value. evaluated: an expression that has been evaluated before, so that
 * what it reads has a value; null for none. */
bool can_fail(const Node *node, const Node *evaluated);
