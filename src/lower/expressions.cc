// Expressions: the kinds of nodes, and ranges.
#include "lower/expressions.h"

#include "lexer/brackets.h"
#include "lower/anonymous.h"
#include "lower/calls.h"
#include "lower/end_positions.h"
#include "lower/lines.h"
#include "lower/references.h"
#include "translate/ranges.h"

const Node *without_parens(const Node *node) {
    while (node->kind == NODE_PARENS) node = node->first_child;
    return node;
}

static Operand lower_parens(const Node *node) {
    int32_t outer = open_bracket(IN_PARENTHESES);
    Operand inner = lower_operand(node->first_child);
    close_bracket(outer);
    return inner;
}

static Operand atom(mExpr *expr) { return {expr, HOST_ATOM}; }

Operand lower_operand(const Node *node) {
    switch (node->kind) {
        case NODE_NUMBER: return lower_number(node);
        case NODE_STRING: return atom(lower_string(node));
        case NODE_NAME: return atom(lower_name(node));
        case NODE_END: return atom(lower_end(node));
        case NODE_COLON: return atom(new_node(EXPR_RANGE, nullptr));
        case NODE_PARENS: return lower_parens(node);
        case NODE_PREFIX: return lower_prefix(node);
        case NODE_CHAIN: return lower_chain(node);
        case NODE_RANGE: return atom(lower_range(node));
        case NODE_MATRIX: return lower_matrix(node);
        case NODE_CELL: return atom(lower_cell(node));
        case NODE_HANDLE: return atom(lower_handle(node));
        case NODE_ANONYMOUS: return atom(lower_anonymous(node));
        default: return atom(lower_reference(node));
    }
}

mExpr *lower_expression(const Node *node) { return lower_operand(node).expr; }

mExpr *lower_range(const Node *node) {
    const Node *second = second_child(node);
    mExpr *start = lower_expression(node->first_child);
    mExpr *next = lower_expression(second);
    if (!second->next) return new_seq_node(start, unit_step(), next, nullptr);
    return new_seq_node(start, next, lower_expression(second->next), nullptr);
}
