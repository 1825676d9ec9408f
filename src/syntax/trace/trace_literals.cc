// The values of [ ], { } and functions without a name.
#include "syntax/trace/handles.h"
#include "syntax/trace/taken_parts.h"
#include "syntax/trace/trace.h"
#include "syntax/values/field_values.h"
#include "syntax/values/shapes.h"

namespace {

constexpr Value SIZED = MAY_HAVE_ROWS | MAY_HAVE_COLUMNS;

// What is known of the elements of a literal.
struct Elements {
    Value all;       // joined
    Value always;    // kinds that an element surely has, and MAY_BE_FILLED if one surely is
    Value may_hold;  // kinds of those that are not surely empty
    int count;
    bool has_list;
};

void add_element(Elements *elements, const Node *node) {
    Value value = value_of(node) & ANY_VALUE;
    bool is_empty = !may_be(value, MAY_BE_FILLED);
    bool is_list = may_be_list(node);
    elements->all |= value;
    elements->count++;
    elements->has_list |= is_list;
    if (!is_empty || may_be(value, MAY_BE_TEXT | MAY_BE_CELL))
        elements->may_hold |= kinds_of(value);
    Value kinds = kinds_of(value);
    if ((kinds & (kinds - 1)) == 0 && !is_list) elements->always |= kinds;
    if (!may_be(value, MAY_BE_EMPTY) && !is_list) elements->always |= MAY_BE_FILLED;
}

void add_elements(Elements *all, const Elements *row) {
    all->all |= row->all;
    all->always |= row->always;
    all->may_hold |= row->may_hold;
    all->count += row->count;
    all->has_list |= row->has_list;
}

// A cell among the elements makes a cell of all, else a text a text.
Value joined_kinds(const Elements *elements) {
    if (may_be(elements->always, MAY_BE_CELL))
        return MAY_BE_CELL | (elements->may_hold & MAY_BE_OTHER);
    if (may_be(elements->always, MAY_BE_TEXT))
        return MAY_BE_TEXT | (elements->may_hold & (MAY_BE_CELL | MAY_BE_OTHER));
    Value all = kinds_of(elements->all);
    bool is_filled = may_be(elements->always, MAY_BE_FILLED);
    bool mixes = may_be(elements->may_hold, MAY_BE_TRUTH) && all != MAY_BE_TRUTH;
    Value kinds = is_filled ? elements->may_hold : all;
    return kinds | (mixes ? Value(MAY_BE_NUMBER) : Value(0));
}

Value size_of_row(const Elements *row) {
    bool is_wide = row->count > 1 || row->has_list;
    return (row->all & SIZED) | (is_wide ? MAY_HAVE_COLUMNS : 0);
}

Value size_of_rows(const Elements *all, Value size, int rows) {
    if (rows > 1) size |= MAY_HAVE_ROWS;
    Value filled = all->all & MAY_BE_FILLED;
    if (all->has_list) filled |= MAY_BE_FILLED;
    bool may_vanish = !may_be(all->always, MAY_BE_FILLED);
    return size | filled | (may_vanish ? Value(MAY_BE_EMPTY) : Value(0));
}

Value held_form(Value kinds, Value size) {
    if (kinds == MAY_BE_TEXT && !may_be(size, MAY_HAVE_ROWS)) return MAY_BE_SINGLE;
    return may_be(kinds, MAY_BE_TEXT) ? MAY_BE_SINGLE | MAY_BE_ARRAY : MAY_BE_ARRAY;
}

constexpr Value NO_ELEMENTS = MAY_BE_NUMBER | MAY_BE_ARRAY | MAY_BE_EMPTY;

// Looks at all elements of all rows; answers the size.
Value trace_rows(Node *literal, Elements *all, int *rows) {
    Value size = 0;
    for (Node *row = literal->first_child; row; row = row->next) {
        Elements elements = {};
        trace_all(row->first_child);
        for (const Node *element = row->first_child; element; element = element->next)
            add_element(&elements, element);
        add_elements(all, &elements);
        size |= size_of_row(&elements);
        ++*rows;
    }
    return size;
}

}  // namespace

// [x] is x. Beside a cell an element is as good as the cell that has it.
Value trace_matrix(Node *matrix) {
    Elements all = {};
    int rows = 0;
    const TakenPart *taken = taken_so_far();
    Value size = trace_rows(matrix, &all, &rows);
    if (all.count == 0) return NO_ELEMENTS;
    const Node *first = matrix->first_child->first_child;
    Value kinds = joined_kinds(&all);
    if ((kinds & ~MAY_BE_OTHER) == MAY_BE_CELL) forget_taken(taken);
    if (all.count == 1 && !all.has_list) return value_of(first) & ANY_VALUE;
    size = size_of_rows(&all, size, rows);
    return kinds | held_form(kinds, size) | size | (all.all & ANY_SIGN);
}

Value trace_cell(Node *cell) {
    constexpr Value CELL = MAY_BE_CELL | MAY_BE_ARRAY;
    Elements all = {};
    int rows = 0;
    trace_rows(cell, &all, &rows);
    if (all.count == 0) return CELL | MAY_BE_EMPTY;
    Value size = rows > 1 ? MAY_HAVE_ROWS : 0;
    if (all.has_list) return CELL | size | MAY_HAVE_COLUMNS | MAY_BE_EMPTY | MAY_BE_FILLED;
    if (all.count > rows) size |= MAY_HAVE_COLUMNS;
    return CELL | size | MAY_BE_FILLED;
}

// Its parameters have the values that their nodes have; else nothing is known of them. What it
// takes from around it, it takes now. What it asks and does in it speaks of its own variables.
Value trace_anonymous(Node *anonymous) {
    Scope *scope = anonymous->first_child->scope;
    Scope *outer = TracedScope;
    bool was_dead = is_dead();
    TracedScope = scope;
    scope->taken = nullptr;
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (is_variable(symbol)) assign(symbol, value_given_to(symbol));
    for (const Node *given = anonymous->first_child->first_child; given; given = given->next)
        if (given->kind == NODE_NAME && given->value) assign(given->symbol, given->value);
    trace_expression(second_child(anonymous));
    TracedScope = outer;
    set_dead(was_dead);
    return MAY_BE_FUNCTION | ONE;
}
