/* The branches of conditions a side of which may not be evaluated always. */
#pragma once

#include "lower/conditions/conditions.h"
#include "lower/expressions/operands.h"
#include "syntax/tree/tree.h"

/* What a test stands after: nothing, or another branch of its if. */
enum BranchWord : uint8_t { BRANCH_IF, BRANCH_ELIF };

/* The test of a condition, is it true or is it not; for put_branch_test. */
TestApart branch_test(const Node *condition, bool is_true, BranchWord word);
/* The same of a side of a chain and of those after it that cannot fail, up to the side end (not
 * included; null for all), joined by and, or by or. The side is the next one then. */
TestApart side_tests(const Node *chain, const Node **side, bool is_true, bool is_and,
                     BranchWord word, const Node *end = nullptr);
/* Begins a branch. An elif that needs lines, in front or for a procedure in it, is a new if inside
 * of an else, and the level rises: the caller closes it. Answers the level of the if. */
int put_branch_test(BranchWord word, TestApart *apart);

/* Opens branches, one inside of the other, in which the condition is true, or is not. The level is
 * that of the innermost afterwards; the caller closes them. Answers that of the outermost. */
int open_branches(BranchWord word, const Node *condition, bool is_true);
/* Leaves the loop around where the condition is false; is true. */
void put_break_unless(const Node *condition);
void put_break_where(const Node *condition);
/* The same where a test that is lowered already is true. */
void put_break(const Test *test);

/* The test of a helper variable, which is 1 where the condition is true and else 0. */
Test decide(const Node *condition);
/* A CHAIN of && or || that needs branches, as a value. */
Operand lower_branched_value(const Node *chain);
