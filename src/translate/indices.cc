// Indices.
#include "translate/indices.h"

#include <stdio.h>
#include <string.h>

#include "translate/text_forms.h"

namespace {

// The bound that end stands for in argument k, under a step other than 1: the number of all
// elements, the bound of dimension k, or the product of the bounds from dimension k on.
char *write_stepped_to_end(char *at, const Index *index, int k, const mRange *range) {
    char dimension[12];
    snprintf(dimension, sizeof dimension, "%d", k);
    const char *base = index->base;
    const char *start = range->start->text;
    const char *step = range->step->text;
    if (index->count == 1) {
        return write_form(at, "Vector[row]([seq(%s..ArrayNumElems(%s,'All'),%s)])",
                          {start, base, step});
    }
    if (k < index->count) {
        return write_form(at, "Vector[row]([seq(%s..rhs(ArrayDims(%s)[%s]),%s)])",
                          {start, base, dimension, step});
    }
    return write_form(at, "Vector[row]([seq(%s..mul(rhs(i),i in ArrayDims(%s)[%s..]),%s)])",
                      {start, base, dimension, step});
}

char *write_to_end(char *at, const Index *index, int k, const mRange *range) {
    const char *start = range->start->text;
    // A cell array's range runs in steps of 1 whatever the source says.
    if (has_unit_step(range) || index->kind == CELL_INDEX) return write_form(at, "%s..", {start});
    if (index->kind != ARGS_INDEX) return write_stepped_to_end(at, index, k, range);
    return write_form(at, "[seq(%s..nargs,%s)]", {start, range->step->text});
}

char *write_range(char *at, const Index *index, int k, const mExpr *argument) {
    const mRange *range = argument->range;
    if (!range->stop) return write_to_end(at, index, k, range);
    const char *start = range->start->text;
    const char *stop = range->stop->text;
    if (has_unit_step(range) && index->kind != FUNCTION_INDEX) {
        return write_form(at, "%s..%s", {start, stop});
    }
    // Argument sequences have no step of their own.
    if (index->kind == ARGS_INDEX) {
        return write_form(at, "seq(%s..%s,%s)", {start, stop, range->step->text});
    }
    return write_text(at, argument->text);
}

}  // namespace

char *write_argument(char *at, const Index *index, int k, const mExpr *argument) {
    if (is_colon(argument)) return write_text(at, "..");
    if (is_range(argument)) return write_range(at, index, k, argument);
    return write_text(at, argument->text);
}

char *write_arguments(char *at, const Index *index, const vExpr *arguments) {
    int k = 1;
    for (const vExpr *cell = arguments; cell; cell = cell->next, k++) {
        if (k > 1) at = write_text(at, ", ");
        at = write_argument(at, index, k, cell->item);
    }
    return at;
}

// An index range is shorter than the value form, but where end needs the base.
size_t arguments_size(const char *base, const vExpr *arguments) {
    size_t to_end = strlen(base) + 60;
    size_t size = 0;
    for (const vExpr *cell = arguments; cell; cell = cell->next) {
        const mExpr *argument = cell->item;
        size += strlen(argument->text) + strlen(", ");
        if (is_range(argument) && !argument->range->stop) size += to_end;
    }
    return size;
}

mExpr *new_element_node(const char *base, IndexKind kind, const vExpr *arguments) {
    Index index = {base, kind, count_vExpr(arguments)};
    const char *brackets = kind == ARGS_INDEX ? "[]" : "()";
    char *at;
    size_t size = strlen(base) + arguments_size(base, arguments) + strlen(brackets) + 1;
    mExpr *expr = alloc_text_mExpr(EXPR_CALL, NOT_SCALAR, size, &at);
    at = write_text(at, base);
    *at++ = brackets[0];
    at = write_arguments(at, &index, arguments);
    *at++ = brackets[1];
    *at = '\0';
    return expr;
}

mExpr *new_index_node(const char *base, IndexKind kind, const vExpr *arguments) {
    bool is_column = arguments && !arguments->next && is_colon(arguments->item);
    if (!is_column) return new_element_node(base, kind, arguments);
    const char *form = "Vector[column](%s(..))";
    char *text;
    mExpr *expr = alloc_text_mExpr(EXPR_CALL, NOT_SCALAR, strlen(form) + strlen(base), &text);
    write_form(text, form, {base});
    return expr;
}
