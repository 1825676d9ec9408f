// Operators: chains of them, and prefixes.
#include "translate/operators.h"

#include <assert.h>
#include <string.h>

#include "diagnose/messages.h"
#include "lexer/brackets.h"
#include "lower/calls/keyword_calls.h"
#include "lower/calls/plain_calls.h"
#include "lower/classes/methods.h"
#include "lower/classes/objects.h"
#include "lower/conditions/condition_sides.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/characters.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/program/program_files.h"
#include "lower/statements/branches.h"
#include "translate/binary_text.h"
#include "translate/indices.h"
#include "translate/text_forms.h"

namespace {

// The builder's operator, and the level of its infix form, which some have only when the right
// operand is a known scalar.
struct HostOperator {
    OperatorId id;
    int builder;
    HostLevel infix;
    bool infix_by_scalar;
};

// clang-format off
const HostOperator HostOperators[] = { // ORDER OPERATORS
    {OPERATOR_NONE,            0,                  HOST_ATOM,    false},
    {OPERATOR_OR_ELSE,         OP_OR,              HOST_ATOM,    false},
    {OPERATOR_AND_THEN,        OP_AND,             HOST_ATOM,    false},
    {OPERATOR_OR,              OP_OR,              HOST_ATOM,    false},
    {OPERATOR_AND,             OP_AND,             HOST_ATOM,    false},
    {OPERATOR_LESS,            OP_LT,              HOST_ATOM,    false},
    {OPERATOR_LESS_EQUAL,      OP_LE,              HOST_ATOM,    false},
    {OPERATOR_EQUAL,           OP_EQ,              HOST_ATOM,    false},
    {OPERATOR_NOT_EQUAL,       OP_NE,              HOST_ATOM,    false},
    {OPERATOR_GREATER_EQUAL,   OP_GE,              HOST_ATOM,    false},
    {OPERATOR_GREATER,         OP_GT,              HOST_ATOM,    false},
    {OPERATOR_COLON,           0,                  HOST_ATOM,    false},
    {OPERATOR_PLUS,            OP_PLUS,            HOST_SUM,     false},
    {OPERATOR_MINUS,           OP_MINUS,           HOST_SUM,     false},
    {OPERATOR_TIMES,           OP_TIMES,           HOST_PRODUCT, false},
    {OPERATOR_DIVIDE,          OP_DIVIDE,          HOST_PRODUCT, true},
    {OPERATOR_LEFT_DIVIDE,     OP_LEFT_DIVIDE,     HOST_ATOM,    false},
    {OPERATOR_DOT_TIMES,       OP_DOT_TIMES,       HOST_PRODUCT, false},
    {OPERATOR_DOT_DIVIDE,      OP_DOT_DIVIDE,      HOST_PRODUCT, false},
    {OPERATOR_DOT_LEFT_DIVIDE, OP_DOT_LEFT_DIVIDE, HOST_PRODUCT, false},
    {OPERATOR_NOT,             OP_NOT,             HOST_ATOM,    false},
    {OPERATOR_POWER,           OP_POWER,           HOST_POWER,   true},
    {OPERATOR_DOT_POWER,       OP_DOT_POWER,       HOST_POWER,   false},
    {OPERATOR_TRANSPOSE,       OP_TRANSPOSE,       HOST_ATOM,    false},
    {OPERATOR_DOT_TRANSPOSE,   OP_DOT_TRANSPOSE,   HOST_ATOM,    false},
};
// clang-format on
static_assert(sizeof HostOperators / sizeof *HostOperators == OPERATOR_COUNT);

const HostOperator *host_operator(OperatorId id) {
    assert(HostOperators[id].id == id);
    return &HostOperators[id];
}

// Between single numbers.
struct PlainOperator {
    OperatorId id;
    int builder;
    HostLevel level;
    const char *sign;
    bool is_swapped;  // a\b is b/a
};

const PlainOperator PlainOperators[] = {
    {OPERATOR_PLUS, OP_PLUS, HOST_SUM, " + ", false},
    {OPERATOR_MINUS, OP_MINUS, HOST_SUM, " - ", false},
    {OPERATOR_TIMES, OP_TIMES, HOST_PRODUCT, "*", false},
    {OPERATOR_DOT_TIMES, OP_DOT_TIMES, HOST_PRODUCT, "*", false},
    {OPERATOR_DIVIDE, OP_DIVIDE, HOST_PRODUCT, "/", false},
    {OPERATOR_DOT_DIVIDE, OP_DOT_DIVIDE, HOST_PRODUCT, "/", false},
    {OPERATOR_LEFT_DIVIDE, OP_DIVIDE, HOST_PRODUCT, "/", true},
    {OPERATOR_DOT_LEFT_DIVIDE, OP_DIVIDE, HOST_PRODUCT, "/", true},
    {OPERATOR_POWER, OP_POWER, HOST_POWER, "^", false},
    {OPERATOR_DOT_POWER, OP_DOT_POWER, HOST_POWER, "^", false},
};

const PlainOperator *plain_operator(OperatorId id) {
    for (const PlainOperator &row : PlainOperators)
        if (row.id == id) return &row;
    return nullptr;
}

bool is_plain_operation(OperatorId op, Value left, Value right) {
    return plain_operator(op) && is_one_number(left) && is_one_number(right);
}

bool is_long_text(const Node *node) {
    node = without_parens(node);
    return node->kind == NODE_STRING && strlen(node->text) > 1;
}

void check_comparison(const Node *chain, const Node *left, const Node *right) {
    if (right->joint != OPERATOR_EQUAL && right->joint != OPERATOR_NOT_EQUAL) return;
    if (!is_long_text(left) && !is_long_text(right)) return;
    report(TEXT_COMPARISON, CurrentFile->source, chain->offset, end_of(right) - chain->offset,
           {OperatorRows[right->joint].spelling});
}

// Whether the operator is surely written between its operands.
bool is_infix_power(const Node *next) {
    if (next->joint == OPERATOR_DOT_POWER) return true;
    return next->joint == OPERATOR_POWER && next->kind == NODE_NUMBER;
}

// A power under another: built with the pair that left_of would put around a copy of it.
[[gnu::noinline]] Operand new_inner_power(const Node *next, const Operand *left,
                                          const Operand *right) {
    int32_t outer = open_bracket(IN_PARENTHESES);
    mExpr *power = new_binary(next->joint, left, right).expr;
    close_bracket(outer);
    return {power, HOST_ATOM};
}

// Transposes of a transpose: as often what one of them puts around its operand, which stands in
// front of the first ")".
const char *repeat_around(const char *operand, const char *around, size_t times) {
    size_t open = strcspn(around, ")");
    Writer to = new_text(strlen(operand) + times * strlen(around) + 1);
    const char *text = to.at;
    for (size_t k = 0; k < times; k++) write_bytes(&to, around, open);
    write_text(&to, operand);
    for (size_t k = 0; k < times; k++) write_text(&to, around + open);
    return text;
}

bool is_same_postfix(const Node *postfix, const Node *next) {
    return next && next->kind == NODE_POSTFIX && next->joint == postfix->joint;
}

// next: the first of some, at the end the last of them.
[[gnu::noinline]] Operand join_postfixes(const Operand *left, const Node **next) {
    int builder = host_operator((*next)->joint)->builder;
    mExpr *value = new_operator1(builder, left->expr);
    size_t times = 1;
    for (; is_same_postfix(*next, (*next)->next); *next = (*next)->next) times++;
    if (times > 1) {
        mExpr nothing = {EXPR_NAME, "", NOT_SCALAR, nullptr};
        const char *around = new_operator1(builder, &nothing)->text;
        value->text = repeat_around(left->expr->text, around, times);
    }
    return {value, HOST_ATOM};
}

Operand join_numbers(const PlainOperator *plain, const Operand *left, const Operand *right) {
    const mExpr *first = left_of(plain->is_swapped ? right : left, plain->level);
    const mExpr *second = right_of(plain->is_swapped ? left : right, plain->level);
    mExpr *value = new_binary_expr(plain->builder, SCALAR, first, {}, {plain->sign, second->text});
    return {value, plain->level};
}

// Operands in front of the next one. Few are ever asked: chains nest, and each would be walked once
// for every chain around it.
struct InFront {
    const Node *unasked;
    bool acts;  // one of those before
};

bool acts_before(InFront *front, const Node *next) {
    for (; !front->acts && front->unasked != next; front->unasked = front->unasked->next)
        front->acts = may_act(front->unasked);
    return front->acts;
}

// Lines that the operand needs come after what acts in front of it.
Operand lower_after(Operand *left, InFront *front, const Node *next) {
    LinesEnd end = end_of_lines();
    Operand right = lower_operand(next);
    if (has_more_lines(&end) && acts_before(front, next))
        *left = {new_leaf(name_earlier(&end, left->expr->text)), HOST_ATOM};
    return right;
}

Operand join_next(Operand *left, Value left_value, InFront *front, const Node *next) {
    Operand right = lower_after(left, front, next);
    if (is_plain_operation(next->joint, left_value, value_of(next)))
        return join_numbers(plain_operator(next->joint), left, &right);
    spell_characters(next->joint, left, left_value, &right, value_of(next));
    bool is_inner = next->next && is_infix_power(next) && is_infix_power(next->next);
    return is_inner ? new_inner_power(next, left, &right) : new_binary(next->joint, left, &right);
}

bool is_string_object(const Node *node) {
    node = without_parens(node);
    return node->kind == NODE_STRING && has_flag(node, DOUBLE_QUOTED);
}

// "n = " + n joins texts, which the host's sum does not.
Operand join_with_text(const Operand *left, const Node *next) {
    const mExpr *right = lower_expression(next);
    return {new_keyword_call("plus", {left->expr->text, right->text}), HOST_ATOM};
}

// The method that joins the operand to those in front of it, or null. *left: the class of what
// stands in front; from now on, of both.
[[gnu::noinline]] const char *joining_method(const Node *chain, const Node *next,
                                             const char **left) {
    if (!has_operator_methods()) return nullptr;
    const char *right = next->kind == NODE_POSTFIX ? NO_OBJECT : class_of_value(next);
    const char *method = operator_method(next->joint, chain, *left, right);
    bool is_plain = !method && *left == NO_OBJECT && right == NO_OBJECT;
    *left = is_plain ? NO_OBJECT : nullptr;
    return method;
}

// right: null for a prefix or postfix.
[[gnu::noinline]] Operand call_operator(const char *method, mExpr *left, const Node *right) {
    ExprList operands = {};
    append_expr(&operands, left);
    if (right) append_expr(&operands, lower_expression(right));
    mExpr *call = new_call_of(method, operands.first);
    free_vExpr(operands.first);
    return {call, HOST_ATOM};
}

const char *class_in_front(const Node *first) {
    return has_operator_methods() ? class_of_value(first) : nullptr;
}

}  // namespace

