/* Whether a variable exists. */
#pragma once

#include "syntax/tree/tree.h"
#include "translate/expressions.h"

/* exist('x') and exist('x', 'var') of a parameter: whether the caller has given it. Null for
 * everything else, which is a call; reported where it asks for another variable. */
mExpr *lower_exist(const Node *name, const Node *arguments);
/* Puts that the variable of a target has a value, where exist may ask for it later. */
void put_presence(const Node *target);
