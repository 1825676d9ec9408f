/* The branches of conditions a side of which may not be evaluated always. */
#pragma once

#include "lower/conditions/host_conditions.h"
#include "lower/expressions/operands.h"
#include "syntax/tree/tree.h"

/* Opens ifs, one inside of the other, in which the condition is true. The level is that of the
 * innermost afterwards; the caller closes them. */
void open_branches(const Node *condition);
/* Leaves the loop around where the condition is false; is true. */
void put_break_unless(const Node *condition);
void put_break_where(const Node *condition);
/* The same where a test that is lowered already is true. */
void put_break(const Test *test);

/* The test of a helper variable, which is 1 where the condition is true and else 0. */
Test decide(const Node *condition);
/* A CHAIN of && or || that needs branches, as a value. */
Operand lower_branched_value(const Node *chain);
