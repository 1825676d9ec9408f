// Numbers, strings, and what stands in [ ] and { }.
#include "translate/literals.h"

#include <assert.h>
#include <string.h>

#include "lower/calls/keyword_calls.h"
#include "lower/calls/plain_calls.h"
#include "lower/classes/methods.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/value_lists.h"
#include "lower/lines/lines.h"
#include "lower/targets/shared_parts.h"
#include "support/allocation.h"
#include "syntax/names/names.h"
#include "syntax/values/shapes.h"
#include "translate/indices.h"
#include "translate/package_prefix.h"
#include "translate/text_forms.h"

namespace {

bool is_literal_text(const Node *node) { return without_parens(node)->kind == NODE_STRING; }

bool has_text(const Node *literal) {
    for (const Node *row = literal->first_child; row; row = row->next)
        for (const Node *element = row->first_child; element; element = element->next)
            if (is_literal_text(element) || is_known_text(value_of(element))) return true;
    return false;
}

bool is_only_texts(const Node *row) {
    for (const Node *element = row->first_child; element; element = element->next)
        if (!is_literal_text(element)) return false;
    return true;
}

// One text of all texts of the row.
mExpr *join_literals(const Node *row) {
    size_t size = 1;
    for (const Node *element = row->first_child; element; element = element->next)
        size += strlen(without_parens(element)->text);
    Writer to = new_text(size);
    const char *joined = to.at;
    for (const Node *element = row->first_child; element; element = element->next)
        write_text(&to, without_parens(element)->text);
    return new_leaf(string_text(joined), SCALAR);
}

mExpr *lower_element(const Node *element, bool is_alone) {
    if (is_value_list(element, is_alone)) return lower_value_list(element);
    return lower_expression(element);
}

// What is in a cell is in the one that it is joined to, too.
mExpr *lower_joined_element(const Node *element, bool is_alone) {
    if (element->kind == NODE_NUMBER) return lower_number(element).expr;
    if (is_value_list(element, is_alone)) return lower_value_list(element);
    mExpr *expr = lower_expression(element);
    const char *text = joined_text(element, expr->text);
    if (text != expr->text) return new_call_leaf(text);
    if (is_one_number(value_of(element))) expr->scalar = SCALAR;  // for the constructor
    return expr;
}

// An array in a cell is not the variable, which may change.
mExpr *lower_kept_element(const Node *element, bool is_alone) {
    if (is_value_list(element, is_alone)) return lower_kept_list(element);
    mExpr *expr = lower_expression(element);
    const char *text = held_element_text(element, expr->text);
    return text == expr->text ? expr : new_call_leaf(text);
}

// Goes through the elements of all rows.
struct ElementWalk {
    const Node *row;
    const Node *element;  // null after the last one
};

void find_element(ElementWalk *walk) {
    while (!walk->element && walk->row->next) {
        walk->row = walk->row->next;
        walk->element = walk->row->first_child;
    }
}

ElementWalk begin_elements(const Node *literal) {
    ElementWalk walk = {literal->first_child, literal->first_child->first_child};
    find_element(&walk);
    return walk;
}

void next_element(ElementWalk *walk) {
    walk->element = walk->element->next;
    find_element(walk);
}

// Elements that have been lowered and may act.
void name_elements(LinesEnd *end, const Node *literal, vExpr *values) {
    ElementWalk walk = begin_elements(literal);
    for (vExpr *cell = values; cell; cell = cell->next, next_element(&walk))
        name_call(end, walk.element, cell);
}

using LowerElement = mExpr *(*)(const Node *element, bool is_alone);

// Those of all rows, one after the other.
ExprList lower_elements(const Node *literal, LowerElement lower, bool is_alone) {
    ExprList elements = {};
    for (ElementWalk walk = begin_elements(literal); walk.element; next_element(&walk)) {
        LinesEnd end = end_of_lines();
        mExpr *expr = lower(walk.element, is_alone);
        if (has_more_lines(&end)) name_elements(&end, literal, elements.first);
        append_expr(&elements, expr);
    }
    return elements;
}

// Takes those of a row from the front of what is left.
ExprList take_row(const Node *row, vExpr **left) {
    ExprList elements = {};
    for (const Node *element = row->first_child; element; element = element->next) {
        append_expr(&elements, (*left)->item);
        *left = (*left)->next;
    }
    return elements;
}

mExpr *join_row(const Node *row, vExpr **left) {
    ExprList elements = take_row(row, left);
    if (is_only_texts(row)) return join_literals(row);
    bool is_single = elements.first == elements.last;
    mExpr *joined = is_single ? elements.first->item : new_keyword_call("horzcat", elements.first);
    free_vExpr(elements.first);
    return joined;
}

// Texts are joined as MATLAB joins arrays, which the constructors do not do.
mExpr *join_as_text(const Node *literal) {
    ExprList elements = lower_elements(literal, lower_element, false);
    vExpr *left = elements.first;
    ExprList rows = {};
    for (const Node *row = literal->first_child; row; row = row->next)
        append_expr(&rows, join_row(row, &left));
    bool is_single = rows.first == rows.last;
    mExpr *joined = is_single ? rows.first->item : new_keyword_call("vertcat", rows.first);
    free_vExpr(rows.first);
    free_vExpr(elements.first);
    return joined;
}

mVector *collect_row(const Node *row, vExpr **left) {
    mVector *items = alloc_mVector(0);
    for (const Node *element = row->first_child; element; element = element->next) {
        append_to_vector(items, (*left)->item);
        *left = (*left)->next;
    }
    return items;
}

mExpr *construct(const Node *literal, bool is_alone) {
    ExprList elements = {};
    if (literal->first_child) elements = lower_elements(literal, lower_joined_element, is_alone);
    vExpr *left = elements.first;
    mMatrix *rows = alloc_mMatrix(0);
    for (const Node *row = literal->first_child; row; row = row->next)
        append_to_matrix(rows, collect_row(row, &left));
    free_vExpr(elements.first);
    return new_matrix_node(rows, MATRIX_LITERAL);
}

Operand lower_filled_matrix(const Node *literal) {
    const Node *alone = single_element(literal);
    if (!alone || is_value_list(alone, true)) {
        bool joins_texts = !alone && has_text(literal);
        return {joins_texts ? join_as_text(literal) : construct(literal, alone), HOST_ATOM};
    }
    // A single element stands for itself, at its level, unless it may denote several values.
    Operand element = lower_operand(alone);
    if (element.expr->kind == EXPR_STRING) return element;
    if (without_parens(alone)->kind == NODE_RANGE)
        return {new_call_leaf(element.expr->text), HOST_ATOM};
    mVector *items = append_to_vector(alloc_mVector(1), element.expr);
    mMatrix *rows = append_to_matrix(alloc_mMatrix(1), items);
    mExpr *expr = new_matrix_node(rows, MATRIX_LITERAL);
    return {expr, strcmp(expr->text, element.expr->text) == 0 ? element.level : HOST_ATOM};
}

// What stands after the elements of a cell.
constexpr char ROW_END[] = "],subtype='Vector[row]')";
constexpr char COLUMN_END[] = "],subtype='Vector[column]')";

const char *cell_text(const vExpr *elements, const char *end) {
    return exprs_text(elements, "rtable([", end);
}

// A row, or a column of rows of one element.
mExpr *cell_vector(const Node *literal, const char *end) {
    bool is_alone = single_element(literal);
    ExprList elements = lower_elements(literal, lower_kept_element, is_alone);
    mExpr *cell = new_call_leaf(cell_text(elements.first, end));
    free_vExpr(elements.first);
    return cell;
}

bool is_column(const Node *literal) {
    for (const Node *row = literal->first_child; row; row = row->next)
        if (row->first_child->next || is_value_list(row->first_child, false)) return false;
    return true;
}

// Rows one below the other: a constructor of all rows would join what their elements hold.
mExpr *cell_matrix(const Node *literal) {
    ExprList elements = lower_elements(literal, lower_kept_element, false);
    vExpr *left = elements.first;
    ExprList rows = {};
    for (const Node *row = literal->first_child; row; row = row->next) {
        ExprList of_row = take_row(row, &left);
        append_expr(&rows, new_leaf(cell_text(of_row.first, ROW_END)));
        free_vExpr(of_row.first);
    }
    const char *joined = exprs_text(rows.first);
    free_vExpr(rows.first);
    free_vExpr(elements.first);
    return new_form_mExpr(EXPR_CALL, NOT_SCALAR, "%sConcatenate(1, %s)",
                          {array_tools_prefix(), joined});
}

}  // namespace

