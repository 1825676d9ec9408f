/* Expressions: from a node of the tree to host text. What an expression needs in front, such as a
 * call whose result is indexed, is put into the lines of the current statement. */
#pragma once

#include "lower/expressions/operands.h"
#include "syntax/tree/tree.h"
#include "syntax/tree/value.h"

/* One value. A list of values, c{:}, stands for its first one. */
Operand lower_operand(const Node *node);
inline mExpr *lower_expression(const Node *node) { return lower_operand(node).expr; }

/* The value of a CHAIN or PREFIX. */
Operand lower_chain(const Node *node);
Operand lower_prefix(const Node *node);
/* The value of a binary operator; left is spent. */
Operand new_binary(OperatorId op, const Operand *left, const Operand *right);
/* The same of an operand and what is known of it, and of an expression: plain where both are surely
 * single numbers. */
Operand join_values(OperatorId op, const Operand *left, Value left_value, const Node *right);

/* A NUMBER, a STRING; the text of a string's characters. */
Operand lower_number(const Node *node);
mExpr *lower_string(const Node *node);
const char *string_text(const char *characters);
/* [ ] and { }. */
Operand lower_matrix(const Node *node);
mExpr *lower_cell(const Node *node);
/* A RANGE of numbers as a value; its parts are in the record. */
mExpr *lower_range(const Node *node);
/* Whether it runs from one character to another. */
bool is_text_range(const Node *node);
