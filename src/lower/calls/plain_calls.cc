// Lists of arguments.
#include "lower/calls/plain_calls.h"

#include "lower/calls/keyword_calls.h"
#include "lower/expressions/operands.h"
#include "translate/indices.h"

vExpr *plain_arguments(const vExpr *arguments) {
    ExprList plain = {};
    for (; arguments; arguments = arguments->next)
        append_expr(&plain, plain_value(arguments->item));
    return plain.first;
}

mExpr *new_call_of(const char *function, const vExpr *arguments) {
    vExpr *plain = plain_arguments(arguments);
    mExpr *call = new_index_node(function, FUNCTION_INDEX, plain);
    free_vExpr(plain);
    return call;
}
