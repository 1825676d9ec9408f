/* Shapes of results from those of operands. */
#pragma once

#include "syntax/tree/value.h"

/* What is known of numbers and arrays when an operator works on them element by element: a text is
 * the row of its characters, and an empty one of no size. */
Value numeric_shape(Value value);
/* The shape of a binary operation, element by element. */
Value elementwise_shape(Value left, Value right);
/* The shape of the transpose. */
Value transposed(Value value);

inline bool is_single(Value value) { return !may_be(value, MAY_BE_ARRAY | MAY_BE_MISSING); }
/* Whether it is a text, at least on some of the ways to a place, as far as one can tell: of what
 * nobody knows, an object among the rest, it is not. */
inline bool is_known_text(Value value) {
    return may_be(value, MAY_BE_TEXT) && !may_be(value, MAY_BE_OTHER);
}
/* A number or truth value that is surely there and held plainly; a text of one character. */
inline bool is_surely_one(Value value) {
    return is_single(numeric_shape(value)) && !may_be(value, MAY_BE_EMPTY);
}
/* A text of one character, as far as it is a text. */
inline bool is_one_character(Value value) {
    return !may_be(value, MAY_HAVE_ROWS | MAY_HAVE_COLUMNS | MAY_BE_EMPTY);
}
