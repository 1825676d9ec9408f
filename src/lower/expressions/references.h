/* References: a base and the selectors after it. */
#pragma once

#include "lower/expressions/operands.h"
#include "syntax/tree/tree.h"

/* The value of a REFERENCE. */
mExpr *lower_reference(const Node *node);
