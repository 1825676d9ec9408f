/* Conditions of statements, and the branches that leave their right sides alone. The host's
 * operators evaluate both sides: what can fail or act goes into a branch of its own. */
#pragma once

#include "lower/host_conditions.h"
#include "lower/lines.h"
#include "lower/operands.h"
#include "syntax/tree.h"

/* Whether the condition has a side of && or ||, or of & or | of single values, that may not be
 * evaluated always. */
bool needs_branches(const Node *condition);

/* The test of a condition. What it needs in front, with branches a helper variable, is put into the
 * lines of the statement. */
Test lower_test(const Node *condition);

/* A test, and the lines that it needs in front, one level deeper than the statement's. */
struct TestApart {
    Test test;
    Lines needed;
    bool is_short; /* none are needed, and it holds no procedure of several lines */
};
TestApart lower_test_apart(const Node *condition);

/* Opens ifs, one inside of the other, in which the condition is true. The level is that of the
 * innermost afterwards; the caller closes them. */
void open_branches(const Node *condition);
/* Leaves the loop around where the condition is false; is true. */
void put_break_unless(const Node *condition);
void put_break_where(const Node *condition);
/* The same where a test that is lowered already is true. */
void put_break(const Test *test);

/* A CHAIN of && or || that needs branches, as a value. */
Operand lower_branched_value(const Node *chain);
