/* Logical operators that leave their right side alone where the left one decides. The host's
 * operators evaluate both sides: a right side that can fail or act is put into a branch. */
#pragma once

#include "lower/operands.h"
#include "syntax/tree.h"

/* Whether the CHAIN is one of && or || with a side that can fail or act. */
bool needs_short_circuit(const Node *chain);
/* Such a chain as a value. */
Operand lower_short_circuit(const Node *chain);
/* The condition of if, elseif and while, where & and | leave sides alone too; whose text goes into
 * test_text. */
mExpr *lower_condition(const Node *node);

/* The host's test of a condition: whether no element is zero. */
const char *test_text(const char *condition);
