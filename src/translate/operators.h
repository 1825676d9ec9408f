/* Operators. The grammar settles precedence; the builders choose the host form, by whether the
 * operands are known scalars. An operator built directly inside parentheses gets a pair of its own
 * (BracketDelimiter is 40 then); the grammar's grouping adds none. */
#pragma once

#include "translate/expressions.h"

enum Operator {
    OP_DIVIDE = 10,
    OP_LEFT_DIVIDE = 11,
    OP_DOT_DIVIDE = 12,
    OP_DOT_LEFT_DIVIDE = 13,
    OP_MINUS = 14,
    OP_TIMES = 15,
    OP_DOT_TIMES = 16,
    OP_PLUS = 17,
    OP_POWER = 18,
    OP_DOT_POWER = 19,
    OP_UNARY_PLUS = 20,
    OP_UNARY_MINUS = 21,
    OP_NOT = 22,
    OP_AND = 23,
    OP_OR = 24,
    OP_EQ = 25,
    OP_NE = 26,
    OP_LT = 27,
    OP_LE = 28,
    OP_GT = 29,
    OP_GE = 30,
    OP_DOT_TRANSPOSE = 31,
    OP_TRANSPOSE = 32,
    OP_ASSIGN = 35,
    OP_FIELD = 36
};

/* A binary operator, an assignment (left is the target, or the matrix literal of several) or a
 * field name. Scalar when both operands are. An assignment makes its target a known variable. A
 * binary operator may use up its left operand (binary_text.h). */
mExpr *new_operator2(int id, const mExpr *left, const mExpr *right);
/* A unary operator, scalar when the operand is. */
mExpr *new_operator1(int id, const mExpr *operand);
