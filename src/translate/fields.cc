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
    char *text;
    size_t size = 2 * (strlen(first) + strlen(second)) + 4;
    mExpr *expr = alloc_text_mExpr(EXPR_STRING, SCALAR, size, &text);
    char *at = write_escaped(write_text(text, "\""), first);
    at = write_escaped(write_text(at, "."), second);
    write_text(at, "\"");
    return expr;
}
