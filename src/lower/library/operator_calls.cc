// Functions that mean an operator.
#include "lower/library/operator_calls.h"

#include "lower/expressions/expressions.h"
#include "support/row_index.h"
#include "support/same_text.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/operators.h"
#include "translate/operators.h"
#include "translate/ranges.h"
#include "translate/text_forms.h"

namespace {

/* More than two arguments, from the left. */
bool takes_more(OperatorId op) {
    return op == OPERATOR_AND || op == OPERATOR_OR || op == OPERATOR_PLUS ||
           op == OPERATOR_DOT_TIMES || op == OPERATOR_TIMES;
}

struct UnaryWord {
    const char *name;
    int builder;
    HostLevel level;
};

constexpr UnaryWord Unary[] = {
    {"not", OP_NOT, HOST_ATOM},
    {"uminus", OP_UNARY_MINUS, HOST_SIGN},
    {"uplus", OP_UNARY_PLUS, HOST_SIGN},
    {"transpose", OP_DOT_TRANSPOSE, HOST_ATOM},
    {"ctranspose", OP_TRANSPOSE, HOST_ATOM},
};

constexpr auto UnaryIndex = index_rows(Unary);

Operand join_all(OperatorId op, const vExpr *values) {
    Operand value = without_parentheses(values->item);
    for (const vExpr *cell = values->next; cell; cell = cell->next) {
        Operand right = without_parentheses(cell->item);
        value = new_binary(op, &value, &right);
    }
    return value;
}

mExpr *new_binary_call(OperatorId op, const vExpr *values, int count) {
    if (count < 2 || (count > 2 && !takes_more(op))) return nullptr;
    Operand value = join_all(op, values);
    return in_parentheses(&value);
}

mExpr *new_unary_call(const UnaryWord *row, const vExpr *values, int count) {
    if (count != 1) return nullptr;
    Operand operand = without_parentheses(values->item);
    const mExpr *inner = row->level == HOST_ATOM ? operand.expr : after_sign(&operand);
    Operand value = {new_operator1(row->builder, inner), row->level};
    return in_parentheses(&value);
}

mExpr *new_range_call(const vExpr *values, int count) {
    if (count == 2) return new_seq_node(values->item, unit_step(), values->next->item, nullptr);
    if (count != 3) return nullptr;
    return new_seq_node(values->item, values->next->item, values->next->next->item, nullptr);
}

mExpr *new_root_call(mExpr *value) {
    Operand base = without_parentheses(value);
    Operand half = {new_node(EXPR_REAL, ".5"), HOST_ATOM};
    Operand root = new_binary(OPERATOR_DOT_POWER, &base, &half);
    return in_parentheses(&root);
}

mExpr *new_call(RowName name, const vExpr *values, int count) {
    if (const UnaryWord *row = find_row(Unary, UnaryIndex, name))
        return new_unary_call(row, values, count);
    if (is_same_text(name.text, "sqrt")) return count == 1 ? new_root_call(values->item) : nullptr;
    OperatorId op = operator_of(name);
    if (op == OPERATOR_NONE) return nullptr;
    return op == OPERATOR_COLON ? new_range_call(values, count)
                                : new_binary_call(op, values, count);
}

}  // namespace

mExpr *new_operator_call(const OfferedCall *call) {
    if (!has_one_result(call)) return nullptr;
    return new_call(row_name(call->name->text), call->values, call->count);
}

// The parameters' names are the front end's own, and not those of a temporary.
const char *operator_value(const char *name) {
    vExpr *second = alloc_vExpr(new_leaf("qxrp_y"));
    vExpr *both = prepend_vExpr(new_leaf("qxrp_x"), second);
    vExpr *one = alloc_vExpr(new_leaf("qxrp_x"));
    mExpr *binary = new_call(name, both, 2);
    mExpr *unary = binary ? nullptr : new_call(name, one, 1);
    free_vExpr(both);
    free_vExpr(one);
    if (binary)
        return form_text("proc( qxrp_x, qxrp_y ) return %s; end proc", {plain_value(binary)->text});
    if (unary) return form_text("proc( qxrp_x ) return %s; end proc", {plain_value(unary)->text});
    return nullptr;
}
