/* The record of a binary operator, whose text stands around its left operand's.
 *
 * A chain such as a + b + c + … would copy its beginning again at every operator. So the text of an
 * operator in a chain gets space to grow in front and after, and the next operator of the chain, if
 * the space suffices, writes its own text around it in place. The left operand is used up by that:
 * its record stays, its text is the new one's middle. */
#pragma once

#include <initializer_list>

#include "translate/expressions.h"

/* A record with the text of the pieces of head, the left operand and the pieces of tail. */
mExpr *new_binary_expr(int id, int scalar, const mExpr *left,
                       std::initializer_list<const char *> head,
                       std::initializer_list<const char *> tail);
