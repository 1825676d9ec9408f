// Conditions of statements.
#include "lower/conditions/conditions.h"

#include <string.h>

#include "lower/conditions/condition_sides.h"
#include "lower/expressions/elementwise.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/lines.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/statements/branches.h"
#include "syntax/names/assigned_values.h"
#include "syntax/names/names.h"
#include "syntax/tree/value.h"
#include "syntax/values/findings.h"
#include "syntax/values/flow.h"

namespace {

bool is_literal(const Node *node, const char *text) {
    return node->kind == NODE_NAME && !is_variable(node->symbol) && strcmp(node->text, text) == 0 &&
           !has_function(node);
}

bool has_literal_truths(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next) {
        if (value->kind != VALUE_WHOLE) return false;
        const Node *literal = without_parens(value->node);
        if (!is_literal(literal, "true") && !is_literal(literal, "false")) return false;
    }
    return true;
}

// Whether a variable holds true or false there, as they are written: all that it is ever set to.
bool holds_literal_truth(const Node *node) {
    bool is_own = node->kind == NODE_NAME && is_variable(node->symbol) &&
                  node->symbol->position == 0 && is_traced(node->symbol);
    if (!is_own || !is_within(value_of(node), ONE_TRUTH | MAY_BE_MISSING)) return false;
    return is_so(node->symbol, LITERAL_TRUTH, has_literal_truths);
}

int host_comparison(OperatorId op) {
    switch (op) {
        case OPERATOR_LESS: return OP_LT;
        case OPERATOR_LESS_EQUAL: return OP_LE;
        case OPERATOR_GREATER_EQUAL: return OP_GE;
        case OPERATOR_GREATER: return OP_GT;
        case OPERATOR_EQUAL: return OP_EQ;
        default: return OP_NE;
    }
}

bool has_cell_argument(const Node *call) {
    for (const Node *argument = first_child(second_child(call)); argument;
         argument = argument->next)
        if (is_surely(value_of(argument), MAY_BE_CELL)) return true;
    return false;
}

bool is_not(const Node *node) { return node->kind == NODE_PREFIX && node->op == OPERATOR_NOT; }

// The function that is called for a condition.
struct Tested {
    const Node *name; /* or null */
    bool is_denied;   /* it stands after ~ */
};

// Of a cell without elements neither the value nor ~ of it is true: it is no test.
Tested tested_function(const Node *node) {
    int negations = 0;
    for (node = without_parens(node); is_not(node); node = without_parens(node->first_child))
        negations++;
    bool is_call = node->kind == NODE_REFERENCE && !node->first_child->next->next;
    if (!is_call || (negations > 0 && has_cell_argument(node))) return {};
    return {node->first_child, negations % 2 == 1};
}

Test lower_comparison(const Node *node) {
    const Node *left = node->first_child;
    const Node *right = left->next;
    bool is_defined = !may_be(value_of(left) | value_of(right), MAY_BE_BROKEN);
    const char *first = lower_expression(left)->text;
    return new_relation(first, host_comparison(right->joint), lower_expression(right)->text,
                        is_defined);
}

// What a call comes to whose answer is known.
bool is_truth_word(const char *text) {
    return strcmp(text, "true") == 0 || strcmp(text, "false") == 0;
}

Test lower_value(const Node *node) {
    if (is_literal(node, "true")) return constant_test(true);
    if (is_literal(node, "false")) return constant_test(false);
    if (node->kind == NODE_NUMBER && strcmp(node->text, "1") == 0) return constant_test(true);
    if (node->kind == NODE_NUMBER && strcmp(node->text, "0") == 0) return constant_test(false);
    const Node *inner = without_parens(node);
    if (holds_literal_truth(inner)) return new_test(lower_expression(inner)->text);
    bool outer = Lowering.takes_test;
    Lowering.takes_test = inner->kind == NODE_REFERENCE || is_not(inner);
    const mExpr *value = lower_tested(node);
    Lowering.takes_test = outer;
    if (const Test *relation = relation_of(value)) return *relation;
    if (is_truth_word(value->text)) return constant_test(*value->text == 't');
    if (is_one_number(value_of(node))) return new_relation(value->text, OP_NE, "0", true);
    return test_of_value(value->text);
}

// What puts lines is out of line: the frames of nested conditions stay small.
[[gnu::noinline]] Test join_sides(const Node *chain) {
    JoinedTests joined = {};
    joined.is_and = is_and(chain);
    for (const Node *side = chain->first_child; side; side = side->next) {
        Test test = lower_test(side);
        append_test(&joined, &test);
    }
    return join_tests(&joined);
}

[[gnu::noinline]] Test lower_negation(const Node *node) {
    Test test = lower_test(node->first_child);
    return negate_test(&test);
}

}  // namespace

mExpr *lower_tested(const Node *node) {
    const Node *outer = Lowering.tested;
    bool was_denied = Lowering.is_denied;
    Tested tested = tested_function(node);
    Lowering.tested = tested.name;
    Lowering.is_denied = tested.is_denied;
    mExpr *value = lower_expression(node);
    Lowering.tested = outer;
    Lowering.is_denied = was_denied;
    return value;
}

Test lower_test(const Node *node) {
    node = without_parens(node);
    if (is_negation(node)) return lower_negation(node);
    if (joins_conditions(node)) return needs_branches(node) ? decide(node) : join_sides(node);
    if (is_elementwise(node) && any_side_can_fail(node))
        return test_of_value(put_elementwise(node));
    return is_plain_comparison(node) ? lower_comparison(node) : lower_value(node);
}

TestApart lower_test_apart(const Node *condition, int deeper) {
    TestApart apart = {};
    Lines *outer = Lowering.lines;
    int32_t procedures = Lowering.inner_procedures;
    Lowering.lines = &apart.needed;
    Lowering.level += deeper;
    apart.test = lower_test(condition);
    Lowering.level -= deeper;
    Lowering.lines = outer;
    apart.is_short = !apart.needed.first && Lowering.inner_procedures == procedures;
    return apart;
}
