// Assignments.
#include "lower/targets/assignments.h"

#include <assert.h>
#include <stdlib.h>
#include <string.h>

#include "lower/calls/calls.h"
#include "lower/calls/requested_results.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/characters.h"
#include "lower/expressions/value_lists.h"
#include "lower/library/source_calls.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/procedures/taken_parameters.h"
#include "lower/program/context.h"
#include "lower/targets/cell_elements.h"
#include "lower/targets/cell_parts.h"
#include "lower/targets/counted_targets.h"
#include "lower/targets/dealt_targets.h"
#include "lower/targets/deletions.h"
#include "lower/targets/part_starts.h"
#include "lower/targets/shared_parts.h"
#include "lower/targets/targets.h"
#include "support/allocation.h"
#include "syntax/library/library_table.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/value.h"
#include "syntax/values/findings.h"
#include "syntax/values/numbered_targets.h"
#include "syntax/values/values.h"
#include "translate/assignment.h"
#include "translate/text_forms.h"

namespace {

bool is_several(const Node *selector) {
    for (const Node *child = selector->first_child; child; child = child->next)
        if (is_surely_several(child)) return true;
    return false;
}

// c(k) = {v} puts v into one element. Of several elements each gets what is in the cell.
const Node *element_value(const Node *target, const Node *value) {
    if (target->kind != NODE_REFERENCE || value->kind != NODE_CELL) return value;
    const Node *row = value->first_child;
    if (!row || row->next || row->first_child->next) return value;
    const Node *last = last_selector(target);
    if (last->kind != NODE_ARGUMENTS || !last->first_child || is_several(last)) return value;
    return is_value_list(row->first_child, true) ? value : row->first_child;
}

// x += e.
const char *compound_value(const Target *target, const Node *node) {
    Operand left = {new_leaf(target_value(target)), HOST_ATOM};
    const Node *place = node->first_child;
    return join_values(node->op, &left, value_of(place), place->next).expr->text;
}

// Functions that ask their first argument for as many results as they are asked for.
bool is_applier(const Node *base) {
    return base->kind == NODE_NAME && !is_variable(base->symbol) &&
           is_known_to(base->text, APPLIES_FUNCTION | CALLS_FUNCTION);
}

// The function that several results of a value are asked of: the value itself, which is called
// later, one that is called where it stands, or the one that is applied. Null for none.
const Node *asked_function(const Node *value) {
    value = without_parens(value);
    if (value->kind == NODE_REFERENCE) {
        const Node *base = value->first_child;
        bool applies = is_applier(base) && base->next->kind == NODE_ARGUMENTS;
        value = applies ? base->next->first_child : without_parens(base);
    }
    return value && value->kind == NODE_ANONYMOUS ? value : nullptr;
}

}  // namespace

const char *lower_for_results(const Node *value, int32_t results) {
    Lowering.asked = asked_function(value);
    Lowering.results = results;
    const char *text = lower_expression(value)->text;
    Lowering.asked = nullptr;
    return text;
}

