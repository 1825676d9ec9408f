// Functions whose names are words of the host.
#include "lower/word_functions.h"

#include <string.h>

#include "lexer/brackets.h"
#include "translate/operators.h"
#include "translate/text_forms.h"

// The operator of the name, or 0.
static int word_operator(const char *name) {
    if (strcmp(name, "and") == 0) return OP_AND;
    if (strcmp(name, "or") == 0) return OP_OR;
    return strcmp(name, "not") == 0 ? OP_NOT : 0;
}

mExpr *new_word_call(const char *name, const vExpr *arguments) {
    int op = word_operator(name);
    if (!op || !arguments || (op == OP_NOT) != !arguments->next) return nullptr;
    if (op == OP_NOT) return new_operator1(op, arguments->item);
    mExpr *value = arguments->item;
    for (const vExpr *cell = arguments->next; cell; cell = cell->next)
        value = new_operator2(op, value, cell->item);
    return value;
}

// The parameters' names are the front end's own, and not those of a temporary.
const char *word_function(const char *name) {
    int op = word_operator(name);
    if (!op) return nullptr;
    mExpr left = {EXPR_NAME, "qxrp_x", NOT_SCALAR, nullptr};
    mExpr right = {EXPR_NAME, "qxrp_y", NOT_SCALAR, nullptr};
    int32_t outer = open_bracket(OUTSIDE);
    const mExpr *value = op == OP_NOT ? new_operator1(op, &left) : new_operator2(op, &left, &right);
    close_bracket(outer);
    return form_text("proc( %s ) return %s; end proc",
                     {op == OP_NOT ? left.text : "qxrp_x, qxrp_y", value->text});
}
