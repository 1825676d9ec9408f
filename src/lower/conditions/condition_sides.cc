// Sides of conditions.
#include "lower/conditions/condition_sides.h"

#include "lower/expressions/expressions.h"
#include "lower/expressions/fallible.h"
#include "syntax/names/names.h"
#include "syntax/tree/value.h"

static bool is_chain_between(const Node *node, OperatorId first, OperatorId last) {
    return node->kind == NODE_CHAIN && node->op >= first && node->op <= last;
}

static bool is_single(const Node *node) {
    return is_within(value_of(node), ONE_NUMBER | MAY_BE_TRUTH);
}

bool is_and(const Node *chain) {
    return chain->op == OPERATOR_AND_THEN || chain->op == OPERATOR_AND;
}

bool is_lazy(const Node *node) {
    return is_chain_between(node, OPERATOR_OR_ELSE, OPERATOR_AND_THEN);
}

bool is_elementwise(const Node *node) { return is_chain_between(node, OPERATOR_OR, OPERATOR_AND); }

bool joins_conditions(const Node *node) {
    if (!is_elementwise(node)) return is_lazy(node);
    if (is_and(node)) return true;
    for (const Node *side = node->first_child; side->next; side = side->next)
        if (!is_single(side)) return false;
    return true;
}

bool is_negation(const Node *node) {
    return node->kind == NODE_PREFIX && node->op == OPERATOR_NOT &&
           (is_single(node->first_child) || is_lazy(without_parens(node->first_child)));
}

bool is_plain_comparison(const Node *node) {
    if (!is_chain_between(node, OPERATOR_LESS, OPERATOR_GREATER)) return false;
    const Node *left = node->first_child;
    const Node *right = left->next;
    return is_one_number(value_of(left)) && is_one_number(value_of(right)) && !right->next;
}

bool is_truth(const Node *node) {
    node = without_parens(node);
    if (!is_lazy(node) && !is_elementwise(node))
        return is_chain_between(node, OPERATOR_LESS, OPERATOR_GREATER);
    for (const Node *side = node->first_child; side; side = side->next)
        if (!is_truth(side)) return false;
    return true;
}

bool can_side_fail(const Node *chain, const Node *side) {
    return can_fail(side, chain->first_child);
}

bool any_side_can_fail(const Node *chain) {
    for (const Node *side = second_child(chain); side; side = side->next)
        if (can_side_fail(chain, side)) return true;
    return false;
}

static bool any_needs_branches(const Node *chain) {
    if (needs_branches(chain->first_child)) return true;
    for (const Node *side = second_child(chain); side; side = side->next)
        if (can_side_fail(chain, side) || needs_branches(side)) return true;
    return false;
}

bool needs_branches(const Node *condition) {
    condition = without_parens(condition);
    if (is_negation(condition)) return needs_branches(condition->first_child);
    return joins_conditions(condition) && any_needs_branches(condition);
}