Operand lower_number(const Node *node) {
    assert(node->kind == NODE_NUMBER);
    if (has_flag(node, NUMBER_IMAGINARY)) {
        return {new_node(EXPR_IMAGINARY, node->text), HOST_PRODUCT};
    }
    int kind = has_flag(node, NUMBER_INTEGER) ? EXPR_INTEGER : EXPR_REAL;
    return {new_node(kind, node->text), HOST_ATOM};
}

const char *string_text(const char *characters) {
    Writer to = new_text(escaped_length(characters, "\\\"") + sizeof "\"\"");
    const char *text = to.at;
    write_text(&to, "\"");
    write_escaped(&to, characters, "\\\"");
    write_text(&to, "\"");
    return text;
}

mExpr *lower_string(const Node *node) {
    mExpr *expr = alloc_mExpr();
    *expr = {EXPR_STRING, string_text(node->text), SCALAR, nullptr};
    return expr;
}

// Objects are joined by a method of their class.
static mExpr *call_joining(const char *method, const Node *literal) {
    ExprList all = lower_elements(literal, lower_element, false);
    mExpr *call = new_call_of(method, all.first);
    free_vExpr(all.first);
    return call;
}

Operand lower_matrix(const Node *literal) {
    assert(literal->kind == NODE_MATRIX);
    if (!literal->first_child) return {construct(literal, false), HOST_ATOM};
    if (const char *method = matrix_method(literal))
        return {call_joining(method, literal), HOST_ATOM};
    return lower_filled_matrix(literal);
}

mExpr *lower_cell(const Node *literal) {
    const Node *row = literal->first_child;
    if (!row) return new_call_leaf("rtable([],subtype='Vector[row]')");
    if (!row->next) return cell_vector(literal, ROW_END);
    return is_column(literal) ? cell_vector(literal, COLUMN_END) : cell_matrix(literal);
}
