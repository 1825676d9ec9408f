/* Conditions of statements as tests of the host. The host's operators evaluate both sides: what can
 * fail or act goes into a branch of its own (branches.h). */
#pragma once

#include "lower/conditions/host_conditions.h"
#include "lower/lines/lines.h"
#include "syntax/tree/tree.h"

/* The test of a condition. What it needs in front, with branches a helper variable, is put into the
 * lines of the statement. */
Test lower_test(const Node *condition);

/* A test, and the lines that it needs in front. */
struct TestApart {
    Test test;
    Lines needed;
    bool is_short; /* none are needed, and it holds no procedure of several lines */
};
/* deeper: how many levels deeper than the statement's the lines are. */
TestApart lower_test_apart(const Node *condition, int deeper);

/* An expression of which only matters whether it is true, outside of brackets. */
mExpr *lower_tested(const Node *node);
