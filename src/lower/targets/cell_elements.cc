// Elements of cells.
#include "lower/targets/cell_elements.h"

#include <assert.h>

#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/value_lists.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/targets/cell_parts.h"
#include "lower/targets/shared_parts.h"
#include "lower/targets/targets.h"
#include "syntax/tree/value.h"
#include "syntax/values/values.h"
#include "translate/text_forms.h"

namespace {

bool any_argument(const Node *arguments, bool (*test)(const Node *)) {
    for (const Node *child = arguments->first_child; child; child = child->next)
        if (test(child)) return true;
    return false;
}

bool is_cell_name(const Node *node) {
    return node->kind == NODE_NAME && is_variable(node->symbol) && is_cell_variable(node);
}

bool is_literal(const Node *value) {
    return value->kind == NODE_CELL || value->kind == NODE_HANDLE || value->kind == NODE_ANONYMOUS;
}

// What the last selector of the target is applied to.
const Node *base_of(const Node *target) {
    const Node *base = target->first_child;
    while (base->next != last_selector(target)) base = base->next;
    return base;
}

// Whether both may be cells or arrays: an array of which one element is set takes one element, too.
bool may_both_be_cells(const Node *target, const Node *value) {
    constexpr Value PLAIN = MAY_BE_NUMBER | MAY_BE_TRUTH | MAY_BE_TEXT | MAY_BE_CELL;
    if (value->kind != NODE_NAME || !is_variable(value->symbol)) return false;
    Value kinds = kinds_of(value_of(value));
    return may_be(kinds, MAY_BE_CELL) && is_within(kinds, PLAIN) &&
           may_be(value_of(base_of(target)), MAY_BE_CELL);
}

// Whether the value is a cell: it surely is, or the target takes nothing else.
bool is_cell_value(const Node *target, const Node *value) {
    if (is_literal(value) || is_value_list(value, false)) return false;
    if (is_cell_name(value) || may_both_be_cells(target, value)) return true;
    return is_cell_base(target) && may_be_cell(value);
}

bool is_part(const Node *value) { return value->kind == NODE_REFERENCE && is_cell_part(value); }

// x(k) of a variable: in the host the element of a cell, or what a function gives.
bool may_be_element(const Node *value) {
    if (value->kind != NODE_REFERENCE) return false;
    const Node *base = value->first_child;
    return last_selector(value)->kind == NODE_ARGUMENTS && base->kind == NODE_NAME &&
           is_variable(base->symbol);
}

const char *named_value(const Node *value) {
    const char *text = lower_expression(value)->text;
    if (value->kind == NODE_NAME && is_variable(value->symbol)) return text;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, text});
    return name;
}

// How many elements there are shows at run time.
void put_branches(const Target *target, const char *name, const char *cell, const char *element) {
    const char *count = form_text("ArrayNumElems(%s,'All')", {name});
    put_line("if %s then", {count_condition(count, OP_EQ, 1)});
    put_inner_value(target, element);
    put_line("else", {});
    put_inner_value(target, cell);
    put_line("end if;", {});
}

}  // namespace

bool is_cell_element(const Node *assignment) {
    const Node *target = assignment->first_child;
    if (target->kind != NODE_REFERENCE || assignment->op != OPERATOR_NONE) return false;
    const Node *last = last_selector(target);
    if (last->kind != NODE_ARGUMENTS || !last->first_child) return false;
    if (any_argument(last, is_surely_several)) return false;
    const Node *value = without_parens(target->next);
    return is_part(value) || is_cell_value(target, value);
}

static void put_element(const Node *assignment) {
    assert(is_cell_element(assignment));
    const Node *place = assignment->first_child;
    const Node *value = without_parens(place->next);
    Target target = lower_target(place, nullptr);
    if (is_part(value)) {
        const char *element = value_path(value, nullptr).text;
        return put_value(&target, held_text(value, element));
    }
    const char *name = named_value(value);
    const char *element = joined_text(value, form_text("%s(1)", {name}));
    if (any_argument(last_selector(place), may_be_several) || may_be_element(value))
        return put_branches(&target, name, held_text(value, name), element);
    put_value(&target, element);
}

void put_cell_element(const Node *assignment) {
    const Node *place = assignment->first_child;
    Holder outer = begin_holding(place, without_parens(place->next));
    put_element(assignment);
    end_holding(outer);
}