namespace {

// s of s.f = v, which cannot be an array of several.
const Symbol *single_struct(const Node *target) {
    if (target->kind != NODE_REFERENCE) return nullptr;
    const Node *selector = second_child(target);
    bool is_field = selector->kind == NODE_FIELD && !selector->next;
    return is_field ? target->first_child->symbol : nullptr;
}

bool is_zero(const Node *node) {
    return node->kind == NODE_NUMBER && node->text[0] == '0' && node->text[1] == '\0';
}

// {}, cell(0) and cell(0, n).
bool is_empty_cell(const Node *value) {
    if (value->kind == NODE_CELL) return !value->first_child;
    const Node *name = value->kind == NODE_REFERENCE ? value->first_child : value;
    if (name->kind != NODE_NAME || is_variable(name->symbol) || strcmp(name->text, "cell") != 0)
        return false;
    const Node *arguments = name->next;
    return value->kind == NODE_REFERENCE && arguments->kind == NODE_ARGUMENTS &&
           arguments->first_child && is_zero(arguments->first_child);
}

// A row without elements has a row: what grows by rows and columns, or is asked for them, begins
// without any. What {} begins as; null for other values.
const char *cell_without_rows(const Node *target, const Node *value) {
    if (target->kind != NODE_NAME || !is_empty_cell(value)) return nullptr;
    if (target->symbol->flags & SYMBOL_GROWS_IN_PLANE) return "Vector()";
    bool is_square = value->kind == NODE_CELL && (target->symbol->flags & SYMBOL_SIDES_ASKED);
    return is_square ? "rtable([],subtype='Vector[row]')(1..0, ..)" : nullptr;
}

const char *value_text(const Node *target, const Node *value) {
    if (const char *start = cell_without_rows(target, without_parens(value))) return start;
    Lowering.single = single_struct(target);
    int32_t results = target->kind == NODE_NAME ? target->symbol->results : 0;
    value = element_value(target, value);
    Holder outer = begin_holding(target, value);
    const char *text = lower_for_results(value, results);
    text = held_text(value, text);
    end_holding(outer);
    Lowering.single = nullptr;
    return text;
}

// What x(k) = value sets elements of; null for other assignments.
const Node *changed_array(const Node *target) {
    if (target->kind != NODE_REFERENCE) return nullptr;
    const Node *last = last_selector(target);
    const Node *holder = target->first_child;
    while (holder->next != last) holder = holder->next;
    return last->kind == NODE_ARGUMENTS && holder->kind != NODE_BRACES ? holder : nullptr;
}

// Whether a function gives truth values: one of MATLAB's by its name, or what is written in place.
bool tells_truth(const Node *function) {
    if (function->kind == NODE_ANONYMOUS)
        return kinds_of(value_of(second_child(function))) == MAY_BE_TRUTH;
    bool is_named = function->kind == NODE_HANDLE || function->kind == NODE_STRING;
    const LibraryFunction *row = is_named ? library_result(function->text) : nullptr;
    return row && row->value == MAY_BE_TRUTH && !row->taken;
}

// cellfun(@ischar, c), and arrayfun.
bool tells_of_each(const Node *call) {
    const Node *base = call->kind == NODE_REFERENCE ? call->first_child : nullptr;
    bool is_call = base && base->kind == NODE_NAME && !is_variable(base->symbol) &&
                   is_known_to(base->text, APPLIES_FUNCTION);
    if (!is_call || base->next->kind != NODE_ARGUMENTS) return false;
    const Node *function = base->next->first_child;
    return function && function->next && !function->next->next && tells_truth(function);
}

bool has_masks(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next)
        if (value->kind != VALUE_WHOLE || !tells_of_each(without_parens(value->node))) return false;
    return symbol->values;
}

// Truth values for each element of something, or a variable that holds nothing else.
bool is_mask(const Node *index) {
    if (kinds_of(value_of(index)) == MAY_BE_TRUTH) return !is_surely_single(index);
    if (index->kind != NODE_NAME || !is_variable(index->symbol)) return tells_of_each(index);
    constexpr uint32_t OTHERS = SYMBOL_PARAMETER | SYMBOL_CHANGED | SYMBOL_GLOBAL |
                                SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    return !(index->symbol->flags & OTHERS) && is_so(index->symbol, MASK, has_masks);
}

// c(mask) = {v} of a cell. One element alone would take the cell in the host, not what is in it.
bool is_masked_cell(const Node *node) {
    const Node *place = node->first_child;
    const Node *value = without_parens(place->next);
    if (node->op != OPERATOR_NONE || value->kind != NODE_CELL || !single_element(value))
        return false;
    const Node *array = changed_array(place);
    const Node *mask = array ? last_selector(place)->first_child : nullptr;
    if (!mask || mask->next || is_value_list(single_element(value), true)) return false;
    return is_mask(mask) && is_cell_base(place) && !may_be(value_of(array), MAY_BE_MISSING);
}

void put_masked_cell(const Node *node) {
    const Node *place = node->first_child;
    const Node *selector = last_selector(place);
    const Node *element = single_element(without_parens(place->next));
    Target target = lower_target(place, selector);
    const char *base = target_value(&target);
    EndBase at = {base, 1, 1, nullptr, true};
    ExprList values = {};
    append_expr(&values, new_leaf(base));
    append_expr(&values, lower_position(selector->first_child, &at));
    append_expr(&values, new_leaf(value_text(place, element)));
    OfferedCall call = {nullptr, nullptr, values.first, 3, 1, false};
    const mExpr *changed = new_source_call("%with_each", &call);
    put_value(&target, changed->text);
    free_vExpr(values.first);
}

