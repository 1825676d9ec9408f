// Indices.
#include "translate/indices.h"

#include <stdio.h>
#include <string.h>

#include "translate/text_forms.h"

namespace {

// The value of a stepped range from the start to what end stands for.
constexpr char TO_ELEMENTS[] = "Vector[row]([seq(%s..ArrayNumElems(%s,'All'),%s)])";
constexpr char TO_BOUND[] = "Vector[row]([seq(%s..rhs(ArrayDims(%s)[%s]),%s)])";
constexpr char TO_BOUNDS[] = "Vector[row]([seq(%s..mul(rhs(i),i in ArrayDims(%s)[%s..]),%s)])";

// The bound that end stands for in argument k, under a step other than 1: the number of all
// elements, the bound of dimension k, or the product of the bounds from dimension k on.
void write_stepped_to_end(Writer *to, const Index *index, int k, const mRange *range) {
    char dimension[12];
    snprintf(dimension, sizeof dimension, "%d", k);
    const char *base = index->base;
    const char *start = range->start->text;
    const char *step = range->step->text;
    if (index->count == 1) return write_form(to, TO_ELEMENTS, {start, base, step});
    const char *form = k < index->count ? TO_BOUND : TO_BOUNDS;
    write_form(to, form, {start, base, dimension, step});
}

void write_to_end(Writer *to, const Index *index, int k, const mRange *range) {
    const char *start = range->start->text;
    // A cell array's range runs in steps of 1 whatever the source says.
    if (has_unit_step(range) || index->kind == CELL_INDEX) return write_form(to, "%s..", {start});
    if (index->kind != ARGS_INDEX) return write_stepped_to_end(to, index, k, range);
    write_form(to, "[seq(%s..nargs,%s)]", {start, range->step->text});
}

void write_range(Writer *to, const Index *index, int k, const mExpr *argument) {
    const mRange *range = argument->range;
    if (!range->stop) return write_to_end(to, index, k, range);
    const char *start = range->start->text;
    const char *stop = range->stop->text;
    if (has_unit_step(range) && index->kind != FUNCTION_INDEX) {
        return write_form(to, "%s..%s", {start, stop});
    }
    // Argument sequences have no step of their own.
    if (index->kind == ARGS_INDEX) {
        return write_form(to, "seq(%s..%s,%s)", {start, stop, range->step->text});
    }
    write_text(to, argument->text);
}

}  // namespace

void write_argument(Writer *to, const Index *index, int k, const mExpr *argument) {
    if (is_colon(argument)) return write_text(to, "..");
    if (is_range(argument)) return write_range(to, index, k, argument);
    write_text(to, argument->text);
}

void write_arguments(Writer *to, const Index *index, const vExpr *arguments) {
    int k = 1;
    for (const vExpr *cell = arguments; cell; cell = cell->next, k++) {
        if (k > 1) write_text(to, ", ");
        write_argument(to, index, k, cell->item);
    }
}

// A range that ends with end has its longest form with a dimension, whose digits are fewer than the
// form's marks take.
static size_t argument_size(const char *base, const mExpr *argument) {
    bool is_open = is_range(argument) && !argument->range->stop;
    if (!is_open) return strlen(argument->text);
    const mRange *range = argument->range;
    return strlen(range->start->text) + strlen(range->step->text) + strlen(base) + sizeof TO_BOUNDS;
}

size_t arguments_size(const char *base, const vExpr *arguments) {
    size_t size = 0;
    for (const vExpr *cell = arguments; cell; cell = cell->next)
        size += argument_size(base, cell->item) + strlen(", ");
    return size;
}

mExpr *new_element_node(const char *base, IndexKind kind, const vExpr *arguments) {
    Index index = {base, kind, count_vExpr(arguments)};
    const char *brackets = kind == ARGS_INDEX ? "[]" : "()";
    Writer to;
    size_t size = strlen(base) + arguments_size(base, arguments) + sizeof "()";
    mExpr *expr = alloc_text_mExpr(EXPR_CALL, NOT_SCALAR, size, &to);
    write_text(&to, base);
    write_character(&to, brackets[0]);
    write_arguments(&to, &index, arguments);
    write_character(&to, brackets[1]);
    return expr;
}

mExpr *new_index_node(const char *base, IndexKind kind, const vExpr *arguments) {
    bool is_column = arguments && !arguments->next && is_colon(arguments->item);
    if (!is_column) return new_element_node(base, kind, arguments);
    return new_form_mExpr(EXPR_CALL, NOT_SCALAR, "Vector[column](%s(..))", {base});
}
