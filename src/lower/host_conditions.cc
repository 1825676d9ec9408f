// Tests of counts.
#include "lower/host_conditions.h"

#include <stdio.h>

#include "lexer/brackets.h"
#include "lower/lines.h"

const char *number_text(int number) {
    char digits[16];
    snprintf(digits, sizeof digits, "%d", number);
    return form_text("%s", {digits});
}

mExpr *count_comparison(const char *left, int op, int number) {
    mExpr *count = alloc_mExpr();
    *count = {EXPR_NAME, left, NOT_SCALAR, nullptr};
    return new_operator2(op, count, new_node(EXPR_INTEGER, number_text(number)));
}

const char *count_condition(const char *left, int op, int number) {
    int32_t outer = BracketDelimiter;
    BracketDelimiter = 0;
    const mExpr *comparison = count_comparison(left, op, number);
    BracketDelimiter = outer;
    return form_text("ArrayTools[AllNonZero](%s)", {comparison->text});
}
