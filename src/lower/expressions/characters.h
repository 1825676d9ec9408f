/* Texts among the operands of operators that work on each character. */
#pragma once

#include "lower/expressions/operands.h"
#include "syntax/tree/value.h"

/* Lets texts be the numbers of their characters, as MATLAB does, where the host would take them as
 * a whole: left and right of the operator op, whose values are known as far as left_value and
 * right_value tell. Two single characters are compared as they are. */
void spell_characters(OperatorId op, Operand *left, Value left_value, Operand *right,
                      Value right_value);
/* The same of the operand of a prefix. */
void spell_prefixed(Operand *operand, Value value);
