/* Variables that outlive a call, given to functions which change them meanwhile. */
#pragma once

#include "lower/calls/keyword_calls.h"
#include "syntax/tree/tree.h"

/* Whether a literal or a struct among the arguments, ARGUMENTS or null, holds a global, a
 * persistent variable, one shared with nested functions, or a part of one, while the function that
 * the NAME means, or what another argument calls or names, sets parts of it. */
bool holds_changed_parts(const Node *name, const Node *arguments);
/* Puts copies in the place of the arguments' texts that are such a variable, or a part: a host that
 * shares arrays would show in the parameter what is set. */
void copy_changed_arguments(const Node *name, const Node *arguments, ExprList *values);