Operand new_binary(OperatorId op, const Operand *left, const Operand *right) {
    const HostOperator *row = host_operator(op);
    bool is_infix = !row->infix_by_scalar || right->expr->scalar;
    HostLevel form = is_infix ? row->infix : HOST_ATOM;
    bool is_swapped = op == OPERATOR_DOT_LEFT_DIVIDE;
    const mExpr *first = is_swapped ? right_of(left, form) : left_of(left, form);
    const mExpr *second = is_swapped ? left_of(right, form) : right_of(right, form);
    return {new_operator2(row->builder, first, second), form};
}

Operand join_values(OperatorId op, const Operand *left, Value left_value, const Node *right) {
    Operand other = lower_operand(right);
    if (is_plain_operation(op, left_value, value_of(right)))
        return join_numbers(plain_operator(op), left, &other);
    return new_binary(op, left, &other);
}

// What is known of a number, or not, and the operand that joins it.
static Value joined_value(const Node *next, Value left) {
    bool are_numbers = is_plain_operation(next->joint, left, value_of(next));
    return are_numbers ? MAY_BE_NUMBER | ONE | ANY_SIGN : ANY_VALUE & ~MAY_BE_TEXT;
}

// Out of line: the frames of nested short circuits stay small.
[[gnu::noinline]] static Operand join_operands(const Node *node) {
    const Node *last = node->first_child;
    Operand value = lower_operand(last);
    Value known = value_of(last);
    bool is_text = is_string_object(last);
    InFront front = {last, false};
    const char *left_class = class_in_front(last);
    for (const Node *next = last->next; next; last = next, next = next->next) {
        check_comparison(node, last, next);
        is_text = next->joint == OPERATOR_PLUS && (is_text || is_string_object(next));
        if (const char *method = joining_method(node, next, &left_class)) {
            value = call_operator(method, value.expr, next->kind == NODE_POSTFIX ? nullptr : next);
            known = ANY_VALUE;
        } else if (next->kind == NODE_POSTFIX) {
            value = join_postfixes(&value, &next);
        } else {
            value = is_text ? join_with_text(&value, next) : join_next(&value, known, &front, next);
            known = is_text ? ANY_VALUE : joined_value(next, known);
        }
    }
    return value;
}

