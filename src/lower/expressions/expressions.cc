// Expressions: the kinds of nodes, and ranges.
#include "lower/expressions/expressions.h"

#include <assert.h>
#include <string.h>

#include "lower/calls/calls.h"
#include "lower/calls/keyword_calls.h"
#include "lower/calls/plain_calls.h"
#include "lower/classes/methods.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/anonymous.h"
#include "lower/expressions/characters.h"
#include "lower/expressions/end_positions.h"
#include "lower/expressions/references.h"
#include "lower/lines/lines.h"
#include "lower/program/called_functions.h"
#include "syntax/values/values.h"
#include "translate/indices.h"
#include "translate/ranges.h"

static mExpr *lower_range_value(const Node *node);

static Operand atom(mExpr *expr) { return {expr, HOST_ATOM}; }

Operand lower_operand(const Node *node) {
    switch (node->kind) {
        case NODE_NUMBER: return lower_number(node);
        case NODE_STRING: return atom(lower_string(node));
        case NODE_NAME: return without_parentheses(lower_name(node));
        case NODE_END: return atom(lower_end(node));
        case NODE_COLON: return atom(new_node(EXPR_RANGE, nullptr));
        case NODE_PARENS: return lower_operand(node->first_child);
        case NODE_PREFIX: return lower_prefix(node);
        case NODE_CHAIN: return lower_chain(node);
        case NODE_RANGE: return atom(lower_range_value(node));
        case NODE_MATRIX: return lower_matrix(node);
        case NODE_CELL: return atom(lower_cell(node));
        case NODE_HANDLE: return atom(lower_handle(node));
        case NODE_ANONYMOUS: return atom(lower_anonymous(node));
        default: return without_parentheses(lower_reference(node));
    }
}

bool is_text_range(const Node *node) {
    const Node *start = without_parens(node->first_child);
    const Node *second = second_child(node);
    const Node *stop = without_parens(second->next ? second->next : second);
    return kinds_of(value_of(start)) == MAY_BE_TEXT && kinds_of(value_of(stop)) == MAY_BE_TEXT;
}

// From one character to another the values are characters, too.
static mExpr *lower_text_range(const Node *node) {
    return new_keyword_call("char", {lower_range(node)->text});
}

// Of objects the value of a method.
static mExpr *call_range(const char *method, const Node *range) {
    ExprList parts = {};
    for (const Node *part = range->first_child; part; part = part->next)
        append_expr(&parts, lower_expression(part));
    mExpr *call = new_call_of(method, parts.first);
    free_vExpr(parts.first);
    return call;
}

// The values are of the class that one of the bounds has.
static mExpr *lower_class_range(const Node *name, const Node *range) {
    vExpr *numbers = alloc_vExpr(new_call_leaf(lower_range(range)->text));
    mExpr *call = new_call_of(host_function(name), numbers);
    free_vExpr(numbers);
    return call;
}

static mExpr *lower_range_value(const Node *node) {
    if (const char *method = range_method(node)) return call_range(method, node);
    if (is_text_range(node)) return lower_text_range(node);
    const Node *name = integer_class(node);
    return name ? lower_class_range(name, node) : lower_range(node);
}

// A character counts by its code.
static mExpr *lower_side(const Node *node) {
    Operand side = lower_operand(node);
    spell_prefixed(&side, value_of(node));
    return side.expr;
}

mExpr *lower_range(const Node *node) {
    assert(node->kind == NODE_RANGE);
    const Node *second = second_child(node);
    mExpr *start = lower_side(node->first_child);
    mExpr *next = lower_side(second);
    if (!second->next) return new_seq_node(start, unit_step(), next, nullptr);
    return new_seq_node(start, next, lower_side(second->next), nullptr);
}
