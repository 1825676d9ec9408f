// Logical operators that leave their right side alone.
#include "lower/short_circuits.h"

#include <string.h>

#include "lexer/brackets.h"
#include "lower/context.h"
#include "lower/expressions.h"
#include "lower/lines.h"
#include "syntax/names/names.h"
#include "syntax/values/value.h"

namespace {

bool is_between(OperatorId op, OperatorId first, OperatorId last) {
    return op >= first && op <= last;
}

bool is_lazy(const Node *node) {
    return node->kind == NODE_CHAIN && is_between(node->op, OPERATOR_OR_ELSE, OPERATOR_AND_THEN);
}

bool is_logical(const Node *node) {
    return node->kind == NODE_CHAIN && is_between(node->op, OPERATOR_OR_ELSE, OPERATOR_AND);
}

bool is_comparison(const Node *node) {
    return node->kind == NODE_CHAIN && is_between(node->op, OPERATOR_LESS, OPERATOR_GREATER);
}

const char *const Constants[] = {"true", "false", "pi", "eps", "Inf",    "inf",
                                 "NaN",  "nan",   "i",  "j",   "nargin", "nargout"};

bool is_constant(const char *name) {
    for (const char *constant : Constants)
        if (strcmp(constant, name) == 0) return true;
    return false;
}

// A parameter may be missing where the function asks how many are given. Globals, and variables
// that other functions or scripts may set, are taken to have a value.
bool can_name_fail(const Node *name) {
    constexpr uint32_t SET_ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    const Symbol *symbol = name->symbol;
    if (!is_variable(symbol)) return !is_constant(name->text);
    if (symbol->position > 0) return Lowering.scope->flags & (READS_NARGIN | ASKS_EXIST);
    return may_be(value_of(name), MAY_BE_MISSING) && !(symbol->flags & SET_ELSEWHERE);
}

bool can_fail(const Node *node) {
    switch (node->kind) {
        case NODE_NAME: return can_name_fail(node);
        case NODE_REFERENCE: return true;
        case NODE_HANDLE:
        case NODE_ANONYMOUS: return false;
        default: break;
    }
    for (const Node *child = first_child(node); child; child = child->next)
        if (can_fail(child)) return true;
    return false;
}

// A logical value, and the temporary that holds it or null.
struct Logical {
    Operand value;
    const char *temporary;
};

Logical lower_logical(const Node *node, bool is_condition);

const char *in_temporary(const Logical *logical) {
    if (logical->temporary) return logical->temporary;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, logical->value.expr->text});
    return name;
}

bool is_or(OperatorId op) { return op == OPERATOR_OR_ELSE || op == OPERATOR_OR; }

// What puts lines is out of line: the frames of calls nested in right sides stay small.
[[gnu::noinline]] const char *begin_branch(const Logical *left, const Node *right) {
    const char *name = in_temporary(left);
    put_line("if %s then", {test_text(name)});
    if (is_or(right->joint)) put_line("else", {});
    Lowering.level++;
    return name;
}

// The right side of & and | is an array, to be joined with the left one.
[[gnu::noinline]] void end_branch(const char *name, const Node *right, const Operand *value) {
    Operand left = {new_leaf(name), HOST_ATOM};
    bool is_lazy_side = is_between(right->joint, OPERATOR_OR_ELSE, OPERATOR_AND_THEN);
    Operand joined = is_lazy_side ? *value : new_binary(right->joint, &left, value);
    put_line("%s := %s;", {name, joined.expr->text});
    Lowering.level--;
    put_line("end if;", {});
}

Operand lower_side(const Node *right, bool is_condition) {
    bool may_branch = right->kind == NODE_PARENS || right->kind == NODE_CHAIN;
    return may_branch ? lower_logical(right, is_condition).value : lower_operand(right);
}

Logical put_branch(const Logical *left, const Node *right, bool is_condition) {
    const char *name = begin_branch(left, right);
    int32_t outer = open_bracket(OUTSIDE);
    Operand value = lower_side(right, is_condition);
    close_bracket(outer);
    end_branch(name, right, &value);
    return {{new_leaf(name), HOST_ATOM}, name};
}

Logical join_logical(const Logical *left, const Node *right, bool is_condition) {
    if (left->temporary || can_fail(right)) return put_branch(left, right, is_condition);
    Operand value = lower_operand(right);
    return {new_binary(right->joint, &left->value, &value), nullptr};
}

bool is_chain_of_branches(const Node *node, bool is_condition) {
    return is_lazy(node) || (is_condition && is_logical(node));
}

bool any_branch(const Node *node, bool is_condition) {
    node = without_parens(node);
    if (!is_chain_of_branches(node, is_condition)) return false;
    if (any_branch(node->first_child, is_condition)) return true;
    for (const Node *next = second_child(node); next; next = next->next)
        if (can_fail(next)) return true;
    return false;
}

[[gnu::noinline]] Logical lower_parens(const Node *node, bool is_condition) {
    if (any_branch(node, is_condition)) return lower_logical(without_parens(node), is_condition);
    int32_t outer = open_bracket(IN_PARENTHESES);
    Logical inner = lower_logical(node->first_child, is_condition);
    close_bracket(outer);
    return inner;
}

[[gnu::noinline]] Logical lower_branches(const Node *node, bool is_condition) {
    Logical value = lower_logical(node->first_child, is_condition);
    for (const Node *next = second_child(node); next; next = next->next)
        value = join_logical(&value, next, is_condition);
    return value;
}

Logical lower_logical(const Node *node, bool is_condition) {
    if (node->kind == NODE_PARENS) return lower_parens(node, is_condition);
    if (is_chain_of_branches(node, is_condition)) return lower_branches(node, is_condition);
    return {lower_operand(node), nullptr};
}

bool is_truth_value(const Node *node) {
    node = without_parens(node);
    if (!is_logical(node)) return is_comparison(node);
    for (const Node *child = node->first_child; child; child = child->next)
        if (!is_truth_value(child)) return false;
    return true;
}

}  // namespace

bool needs_short_circuit(const Node *chain) { return any_branch(chain, false); }

[[gnu::noinline]] static Operand as_truth_value(const Node *chain, const Operand *value) {
    if (is_truth_value(chain)) return *value;
    return {new_call_leaf(test_text(value->expr->text)), HOST_ATOM};
}

Operand lower_short_circuit(const Node *chain) {
    Logical value = lower_branches(chain, false);
    return as_truth_value(chain, &value.value);
}

mExpr *lower_condition(const Node *node) { return lower_logical(node, true).value.expr; }

const char *test_text(const char *condition) {
    return form_text("ArrayTools[AllNonZero](%s)", {condition});
}
