/* Whether a variable exists. */
#pragma once

#include "syntax/tree.h"
#include "translate/expressions.h"

/* exist('x') and exist('x', 'var') of a parameter: whether the caller has given it. Null for
 * everything else, which is a call; reported where it asks for another variable. */
mExpr *lower_exist(const Node *name, const Node *arguments);