// c(list) = d of cells, where the list may have one element.
bool is_listed_cell(const Node *node) {
    const Node *place = node->first_child;
    const Node *value = without_parens(place->next);
    const Node *array = node->op == OPERATOR_NONE ? changed_array(place) : nullptr;
    const Node *index = array ? last_selector(place)->first_child : nullptr;
    if (!index || index->next || !is_surely_several(index) || !may_list_one(index)) return false;
    bool is_cell = value->kind != NODE_CELL && !is_value_list(value, false) && may_be_cell(value);
    return is_cell && is_cell_base(place) && !may_be(value_of(array), MAY_BE_MISSING);
}

void put_listed_cell(const Node *node) {
    const Node *place = node->first_child;
    const Node *selector = last_selector(place);
    Target target = lower_target(place, selector);
    const char *base = target_value(&target);
    EndBase at = {base, 1, 1, nullptr, true};
    const char *places = lower_position(selector->first_child, &at)->text;
    if (may_be_mask(selector->first_child)) {
        const char *count = form_text("ArrayNumElems(%s,'All')", {base});
        places = source_call_text("%positions", {count, places});
    }
    const char *cells = value_text(place, without_parens(place->next));
    put_value(&target, source_call_text("%with_cells", {base, places, cells}));
}

// Whether a number is put among characters: it becomes one.
bool becomes_character(const Node *array, const Node *value) {
    return array && kinds_of(value_of(array)) == MAY_BE_TEXT &&
           is_surely(value_of(value), ARITHMETIC);
}

bool has_empty_literal(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next)
        if (value->node && is_empty_matrix(without_parens(value->node))) return true;
    return false;
}

// Whether the variable may still be the [] that it began as.
bool may_be_literal(const Node *array) {
    return may_be(value_of(array), MAY_BE_EMPTY) &&
           is_so(array->symbol, EMPTY_LITERAL, has_empty_literal);
}

// Whether characters are put among numbers, or a truth value where no elements may be yet, which
// would take its kind.
bool becomes_number(const Node *array, const Node *value) {
    if (!array || array->kind != NODE_NAME) return false;
    if (!counts_as_number(value_of(array), value_of(value))) return false;
    return kinds_of(value_of(value)) == MAY_BE_TEXT || may_be_literal(array);
}

const char *number_text_of(const char *text, Value value) {
    if (strcmp(text, "true") == 0) return "1";
    if (strcmp(text, "false") == 0) return "0";
    Operand left = {new_leaf(text), HOST_ATOM};
    if (kinds_of(value) == MAY_BE_TEXT) {
        left.expr->kind = EXPR_STRING;
        spell_prefixed(&left, value);
        return left.expr->text;
    }
    Operand right = {new_node(EXPR_INTEGER, "0"), HOST_ATOM};
    return new_binary(OPERATOR_PLUS, &left, &right).expr->text;
}

// "A" for 65, char(k) for what is not known, or cannot be read as it is.
const char *character_text(const char *number) {
    int code = strspn(number, "0123456789") == strlen(number) ? atoi(number) : 0;
    bool is_plain = code >= ' ' && code <= '~' && code != '"' && code != '\\';
    if (!is_plain) return new_keyword_call("char", {number})->text;
    const char text[] = {static_cast<char>(code), '\0'};
    return string_text(text);
}

// What is read before parts of the target begin, as they are parts of it.
const char *early_text(const Node *target, const Node *value) {
    const char *text = value_text(target, value);
    if (without_parens(value)->kind != NODE_NAME) return stable_text(text);
    const char *name = new_temporary();
    put_line("%s := copy(%s);", {name, lower_expression(value)->text});
    return name;
}

}  // namespace

void put_assignment(const Node *node) {
    assert(node->kind == NODE_ASSIGN);
    if (is_deletion(node)) return put_deletion(node);
    if (is_masked_cell(node)) return put_masked_cell(node);
    if (is_listed_cell(node)) return put_listed_cell(node);
    if (is_cell_element(node)) return put_cell_element(node);
    const Node *place = node->first_child;
    bool is_plain = node->op == OPERATOR_NONE;
    bool is_early = is_plain && must_be_read_first(place, place->next);
    const char *value = is_early ? early_text(place, place->next) : nullptr;
    Lowering.is_read_too = !is_plain;
    Lowering.assigned = place->next;
    Target target = lower_target(place, nullptr);
    Lowering.is_read_too = false;
    Lowering.assigned = nullptr;
    TakenName *taken = begin_taking(node);
    if (!is_early)
        value = is_plain ? value_text(place, place->next) : compound_value(&target, node);
    end_taking(taken);
    const Node *array = is_plain ? changed_array(place) : nullptr;
    if (becomes_character(array, place->next)) value = character_text(value);
    if (becomes_number(array, place->next)) value = number_text_of(value, value_of(place->next));
    put_value(&target, value);
}

