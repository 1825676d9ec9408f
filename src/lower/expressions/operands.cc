// Host text of operands.
#include "lower/expressions/operands.h"

#include "lower/lines/lines.h"
#include "support/allocation.h"

mExpr *new_leaf(const char *text, int32_t scalar) {
    mExpr *expr = alloc_mExpr();
    *expr = {EXPR_NAME, text, scalar, nullptr};
    return expr;
}

mExpr *new_call_leaf(const char *text) {
    mExpr *expr = alloc_mExpr();
    *expr = {EXPR_CALL, text, NOT_SCALAR, nullptr};
    return expr;
}

namespace {

constexpr int EXPR_PAIR = 42;  // no builder's

struct PairedValue {
    mExpr expr;
    Operand inner;
};

}  // namespace

static const mExpr *in_pair(const mExpr *expr) {
    return new_leaf(form_text("(%s)", {expr->text}), expr->scalar);
}

// Whether 2^3^4 is read from the left is left open by the host: powers get a pair on both sides.
const mExpr *left_of(const Operand *operand, HostLevel form) {
    bool is_safe = form == HOST_ATOM || operand->level > form ||
                   (operand->level == form && form != HOST_POWER);
    return is_safe ? operand->expr : in_pair(operand->expr);
}

static bool begins_with_sign(const mExpr *expr) {
    return expr->text[0] == '-' || expr->text[0] == '+';
}

// Two operators never follow each other, as they would in a - -b*c.
const mExpr *right_of(const Operand *operand, HostLevel form) {
    bool is_safe = form == HOST_ATOM || (operand->level > form && !begins_with_sign(operand->expr));
    return is_safe ? operand->expr : in_pair(operand->expr);
}

// -3*I is the same number either way.
const mExpr *after_sign(const Operand *operand) {
    bool is_safe = operand->level > HOST_SIGN || operand->expr->kind == EXPR_IMAGINARY;
    return is_safe ? operand->expr : in_pair(operand->expr);
}

mExpr *in_parentheses(const Operand *operand) {
    if (operand->level == HOST_ATOM) return operand->expr;
    PairedValue *value = AllocRecord<PairedValue>();
    value->expr = *in_pair(operand->expr);
    value->expr.kind = EXPR_PAIR;
    value->inner = *operand;
    return &value->expr;
}

Operand without_parentheses(mExpr *value) {
    if (value->kind != EXPR_PAIR) return {value, HOST_ATOM};
    return reinterpret_cast<PairedValue *>(value)->inner;
}