Operand lower_chain(const Node *node) {
    return is_lazy(node) && needs_branches(node) ? lower_branched_value(node) : join_operands(node);
}

static Operand negate_value(const mExpr *value) {
    const Test *relation = relation_of(value);
    if (relation && !relation->is_flag && relation->has_opposite) {
        Test opposite = negate_test(relation);
        return {new_truth_value(&opposite), HOST_ATOM};
    }
    return {new_operator1(OP_NOT, value), HOST_ATOM};
}

static bool may_be_truth(const Node *node) {
    const char *class_name = class_of_value(node);
    bool is_object = class_name && class_name != NO_OBJECT;
    return !is_object && may_be(value_of(node), MAY_BE_TRUTH);
}

// +t of a truth value is a number in MATLAB.
static Operand as_number(const Operand *operand) {
    Operand nothing = {new_node(EXPR_INTEGER, "0"), HOST_ATOM};
    return new_binary(OPERATOR_PLUS, operand, &nothing);
}

Operand lower_prefix(const Node *node) {
    Operand operand = lower_operand(node->first_child);
    if (is_test_alone(operand.expr)) return operand;  // ~ is told with it
    if (const char *method = prefix_method(node))
        return call_operator(method, operand.expr, nullptr);
    spell_prefixed(&operand, value_of(node->first_child));
    if (node->op == OPERATOR_NOT) return negate_value(operand.expr);
    if (node->op == OPERATOR_PLUS && may_be_truth(node->first_child)) return as_number(&operand);
    int sign = node->op == OPERATOR_MINUS ? OP_UNARY_MINUS : OP_UNARY_PLUS;
    return {new_operator1(sign, after_sign(&operand)), HOST_SIGN};
}
