/* Conditions in the tree: of which sides they consist, and what is known of each. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether a chain asks for all of its sides, not for any of them. */
bool is_and(const Node *chain);
/* Of && or ||; of & or |. */
bool is_lazy(const Node *node);
bool is_elementwise(const Node *node);
/* Whether each side is a condition of its own: of && and ||, of &, as no element of a & b is zero
 * where none of a and of b is, of | where all but the last are single values. */
bool joins_conditions(const Node *node);
/* Whether it is ~x, and the condition x tells its value: ~x of an array asks whether all elements
 * are zero. */
bool is_negation(const Node *node);
/* A comparison of two numbers, which the host compares as they are. */
bool is_plain_comparison(const Node *node);
/* Whether it is true or false, and nothing else. */
bool is_truth(const Node *node);

/* side: one after the first, which has been evaluated before. */
bool can_side_fail(const Node *chain, const Node *side);
bool any_side_can_fail(const Node *chain);
/* Whether the condition has a side that may not be evaluated always, by joins_conditions. */
bool needs_branches(const Node *condition);
