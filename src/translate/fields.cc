// Names with a dot.
#include "translate/fields.h"

#include <string.h>

#include "translate/operators.h"
#include "translate/text_forms.h"

mExpr *new_field_name(const char *left, const char *right) {
    mExpr *field = new_node(EXPR_NAME, right);
    return new_operator2(OP_FIELD, new_node(EXPR_NAME, left), field);
}

mExpr *new_dotstring(const char *first, const char *second) {
    Writer to;
    size_t size = escaped_length(first, "\\") + escaped_length(second, "\\") + sizeof "\".\"";
    mExpr *expr = alloc_text_mExpr(EXPR_STRING, SCALAR, size, &to);
    write_text(&to, "\"");
    write_escaped(&to, first, "\\");
    write_text(&to, ".");
    write_escaped(&to, second, "\\");
    write_text(&to, "\"");
    return expr;
}
