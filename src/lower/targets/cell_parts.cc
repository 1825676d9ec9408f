// Parts of cells.
#include "lower/targets/cell_parts.h"

#include <assert.h>
#include <math.h>
#include <stdlib.h>

#include "lower/conditions/host_conditions.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/paths.h"
#include "lower/expressions/value_lists.h"
#include "lower/library/source_calls.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "syntax/tree/value.h"
#include "syntax/values/values.h"
#include "translate/indices.h"

namespace {

double number_of(const Node *node) {
    bool is_negative = node->kind == NODE_PREFIX && node->op == OPERATOR_MINUS;
    if (is_negative) node = node->first_child;
    if (node->kind != NODE_NUMBER) return NAN;
    return is_negative ? -strtod(node->text, nullptr) : strtod(node->text, nullptr);
}

// Whether the source shows that there are two numbers or more: [1 k], 1:2:5.
bool has_two(const Node *list) {
    if (list->kind == NODE_RANGE) {
        const Node *second = second_child(list);
        double step = second->next ? number_of(second) : 1;
        double stop = number_of(second->next ? second->next : second);
        return (stop - number_of(list->first_child)) / step >= 1;
    }
    const Node *row = list->kind == NODE_MATRIX ? list->first_child : nullptr;
    const Node *first = row ? row->first_child : nullptr;
    return first && first->next && is_surely_single(first) && is_surely_single(first->next);
}

}  // namespace

// One truth value selects like one position.
bool may_be_mask(const Node *argument) {
    return !is_colon(argument) && may_be(value_of(argument), MAY_BE_TRUTH);
}

bool may_list_one(const Node *argument) {
    argument = without_parens(argument);
    return !is_colon(argument) && !is_host_range(argument) && !has_two(argument);
}

namespace {

bool is_mask(const Node *argument) {
    return may_be_mask(argument) && is_surely(value_of(argument), MAY_BE_TRUTH | MAY_BE_OTHER);
}

// How many arguments surely select several; -1 when that is not known of all.
int count_several(const Node *arguments) {
    int count = 0;
    for (const Node *child = arguments->first_child; child; child = child->next) {
        if (is_surely_several(child) && !may_be_mask(child)) {
            count++;
        } else if (may_be_several(child) || is_mask(child)) {
            return -1;
        }
    }
    return count;
}

// The index, whose positions will be repeated: a call among them gets a name.
ExprList lower_repeated_index(const Node *arguments, const char *base) {
    ExprList positions = lower_index(arguments, base);
    LinesEnd end = end_of_lines();
    name_calls(&end, arguments->first_child, positions.first);
    return positions;
}

// k..k is one position, and no single one.
void make_ranges(ExprList *arguments) {
    for (vExpr *cell = arguments->first; cell; cell = cell->next) {
        const char *text = plain_value(cell->item)->text;
        cell->item = new_leaf(form_text("%s..%s", {text, text}));
    }
}

// Whether all may select one, of which a single one by itself is told by is_cell_part.
bool may_list_ones(const Node *arguments) {
    for (const Node *child = arguments->first_child; child; child = child->next)
        if (!may_list_one(child)) return false;
    return true;
}

// The list that an argument is, of so many after base; one that runs to the end is written so.
const char *list_text(mExpr *argument, const char *base, int number, int count) {
    if (!is_range(argument) || argument->range->stop) return plain_value(argument)->text;
    const mRange *range = argument->range;
    const char *last = last_position_text(base, number, count);
    return form_text("Vector[row]([seq(%s..%s,%s)])",
                     {range->start->text, last, range->step->text});
}

// Whether an argument is a mask, or a list that may be one.
bool has_truths(const Node *argument) {
    return is_mask(argument) || (is_surely_several(argument) && may_be_mask(argument));
}

// The positions that an argument selects, as a list.
const char *positions_text(const Node *argument, mExpr *lowered, const char *base, int number,
                           int count) {
    const char *list = list_text(lowered, base, number, count);
    if (!has_truths(argument)) return list;
    return source_call_text("%positions", {last_position_text(base, number, count), list});
}

// The lists get names, as they are asked for their lengths; answers whether all have one element.
const char *name_lists(const Node *arguments, const char *base, ExprList *index) {
    const char *condition = nullptr;
    vExpr *cell = index->first;
    int number = 0;
    int count = count_children(arguments);
    for (const Node *child = arguments->first_child; child;
         child = child->next, cell = cell->next) {
        number++;
        if (is_surely_single(child) && !is_mask(child)) continue;
        if (without_parens(child)->kind != NODE_NAME || has_truths(child)) {
            const char *name = new_temporary();
            put_line("%s := %s;", {name, positions_text(child, cell->item, base, number, count)});
            cell->item = new_leaf(name);
        }
        const char *length = form_text("ArrayNumElems(%s,'All')", {cell->item->text});
        const char *test = count_condition(length, OP_EQ, 1);
        condition = condition ? form_text("%s and %s", {condition, test}) : test;
    }
    return condition;
}

// Whether the lists hold one position each shows at run time.
mExpr *lower_listed_part(const char *base, const Node *arguments) {
    ExprList index = lower_repeated_index(arguments, base);
    const char *condition = name_lists(arguments, base, &index);
    const char *part = new_temporary();
    const char *text = new_element_node(base, VARIABLE_INDEX, index.first)->text;
    put_line("if %s then", {condition});
    put_inner_line("%s := rtable([%s],subtype='Vector[row]');", {part, text});
    put_line("else", {});
    put_inner_line("%s := %s;", {part, text});
    put_line("end if;", {});
    free_vExpr(index.first);
    return new_leaf(part);
}

mExpr *lower_known_part(const char *base, const Node *arguments) {
    ExprList positions = lower_repeated_index(arguments, base);
    make_ranges(&positions);
    mExpr *part = new_element_node(base, VARIABLE_INDEX, positions.first);
    free_vExpr(positions.first);
    return part;
}

// Whether the index is one position or several shows at run time.
mExpr *lower_unknown_part(const char *base, const Node *arguments, bool is_cell) {
    ExprList index = lower_index(arguments, base);
    const char *selected = list_text(index.first->item, base, 1, 1);
    const char *part = source_call_text(is_cell ? "%cell_part" : "%part", {base, selected});
    free_vExpr(index.first);
    return new_call_leaf(part);
}

}  // namespace

bool is_cell_part(const Node *reference) {
    const Node *arguments = last_selector(reference);
    if (arguments->kind != NODE_ARGUMENTS || !arguments->first_child) return false;
    bool may_be_part = may_give_cell(reference) && may_be_cell(reference);
    if (!is_cell_base(reference) && !may_be_part) return false;
    int several = count_several(arguments);
    if (arguments->first_child->next) return several == 0;
    return several <= 0 || (may_be_part && may_list_one(arguments->first_child));
}

bool is_listed_part(const Node *reference) {
    const Node *arguments = last_selector(reference);
    if (arguments->kind != NODE_ARGUMENTS || !arguments->first_child) return false;
    return is_cell_base(reference) && !is_cell_part(reference) && may_list_ones(arguments);
}

mExpr *lower_cell_part(const Node *reference) {
    assert(is_cell_part(reference) || is_listed_part(reference));
    const Node *arguments = last_selector(reference);
    Path path = value_path(reference, arguments);
    name_repeated_path(&path);
    if (is_listed_part(reference) && arguments->first_child->next)
        return lower_listed_part(path.text, arguments);
    if (count_several(arguments) == 0) return lower_known_part(path.text, arguments);
    return lower_unknown_part(path.text, arguments, is_cell_base(reference));
}
