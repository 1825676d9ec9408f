// Deletions of elements.
#include "lower/targets/deletions.h"

#include <assert.h>

#include "lower/conditions/host_conditions.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/targets/targets.h"
#include "syntax/names/field_uses.h"
#include "syntax/values/value.h"
#include "syntax/values/values.h"
#include "translate/indices.h"

namespace {

bool is_empty_literal(const Node *value) {
    if (value->kind == NODE_MATRIX) return !value->first_child;
    return value->kind == NODE_STRING && !*value->text && !has_flag(value, DOUBLE_QUOTED);
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

// setdiff(qxrp_1, qxrp_1(k)), where qxrp_1 holds all positions.
mExpr *remaining_positions(const char *base, const Node *arguments, int selecting) {
    int count = count_children(arguments);
    const char *all = new_temporary();
    put_line("%s := Vector[row]([seq(1..%s)]);",
             {all, number_of_positions(base, selecting, count)});
    EndBase at = {base, selecting, count, nullptr};
    mExpr *selected = lower_position(nth_child(arguments, selecting), &at);
    vExpr *position = alloc_vExpr(plain_value(selected));
    const mExpr *gone = new_element_node(all, VARIABLE_INDEX, position);
    free_vExpr(position);
    return new_keyword_call("setdiff", {all, gone->text});
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

// Whether it may leave a cell: of what nobody knows, and never makes an array of.
bool may_leave_cell(const Node *target) {
    const Node *base = target->first_child;
    const Node *holder = base;
    while (holder->next != last_selector(target)) holder = holder->next;
    return holder == base ? may_be_cell(base) : may_be(value_of(holder), MAY_BE_CELL);
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

// What is written where one element of a cell is left; a range where it may be an array, too.
const char *one_left(const char *base, const char *left, bool is_cell) {
    return is_cell ? form_text("rtable([%s(%s)],subtype='Vector[row]')", {base, left})
                   : form_text("%s(%s(1)..%s(1))", {base, left, left});
}

void put_cell_left(const Target *target, const char *base, const mExpr *positions, bool is_cell) {
    const char *left = new_temporary();
    put_line("%s := %s;", {left, positions->text});
    put_line("if %s then",
             {count_condition(form_text("ArrayNumElems(%s,'All')", {left}), OP_EQ, 1)});
    put_inner_value(target, one_left(base, left, is_cell));
    put_line("else", {});
    put_inner_value(target, form_text("%s(%s)", {base, left}));
    put_line("end if;", {});
}

// What is indexed; the value of a field .(e) gets a name first.
const char *base_text(const Target *target) {
    Path path = begin_path(target_value(target), target->field != nullptr);
    name_path(&path);
    return path.text;
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
    return last->kind == NODE_ARGUMENTS && last->first_child && is_empty_literal(target->next);
}

void put_deletion(const Node *assignment) {
    assert(is_deletion(assignment));
    const Node *node = assignment->first_child;
    const Node *arguments = last_selector(node);
    if (selects_nothing(arguments)) return;
    int selecting = selecting_argument(arguments);
    if (selecting < 0) return report_gap(DELETION_GAP, node);
    Target target = lower_target(node, arguments);
    if (selecting == 0) return put_value(&target, "Vector()");
    const char *base = base_text(&target);
    if (const char *range = range_left(node, arguments))
        return put_value(&target, form_text("%s(%s)", {base, range}));
    mExpr *positions = remaining_positions(base, arguments, selecting);
    int count = count_children(arguments);
    bool is_cell = leaves_cell(node);
    if (count == 1 && (is_cell || may_leave_cell(node)))
        return put_cell_left(&target, base, positions, is_cell);
    put_value(&target, selection(base, positions, selecting, count));
}