namespace {

// Targets of one statement: their host texts, and what is left to do after it.
struct TargetCell {
    Target target;
    TargetCell *next;
};
struct TargetTexts {
    ExprList texts;
    TargetCell *first;
    TargetCell *last;
    int count;
};

void append_target(TargetTexts *targets, const char *text) {
    append_expr(&targets->texts, new_leaf(text));
    targets->count++;
}

void add_target(TargetTexts *targets, const Node *node) {
    if (node->kind == NODE_TILDE) return append_target(targets, new_temporary());
    TargetCell *cell = AllocRecord<TargetCell>();
    *cell = {lower_target(node, nullptr), nullptr};
    append_target(targets, target_text(&cell->target));
    if (!cell->target.pending) return;
    (targets->last ? targets->last->next : targets->first) = cell;
    targets->last = cell;
}

bool has_unknown_number(const Node *target) {
    if (target->kind != NODE_REFERENCE) return false;
    Bounds bounds = numbered_bounds(target);
    return bounds.last < bounds.first;
}

// Whether a target is a list, and not one of literal bounds.
bool any_unknown_number(const Node *targets) {
    const Node *first = targets->first_child;
    if (!first->next) return has_unknown_number(first);
    for (const Node *target = first; target; target = target->next)
        if (is_value_list(target, false) && has_unknown_number(target)) return true;
    return false;
}

// Such an index with literal bounds stands for as many targets.
void add_numbered_targets(TargetTexts *targets, const Node *node) {
    const Node *index = list_index(node);
    Bounds bounds = numbered_bounds(node);
    if (bounds.last < bounds.first) return report_gap(TARGET_VALUES_GAP, node);
    Target base = lower_target(node, index);
    Path field = begin_path("", false);
    field.has_field = true;
    if (index->next) add_field(&field, index->next);
    const char *text = target_text(&base);
    for (long k = bounds.first; k <= bounds.last; k++) {
        const char *number = number_text(static_cast<int>(k));
        append_target(targets, form_text("%s(%s)%s", {text, number, field.text}));
    }
}

TargetTexts lower_targets(const Node *list) {
    TargetTexts targets = {};
    for (const Node *node = list->first_child; node; node = node->next) {
        if (is_value_list(node, false)) {
            add_numbered_targets(&targets, node);
        } else {
            add_target(&targets, node);
        }
    }
    return targets;
}

const char *targets_text(const ExprList *targets) {
    return form_text("(%s)", {exprs_text(targets->first)});
}

const char *values_text(const Node *value, int targets) {
    if (is_value_list(value, false) && targets > 1) return lower_values_for(value, targets)->text;
    request_results(value, targets);
    return lower_for_results(value, targets);
}

void put_values(TargetTexts *targets, const Node *value) {
    const char *left =
        targets->count == 1 ? targets->texts.first->item->text : targets_text(&targets->texts);
    const char *right = values_text(value, targets->count);
    if (targets->count == 1) right = held_text(value, right);
    put_line("%s := %s;", {left, right});
    for (const TargetCell *cell = targets->first; cell; cell = cell->next)
        finish_target(&cell->target);
}

}  // namespace

static void put_targets(const Node *node) {
    assert(node->kind == NODE_MULTI_ASSIGN);
    const Node *list = node->first_child;
    bool is_open = any_unknown_number(list);
    if (is_open && is_dealt(node)) return put_dealt(node);
    if (is_open && is_counted(node)) return put_counted(node);
    TargetTexts targets = lower_targets(list);
    TakenName *taken = begin_taking(node);
    put_values(&targets, list->next);
    end_taking(taken);
    free_vExpr(targets.texts.first);
}

void put_multi_assignment(const Node *node) {
    const Node *list = node->first_child;
    if (!list->first_child) {
        request_results(list->next, 0);
        return put_line("%s;", {lower_expression(list->next)->text});
    }
    Holder outer = begin_holding(list, list->next);
    put_targets(node);
    end_holding(outer);
}
