// Deletions of elements.
#include "lower/targets/deletions.h"

#include <assert.h>

#include "lower/conditions/host_conditions.h"
#include "lower/library/source_calls.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/targets/targets.h"
#include "syntax/names/field_uses.h"
#include "syntax/tree/value.h"
#include "syntax/values/values.h"
#include "translate/indices.h"
#include "translate/ranges.h"

namespace {

// As MATLAB has it: no text in double quotes, and nothing in parentheses.
bool deletes(const Node *value) {
    bool is_text = value->kind == NODE_STRING && !*value->text;
    return is_empty_matrix(value) || (is_text && !has_flag(value, DOUBLE_QUOTED));
}

bool is_one(const Node *node) {
    return node->kind == NODE_NUMBER && node->text[0] == '1' && node->text[1] == '\0';
}

// A colon, or 1:end.
bool is_whole(const Node *argument) {
    argument = without_parens(argument);
    if (is_colon(argument)) return true;
    if (argument->kind != NODE_RANGE || !is_one(argument->first_child)) return false;
    const Node *second = second_child(argument);
    return second->kind == NODE_END && !second->next;
}

// The index that selects what goes, from 1; 0 when all goes, -1 for several such indices.
int selecting_argument(const Node *arguments) {
    int selecting = 0;
    int k = 1;
    for (const Node *child = arguments->first_child; child; child = child->next, k++) {
        if (is_whole(child)) continue;
        if (selecting) return -1;
        selecting = k;
    }
    return selecting;
}

const char *number_of_positions(const char *base, int argument, int count) {
    if (count == 1) return last_position_text(base, 1, 1);
    return form_text("rhs(ArrayDims(%s)[%s])", {base, number_text(argument)});
}

// a:end, which an index leaves open, as a value.
mExpr *closed_range(mExpr *position, const char *count) {
    const mRange *range = is_range(position) ? position->range : nullptr;
    if (!range || range->stop) return position;
    return new_call_leaf(new_seq_node(range->start, range->step, new_leaf(count), nullptr)->text);
}

// Calls a function that the front end brings along, of what is deleted from and what is selected.
mExpr *call_with_selected(const char *row, const char *first, const char *count,
                          const Node *arguments, const EndBase *at) {
    mExpr *selected = lower_position(nth_child(arguments, at->argument), at);
    ExprList values = {};
    append_expr(&values, new_leaf(first));
    append_expr(&values, closed_range(selected, count));
    OfferedCall call = {nullptr, nullptr, values.first, 2, 1, false};
    mExpr *result = new_source_call(row, &call);
    free_vExpr(values.first);
    return result;
}

const char *selection(const char *base, mExpr *positions, int selecting, int count) {
    ExprList arguments = {};
    for (int k = 1; k <= count; k++)
        append_expr(&arguments, k == selecting ? positions : new_node(EXPR_RANGE, nullptr));
    const char *text = new_element_node(base, VARIABLE_INDEX, arguments.first)->text;
    free_vExpr(arguments.first);
    return text;
}

// s.f(k) of a field that nobody knows, where s.f{k} stands somewhere. One that is no cell then
// keeps an array of one element.
bool is_used_as_cell(const Node *target) {
    const Node *base = target->first_child;
    const Node *field = base->next;
    bool is_plain = field->kind == NODE_FIELD && field->next == last_selector(target);
    return is_plain && is_cell_field(base->symbol, field->text) &&
           may_be(value_of(field), MAY_BE_CELL);
}

// Whether what is left is a cell, as far as the text can tell. One position of it, selected, gives
// the element in the host.
bool leaves_cell(const Node *target) { return is_cell_base(target) || is_used_as_cell(target); }

// Whether it may leave a cell: of what is one on some ways to this place, or of what nobody knows
// and never makes an array of.
bool may_leave_cell(const Node *target) {
    constexpr Value PLAIN = ARITHMETIC | MAY_BE_TEXT | MAY_BE_CELL | MAY_BE_OTHER;
    const Node *base = target->first_child;
    const Node *holder = base;
    while (holder->next != last_selector(target)) holder = holder->next;
    Value kinds = kinds_of(value_of(holder));
    if (!may_be(kinds, MAY_BE_CELL)) return false;
    return holder != base || is_within(kinds, PLAIN) || may_be_cell(base);
}

// What a deletion of the first or the last element leaves; null for any other position, and where
// that is surely no cell. A range leaves a cell also of one element.
const char *range_left(const Node *target, const Node *arguments) {
    const Node *position = arguments->first_child;
    bool is_first = is_one(position);
    if (position->next || (!is_first && position->kind != NODE_END)) return nullptr;
    bool is_field = target->first_child->next != arguments;
    if (!is_field && !leaves_cell(target) && !may_leave_cell(target)) return nullptr;
    return is_first ? "2.." : "1..-2";
}

// What is indexed; the value of a field .(e) gets a name first.
const char *base_text(const Target *target) {
    Path path = begin_path(target_value(target), target->field != nullptr);
    name_path(&path);
    return path.text;
}

bool has_computed_field(const Node *target) {
    for (const Node *selector = target->first_child->next; selector; selector = selector->next)
        if (selector->kind == NODE_DYNAMIC_FIELD) return true;
    return false;
}

// x([]) = [] leaves x as it is.
bool selects_nothing(const Node *arguments) {
    const Node *position = arguments->first_child;
    return !position->next && !may_be(value_of(position), MAY_BE_FILLED);
}

}  // namespace

bool is_deletion(const Node *assignment) {
    const Node *target = assignment->first_child;
    if (target->kind != NODE_REFERENCE || assignment->op != OPERATOR_NONE) return false;
    const Node *last = last_selector(target);
    return last->kind == NODE_ARGUMENTS && last->first_child && deletes(target->next);
}

void put_deletion(const Node *assignment) {
    assert(is_deletion(assignment));
    const Node *node = assignment->first_child;
    const Node *arguments = last_selector(node);
    if (selects_nothing(arguments)) {
        if (!has_computed_field(node)) lower_target(node, arguments);  // begins what is not there
        return;
    }
    int selecting = selecting_argument(arguments);
    if (selecting < 0) return report_gap(DELETION_GAP, node);
    Target target = lower_target(node, arguments);
    if (selecting == 0) return put_value(&target, "Vector()");
    const char *base = base_text(&target);
    if (const char *range = range_left(node, arguments))
        return put_value(&target, form_text("%s(%s)", {base, range}));
    EndBase at = {base, selecting, count_children(arguments), nullptr, true};
    const char *all = number_of_positions(base, selecting, at.count);
    if (at.count == 1 && (leaves_cell(node) || may_leave_cell(node))) {
        const mExpr *left = call_with_selected("%without", base, all, arguments, &at);
        return put_value(&target, left->text);
    }
    mExpr *positions = call_with_selected("%remaining", all, all, arguments, &at);
    put_value(&target, selection(base, positions, selecting, at.count));
}
