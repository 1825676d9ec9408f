// Names with a dot.
#include "translate/fields.h"

#include <string.h>

#include "support/allocation.h"
#include "translate/operators.h"
#include "translate/text_forms.h"

mExpr *new_field_name(const char *left, const char *right) {
    mExpr *field = new_node(EXPR_NAME, right);
    return new_operator2(OP_FIELD, new_node(EXPR_NAME, left), field);
}

mExpr *new_dotstring(const char *first, const char *second) {
    char *text;
    size_t size = 2 * (strlen(first) + strlen(second)) + 4;
    mExpr *expr = alloc_text_mExpr(EXPR_STRING, 1, size, &text);
    char *at = write_escaped(write_text(text, "\""), first);
    at = write_escaped(write_text(at, "."), second);
    write_text(at, "\"");
    return expr;
}

void join_to_word(vExpr *word, const char *second) {
    // Without the double quotes that a string's text has around it.
    const char *text = word->item->text;
    char *contents = StrDupBytes(text + 1, strlen(text) - 2);
    word->item = new_dotstring(contents, second);
}
