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
    size_t separators;  // between the elements of a row
    size_t empty_rows;
    size_t text_length;  // of all elements
};

Shape measure(const mMatrix *matrix, LiteralKind kind) {
    Shape shape = {matrix->count, 0, kind, true, false, 0, 0, 0};
    for (int32_t r = 0; r < matrix->count; r++) {
        const mVector *row = matrix->items[r];
        if (row->count > shape.widest) shape.widest = row->count;
        if (row->count == 0) shape.empty_rows++;
        if (row->count > 1) shape.separators += static_cast<size_t>(row->count) - 1;
        for (int32_t i = 0; i < row->count; i++) {
            const mExpr *element = row->items[i];
            if (!element->scalar) shape.all_scalar = false;
            if (element->kind == EXPR_STRING) shape.any_string = true;
            shape.text_length += strlen(element->text);
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

// What stands around and between the elements. Rows are separated by ", ".
struct LiteralForm {
    const char *prefix;
    const char *open;
    const char *row_open;
    const char *separator;  // of the elements of a row
    const char *row_close;
    const char *close;
    const char *end;
};

LiteralForm line_form(const Shape *shape, bool is_row) {
    if (shape->kind == CELL_LITERAL) {
        const char *subtype = is_row ? "],subtype='Vector[row]')" : "],subtype='Vector[column]')";
        return {"", "rtable([", "", ", ", "", subtype, ""};
    }
    if (shape->any_string || shape->all_scalar) {
        return {"", is_row ? "Vector[row]([" : "Vector[column]([", "", ", ", "", "])", ""};
    }
    const char *open = is_row ? "Concatenate(2, " : "Concatenate(1, ";
    return {array_tools_prefix(), open, "", ", ", "", ")", ""};
}

LiteralForm matrix_form(const Shape *shape) {
    LiteralForm form = {"", "Matrix([", "<", " | ", ">", "], scan=columns", " )"};
    if (shape->all_scalar) {
        form.row_open = "[";
        form.separator = ", ";
        form.row_close = form.close = "]";
    }
    if (shape->any_string) {
        form.prefix = array_tools_prefix();
        form.open = "Concatenate(2,Matrix([";
        form.end = "))";
    }
    return form;
}

constexpr char ROW_SEPARATOR[] = ", ";
// Stands in a column for a row without elements.
constexpr char NO_ELEMENT[] = "0";

size_t literal_size(const Shape *shape, const LiteralForm *form, bool is_column) {
    size_t rows = static_cast<size_t>(shape->rows);
    size_t around = strlen(form->prefix) + strlen(form->open) + strlen(form->close) +
                    strlen(form->end) + (rows - 1) * strlen(ROW_SEPARATOR) +
                    rows * (strlen(form->row_open) + strlen(form->row_close));
    size_t elements = shape->text_length + shape->separators * strlen(form->separator);
    if (is_column) elements += shape->empty_rows * strlen(NO_ELEMENT);
    return around + elements + sizeof "";
}

void write_row(Writer *to, const mVector *row, const LiteralForm *form, bool is_column) {
    write_text(to, form->row_open);
    for (int32_t i = 0; i < row->count; i++) {
        if (i > 0) write_text(to, form->separator);
        write_text(to, row->items[i]->text);
    }
    if (is_column && row->count == 0) write_text(to, NO_ELEMENT);
    write_text(to, form->row_close);
}

mExpr *new_literal(const Shape *shape, const mMatrix *matrix) {
    bool is_column = shape->rows > 1 && shape->widest == 1;
    LiteralForm form =
        shape->rows == 1 || is_column ? line_form(shape, !is_column) : matrix_form(shape);
    Writer to;
    mExpr *expr =
        alloc_text_mExpr(EXPR_MATRIX, NOT_SCALAR, literal_size(shape, &form, is_column), &to);
    write_text(&to, form.prefix);
    write_text(&to, form.open);
    for (int32_t r = 0; r < matrix->count; r++) {
        if (r > 0) write_text(&to, ROW_SEPARATOR);
        write_row(&to, matrix->items[r], &form, is_column);
    }
    write_text(&to, form.close);
    write_text(&to, form.end);
    return expr;
}

mExpr *new_text_literal(const char *text) {
    mExpr *expr = alloc_mExpr();
    *expr = {EXPR_MATRIX, text, NOT_SCALAR, nullptr};
    return expr;
}

}  // namespace

mExpr *new_matrix_node(const mMatrix *matrix, LiteralKind kind) {
    Shape shape = measure(matrix, kind);
    if (shape.rows == 0 || shape.widest == 0) return new_text_literal("Vector()");
    if (is_single(&shape, matrix)) return new_text_literal(matrix->items[0]->items[0]->text);
    return new_literal(&shape, matrix);
}
