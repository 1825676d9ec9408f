// Positions in an index.
#include "lower/expressions/end_positions.h"

#include <assert.h>
#include <stdlib.h>

#include "lower/conditions/host_conditions.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/value_lists.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/targets/shared_parts.h"
#include "syntax/values/shapes.h"
#include "syntax/values/values.h"
#include "translate/ranges.h"

int count_children(const Node *node) {
    int count = 0;
    for (const Node *child = node->first_child; child; child = child->next) count++;
    return count;
}

const char *last_position_text(const char *base, int argument, int count) {
    assert(argument >= 1 && argument <= count);
    if (count == 1) return form_text("ArrayNumElems(%s,'All')", {base});
    const char *dimension = number_text(argument);
    if (argument < count) return form_text("rhs(ArrayDims(%s)[%s])", {base, dimension});
    return form_text("mul(rhs(i),i in ArrayDims(%s)[%s..])", {base, dimension});
}

mExpr *lower_end(const Node *node) {
    const EndBase *at = Lowering.end_base;
    if (!at) {  // among the arguments of a function
        report_gap(END_OUTSIDE_INDEX, node);
        return new_leaf("end");
    }
    if (at->is_used) *at->is_used = true;
    mExpr *expr = alloc_mExpr();
    *expr = {EXPR_INTEGER, last_position_text(at->base, at->argument, at->count), SCALAR, nullptr};
    return expr;
}

namespace {

const Node *last_child(const Node *node) {
    assert(node->first_child);
    const Node *child = node->first_child;
    while (child->next) child = child->next;
    return child;
}

bool is_open_range(const Node *node) {
    return node->kind == NODE_RANGE && last_child(node)->kind == NODE_END;
}

mExpr *lower_open_range(const Node *range) {
    const Node *second = second_child(range);
    mExpr *start = lower_expression(range->first_child);
    mExpr *step = second->next ? lower_expression(second) : unit_step();
    return new_seq_node(start, step, nullptr, nullptr);
}

// The 1 of end - 1; else -1.
double after_end(const Node *stop) {
    stop = without_parens(stop);
    const Node *first = stop->kind == NODE_CHAIN ? stop->first_child : nullptr;
    if (!first || first->kind != NODE_END) return -1;
    const Node *second = first->next;
    bool is_distance =
        second->joint == OPERATOR_MINUS && second->kind == NODE_NUMBER && !second->next;
    return is_distance ? strtod(second->text, nullptr) : -1;
}

// Whether a..b selects what a:b does. A bound below 0 counts from the end in the host. Where end -
// j is one, no position from j on is selected either way.
bool is_plain_range(const Node *range) {
    assert(range->kind == NODE_RANGE);
    const Node *stop = second_child(range);
    if (stop->next) return true;
    if (!is_surely_whole(stop)) return false;
    if (is_never_negative(stop)) return true;
    double distance = after_end(stop);
    const Node *start = without_parens(range->first_child);
    return distance >= 0 && start->kind == NODE_NUMBER && strtod(start->text, nullptr) >= distance;
}

}  // namespace

bool is_host_range(const Node *argument) {
    argument = without_parens(argument);
    if (argument->kind != NODE_RANGE || second_child(argument)->next) return false;
    return is_open_range(argument) || is_plain_range(argument);
}

namespace {

// What is a text, or comes out of a cell, may be the text ':'. To a function it may be.
void check_colon_text(const Node *node) {
    const bool *is_index = Lowering.end_base->is_used;
    if (is_index && !*is_index) return;
    if (!(Lowering.scope->flags & HAS_COLON_TEXT)) return;
    bool is_from_cell = node->kind == NODE_REFERENCE && last_selector(node)->kind == NODE_BRACES;
    bool is_text = node->kind != NODE_STRING && is_known_text(value_of(node));
    if (is_from_cell || is_text) report_at(COLON_TEXT, node);
}

mExpr *lower_plain_position(const Node *node) {
    check_colon_text(node);
    if (is_value_list(node, false)) return lower_kept_list(node);
    node = without_parens(node);
    if (node->kind == NODE_END) return last_position();
    if (!Lowering.end_base->is_used && is_colon(node)) return new_node(EXPR_RANGE, nullptr);
    if (is_open_range(node)) return lower_open_range(node);
    bool is_value =
        node->kind == NODE_RANGE && (Lowering.end_base->may_be_call || !is_plain_range(node));
    return is_value ? new_call_leaf(lower_range(node)->text) : nullptr;
}

void mark_used(const EndBase *at, const Node *node) {
    node = without_parens(node);
    if (at->is_used && (node->kind == NODE_END || is_open_range(node))) *at->is_used = true;
}

mExpr *lower_separate(const Node *node) {
    Operand value = lower_operand(node);
    return in_parentheses(&value);
}

mExpr *lower_argument(const Node *node) {
    return is_value_list(node, false) ? lower_kept_list(node) : lower_separate(node);
}

}  // namespace

mExpr *lower_position(const Node *node, const EndBase *at) {
    assert(at->argument >= 1 && at->argument <= at->count);
    const EndBase *outer = Lowering.end_base;
    Lowering.end_base = at;
    mark_used(at, node);
    mExpr *position = lower_plain_position(node);
    if (!position) position = lower_separate(node);
    Lowering.end_base = outer;
    return position;
}

static ExprList lower_positions(const Node *selector, const char *base, bool *is_used,
                                bool may_be_call) {
    ExprList positions = {};
    EndBase at = {base, 0, count_children(selector), is_used, may_be_call};
    for (const Node *child = selector->first_child; child; child = child->next) {
        at.argument++;
        LinesEnd end = end_of_lines();
        mExpr *position = lower_position(child, &at);
        if (has_more_lines(&end)) name_calls(&end, selector->first_child, positions.first);
        append_expr(&positions, position);
    }
    return positions;
}

ExprList lower_index(const Node *selector, const char *base, bool may_be_call) {
    Holder outer = begin_holding(nullptr, nullptr);
    ExprList positions = lower_positions(selector, base, nullptr, may_be_call);
    end_holding(outer);
    return positions;
}

ExprList lower_values(const Node *arguments) {
    ExprList values = {};
    for (const Node *child = arguments->first_child; child; child = child->next) {
        LinesEnd end = end_of_lines();
        mExpr *value = lower_argument(child);
        if (has_more_lines(&end)) name_calls(&end, arguments->first_child, values.first);
        append_expr(&values, value);
    }
    return values;
}

// Of several unknown names around an end the innermost counts.
ExprList lower_arguments(const Node *arguments, const char *name, bool *is_index) {
    const EndBase *around = Lowering.end_base;
    if (around && !around->is_used) return lower_values(arguments);
    return lower_positions(arguments, name, is_index, false);
}
