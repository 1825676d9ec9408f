// Conditions of statements.
#include "lower/conditions.h"

#include <string.h>

#include "lexer/brackets.h"
#include "lower/called_functions.h"
#include "lower/context.h"
#include "lower/expressions.h"
#include "lower/fallible.h"
#include "lower/lines.h"
#include "syntax/names/names.h"
#include "syntax/values/value.h"

namespace {

bool is_chain_between(const Node *node, OperatorId first, OperatorId last) {
    return node->kind == NODE_CHAIN && node->op >= first && node->op <= last;
}

// A variable without a value fails either way.
constexpr Value ONE_NUMBER = MAY_BE_NUMBER | ONE | ANY_SIGN | MAY_BE_MISSING;

bool is_single(const Node *node) { return is_within(value_of(node), ONE_NUMBER | MAY_BE_TRUTH); }

bool is_number(const Node *node) { return is_within(value_of(node), ONE_NUMBER); }

bool is_and(const Node *chain) {
    return chain->op == OPERATOR_AND_THEN || chain->op == OPERATOR_AND;
}

bool is_lazy(const Node *node) {
    return is_chain_between(node, OPERATOR_OR_ELSE, OPERATOR_AND_THEN);
}

bool is_elementwise(const Node *node) { return is_chain_between(node, OPERATOR_OR, OPERATOR_AND); }

// Whether each side is a condition of its own: of & and | where all but the last are single values.
bool joins_conditions(const Node *node) {
    if (!is_elementwise(node)) return is_lazy(node);
    for (const Node *side = node->first_child; side->next; side = side->next)
        if (!is_single(side)) return false;
    return true;
}

// ~x of an array asks whether all elements are zero.
bool is_negation(const Node *node) {
    return node->kind == NODE_PREFIX && node->op == OPERATOR_NOT &&
           (is_single(node->first_child) || is_lazy(without_parens(node->first_child)));
}

bool is_literal(const Node *node, const char *text) {
    return node->kind == NODE_NAME && !is_variable(node->symbol) && strcmp(node->text, text) == 0 &&
           !has_function(node);
}

// Two numbers, which the host compares as they are.
bool is_plain_comparison(const Node *node) {
    if (!is_chain_between(node, OPERATOR_LESS, OPERATOR_GREATER)) return false;
    const Node *left = node->first_child;
    return is_number(left) && is_number(left->next) && !left->next->next;
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

// The function that is called for a condition, perhaps behind ~.
const Node *tested_function(const Node *node) {
    for (;;) {
        node = without_parens(node);
        if (node->kind != NODE_PREFIX || node->op != OPERATOR_NOT) break;
        node = node->first_child;
    }
    bool is_call = node->kind == NODE_REFERENCE && !node->first_child->next->next;
    return is_call ? node->first_child : nullptr;
}

const char *side_text(const Node *side) {
    int32_t outer = open_bracket(OUTSIDE);
    const char *text = lower_expression(side)->text;
    close_bracket(outer);
    return text;
}

Test lower_comparison(const Node *node) {
    const Node *left = node->first_child;
    const Node *right = left->next;
    bool is_defined = !may_be(value_of(left) | value_of(right), MAY_BE_BROKEN);
    const char *first = side_text(left);
    return new_relation(first, host_comparison(right->joint), side_text(right), is_defined);
}

Test lower_value(const Node *node) {
    if (is_literal(node, "true")) return constant_test(true);
    if (is_literal(node, "false")) return constant_test(false);
    if (node->kind == NODE_NUMBER && strcmp(node->text, "1") == 0) return constant_test(true);
    Lowering.tested = tested_function(node);
    int32_t outer = open_bracket(OUTSIDE);
    const mExpr *value = lower_expression(node);
    close_bracket(outer);
    if (const Test *relation = relation_of(value)) return *relation;
    if (is_number(node)) return new_relation(value->text, OP_NE, "0", true);
    return test_of_value(value->text);
}

bool can_side_fail(const Node *chain, const Node *side) {
    return can_fail(side, chain->first_child);
}

bool any_side_can_fail(const Node *chain) {
    for (const Node *side = second_child(chain); side; side = side->next)
        if (can_side_fail(chain, side)) return true;
    return false;
}

// & and | of arrays leave their right side alone where the left one decides for all elements.
// Answers the variable that holds the value.
[[gnu::noinline]] const char *put_elementwise(const Node *chain);

const char *elementwise_text(const Node *side) {
    const Node *inner = without_parens(side);
    if (!is_elementwise(inner) || !any_side_can_fail(inner)) return side_text(side);
    return put_elementwise(inner);
}

const char *put_elementwise(const Node *chain) {
    const Node *first = without_parens(chain->first_child);
    bool is_nested = is_elementwise(first) && any_side_can_fail(first);
    const char *name = is_nested ? put_elementwise(first) : new_temporary();
    if (!is_nested) put_line("%s := %s;", {name, side_text(chain->first_child)});
    Test test = test_of_value(name);
    for (const Node *side = second_child(chain); side; side = side->next) {
        Test is_open = is_and(chain) ? test : negate_test(&test);
        put_line("if %s then", {test_text(&is_open)});
        Lowering.level++;
        Operand left = {new_leaf(name), HOST_ATOM};
        Operand right = {new_leaf(elementwise_text(side)), HOST_ATOM};
        put_line("%s := %s;", {name, new_binary(chain->op, &left, &right).expr->text});
        Lowering.level--;
        put_line("end if;", {});
    }
    return name;
}

bool any_needs_branches(const Node *chain) {
    if (needs_branches(chain->first_child)) return true;
    for (const Node *side = second_child(chain); side; side = side->next)
        if (can_side_fail(chain, side) || needs_branches(side)) return true;
    return false;
}

void open_where(const Node *condition, bool is_true);

void close_branches(int outermost) {
    for (; Lowering.level > outermost; Lowering.level--) put_line("end if;", {});
    put_line("end if;", {});
}

// A variable that holds one value where the condition is true, else the other.
[[gnu::noinline]] const char *decide(const Node *condition, const char *yes, const char *no) {
    bool is_conjunction = is_and(condition);
    const char *name = new_temporary();
    put_line("%s := %s;", {name, is_conjunction ? no : yes});
    int level = Lowering.level;
    open_where(condition, is_conjunction);
    put_inner_line("%s := %s;", {name, is_conjunction ? yes : no});
    close_branches(level);
    return name;
}

[[gnu::noinline]] Test join_sides(const Node *chain) {
    JoinedTests joined = {};
    joined.is_and = is_and(chain);
    for (const Node *side = chain->first_child; side; side = side->next) {
        Test test = lower_test(side);
        append_test(&joined, &test);
    }
    return join_tests(&joined);
}

// What puts lines is out of line: the frames of nested conditions stay small.
[[gnu::noinline]] Test lower_sides(const Node *chain) {
    if (any_needs_branches(chain)) return count_test(decide(chain, "1", "0"), OP_EQ, 1);
    return join_sides(chain);
}

[[gnu::noinline]] Test lower_negation(const Node *node) {
    Test test = lower_test(node->first_child);
    return negate_test(&test);
}

void open_if(const Test *test, bool is_first) {
    if (!is_first) Lowering.level++;
    put_line("if %s then", {test_text(test)});
}

// One after the other, those together of which only the first can fail, up to the side end (not
// included; null for all).
[[gnu::noinline]] void open_sides(const Node *chain, bool is_true, const Node *end) {
    bool is_first = true;
    for (const Node *side = chain->first_child; side != end;) {
        if (needs_branches(side)) {
            if (!is_first) Lowering.level++;
            open_where(side, is_true);
            side = side->next;
        } else {
            JoinedTests joined = {};
            joined.is_and = true;
            if (!is_first) Lowering.level++;
            do {
                Test test = lower_test(side);
                if (!is_true) test = negate_test(&test);
                append_test(&joined, &test);
                side = side->next;
            } while (side != end && !can_side_fail(chain, side) && !needs_branches(side));
            Test test = join_tests(&joined);
            open_if(&test, true);
        }
        is_first = false;
    }
}

// Opens ifs in which the condition is true, or is not.
void open_where(const Node *node, bool is_true) {
    node = without_parens(node);
    if (is_negation(node)) return open_where(node->first_child, !is_true);
    if (joins_conditions(node) && is_and(node) == is_true && any_needs_branches(node))
        return open_sides(node, is_true, nullptr);
    Test test = lower_test(node);
    if (!is_true) test = negate_test(&test);
    open_if(&test, true);
}

}  // namespace

bool needs_branches(const Node *node) {
    node = without_parens(node);
    if (is_negation(node)) return needs_branches(node->first_child);
    return joins_conditions(node) && any_needs_branches(node);
}

Test lower_test(const Node *node) {
    node = without_parens(node);
    if (is_negation(node)) return lower_negation(node);
    if (joins_conditions(node)) return lower_sides(node);
    if (is_elementwise(node) && any_side_can_fail(node))
        return test_of_value(put_elementwise(node));
    return is_plain_comparison(node) ? lower_comparison(node) : lower_value(node);
}

TestApart lower_test_apart(const Node *condition) {
    TestApart apart = {};
    Lines *outer = Lowering.lines;
    int32_t procedures = Lowering.inner_procedures;
    Lowering.lines = &apart.needed;
    Lowering.level++;
    apart.test = lower_test(condition);
    Lowering.level--;
    Lowering.lines = outer;
    apart.is_short = !apart.needed.first && Lowering.inner_procedures == procedures;
    return apart;
}

void open_branches(const Node *condition) { open_where(condition, true); }

// Sides that are asked one after the other have a break each.
static void put_break_if(const Node *node, bool is_true) {
    node = without_parens(node);
    if (is_negation(node)) return put_break_if(node->first_child, !is_true);
    if (joins_conditions(node) && is_and(node) != is_true && any_needs_branches(node)) {
        for (const Node *side = node->first_child; side; side = side->next)
            put_break_if(side, is_true);
        return;
    }
    int level = Lowering.level;
    open_where(node, is_true);
    put_inner_line("break;", {});
    close_branches(level);
}

void put_break_unless(const Node *condition) { put_break_if(condition, false); }
void put_break_where(const Node *condition) { put_break_if(condition, true); }

void put_break(const Test *test) {
    put_line("if %s then", {test_text(test)});
    put_inner_line("break;", {});
    put_line("end if;", {});
}

// Whether it is true or false, and nothing else.
static bool is_truth(const Node *node) {
    node = without_parens(node);
    if (!is_lazy(node) && !is_elementwise(node))
        return is_chain_between(node, OPERATOR_LESS, OPERATOR_GREATER);
    for (const Node *side = node->first_child; side; side = side->next)
        if (!is_truth(side)) return false;
    return true;
}

// The last side decides in the innermost branch.
static const char *decide_by_last(const Node *chain, const Node *last) {
    const char *name = new_temporary();
    put_line("%s := %s;", {name, is_and(chain) ? "false" : "true"});
    int level = Lowering.level;
    open_sides(chain, is_and(chain), last);
    Lowering.level++;
    Lowering.tested = tested_function(last);
    const char *value = side_text(last);
    put_line("%s := %s;", {name, is_truth(last) ? value : value_condition(value)});
    Lowering.level--;
    close_branches(level);
    return name;
}

Operand lower_branched_value(const Node *chain) {
    const Node *last = chain->first_child;
    while (last->next) last = last->next;
    bool decides = can_side_fail(chain, last) && !needs_branches(last);
    const char *name = decides ? decide_by_last(chain, last) : decide(chain, "true", "false");
    return {new_leaf(name), HOST_ATOM};
}
