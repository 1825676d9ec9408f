// Parts of cells.
#include "lower/targets/cell_parts.h"

#include <assert.h>

#include "lower/conditions/host_conditions.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/paths.h"
#include "lower/expressions/value_lists.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "syntax/values/values.h"
#include "translate/indices.h"

namespace {

// How many arguments surely select several; -1 when that is not known of all.
int count_several(const Node *arguments) {
    int count = 0;
    for (const Node *child = arguments->first_child; child; child = child->next) {
        if (is_surely_several(child)) {
            count++;
        } else if (may_be_several(child)) {
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

mExpr *lower_known_part(const char *base, const Node *arguments) {
    ExprList positions = lower_repeated_index(arguments, base);
    make_ranges(&positions);
    mExpr *part = new_element_node(base, VARIABLE_INDEX, positions.first);
    free_vExpr(positions.first);
    return part;
}

// Whether the index is one position or several shows at run time.
mExpr *lower_unknown_part(const char *base, const Node *arguments) {
    const char *positions = new_temporary();
    const char *part = new_temporary();
    ExprList index = lower_repeated_index(arguments, base);
    const char *count = form_text("ArrayNumElems(%s,'All')", {positions});
    put_line("%s := Vector[row]([seq(1..%s)]);", {positions, last_position_text(base, 1, 1)});
    put_line("%s := %s;",
             {positions, new_element_node(positions, VARIABLE_INDEX, index.first)->text});
    put_line("if %s then", {count_condition(count, OP_EQ, 1)});
    put_inner_line("%s := rtable([%s(%s)],subtype='Vector[row]');", {part, base, positions});
    put_line("else", {});
    put_inner_line("%s := %s;", {part, new_element_node(base, VARIABLE_INDEX, index.first)->text});
    put_line("end if;", {});
    free_vExpr(index.first);
    return new_leaf(part);
}

}  // namespace

bool is_cell_part(const Node *reference) {
    const Node *arguments = last_selector(reference);
    if (arguments->kind != NODE_ARGUMENTS || !arguments->first_child) return false;
    if (!is_cell_base(reference)) return false;
    int several = count_several(arguments);
    bool is_unknown = several < 0 && !arguments->first_child->next;
    return several == 0 || is_unknown;
}

mExpr *lower_cell_part(const Node *reference) {
    assert(is_cell_part(reference));
    const Node *arguments = last_selector(reference);
    Path path = value_path(reference, arguments);
    name_repeated_path(&path);
    if (count_several(arguments) == 0) return lower_known_part(path.text, arguments);
    return lower_unknown_part(path.text, arguments);
}
