// Matrix and cell literals: the choice of the host constructor.
#include "translate/literals.h"

#include <string.h>

#include "translate/package_prefix.h"
#include "translate/text_forms.h"

namespace {

// What the constructor depends on.
struct Shape {
    int32_t rows;
    int32_t widest;  // elements of the longest row
    LiteralKind kind;
    bool all_scalar;
    bool any_string;
    size_t text_length;  // of all elements, with 4 bytes each for what stands around them
};

Shape measure(const mMatrix *matrix, LiteralKind kind) {
    Shape shape = {matrix->count, 0, kind, true, false, 0};
    for (int32_t r = 0; r < matrix->count; r++) {
        const mVector *row = matrix->items[r];
        if (row->count > shape.widest) shape.widest = row->count;
        for (int32_t i = 0; i < row->count; i++) {
            const mExpr *element = row->items[i];
            if (!element->scalar) shape.all_scalar = false;
            if (element->kind == EXPR_STRING) shape.any_string = true;
            shape.text_length += strlen(element->text) + 4;
        }
    }
    return shape;
}

// A single element stands for itself unless it may denote several values.
bool is_single(const Shape *shape, const mMatrix *matrix) {
    if (shape->rows != 1 || shape->widest != 1) return false;
    const mExpr *element = matrix->items[0]->items[0];
    return element->kind != EXPR_CALL && element->kind != EXPR_RANGE &&
           strcmp(element->text, "args") != 0;
}

char *write_elements(char *at, const mVector *row, const char *separator) {
    for (int32_t i = 0; i < row->count; i++) {
        if (i > 0) at = write_text(at, separator);
        at = write_text(at, row->items[i]->text);
    }
    return at;
}

char *write_first_elements(char *at, const mMatrix *matrix) {
    for (int32_t r = 0; r < matrix->count; r++) {
        const mVector *row = matrix->items[r];
        if (r > 0) at = write_text(at, ", ");
        at = write_text(at, row->count > 0 ? row->items[0]->text : "0");
    }
    return at;
}

// A row or column: how it opens and closes.
struct LineForm {
    const char *cell_close;
    const char *vector_open;
    const char *concatenation_open;
};

const LineForm RowForm = {"],subtype='Vector[row]')", "Vector[row]([", "Concatenate(2, "};
const LineForm ColumnForm = {"],subtype='Vector[column]')", "Vector[column]([", "Concatenate(1, "};

void write_line(char *at, const Shape *shape, const mMatrix *matrix, const LineForm *form) {
    const char *close;
    if (shape->kind == CELL_LITERAL) {
        at = write_text(at, "rtable([");
        close = form->cell_close;
    } else if (shape->any_string || shape->all_scalar) {
        at = write_text(at, form->vector_open);
        close = "])";
    } else {
        at = with_array_tools_prefix(at, form->concatenation_open, {});
        close = ")";
    }
    at = shape->rows == 1 ? write_elements(at, matrix->items[0], ", ")
                          : write_first_elements(at, matrix);
    write_text(at, close);
}

void write_full_matrix(char *at, const Shape *shape, const mMatrix *matrix) {
    const char *row_form[] = {shape->all_scalar ? "[" : "<", shape->all_scalar ? ", " : " | ",
                              shape->all_scalar ? "]" : ">"};
    at = shape->any_string ? with_array_tools_prefix(at, "Concatenate(2,Matrix([", {})
                           : write_text(at, "Matrix([");
    for (int32_t r = 0; r < matrix->count; r++) {
        if (r > 0) at = write_text(at, ", ");
        at = write_text(at, row_form[0]);
        at = write_elements(at, matrix->items[r], row_form[1]);
        at = write_text(at, row_form[2]);
    }
    at = write_text(at, shape->all_scalar ? "]" : "], scan=columns");
    write_text(at, shape->any_string ? "))" : " )");
}

void write_literal(char *at, const Shape *shape, const mMatrix *matrix) {
    if (shape->rows == 0 || shape->widest == 0) {
        write_text(at, "Vector()");
    } else if (is_single(shape, matrix)) {
        write_text(at, matrix->items[0]->items[0]->text);
    } else if (shape->rows == 1) {
        write_line(at, shape, matrix, &RowForm);
    } else if (shape->widest == 1) {
        write_line(at, shape, matrix, &ColumnForm);
    } else {
        write_full_matrix(at, shape, matrix);
    }
}

}  // namespace

mExpr *new_matrix_node(const mMatrix *matrix, LiteralKind kind) {
    Shape shape = measure(matrix, kind);
    char *text;
    mExpr *expr = alloc_text_mExpr(EXPR_MATRIX, NOT_SCALAR, shape.text_length + 80, &text);
    write_literal(text, &shape, matrix);
    return expr;
}
