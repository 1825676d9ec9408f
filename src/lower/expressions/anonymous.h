/* Functions as values. */
#pragma once

#include "syntax/tree/tree.h"
#include "translate/expressions.h"

/* A HANDLE, @name. */
mExpr *lower_handle(const Node *node);
/* An ANONYMOUS function. What it takes from around it keeps the value that it has now: a name that
 * is assigned again gets one of its own. */
mExpr *lower_anonymous(const Node *node);
