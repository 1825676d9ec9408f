/* What a value may be, as a set of possibilities: two sets are joined by |, and what is not in the
 * set is surely not so. Kinds, whether it is single, its shape, its sign: a bit each.
 *
 * A number or truth value is held plainly where it comes from a literal, an index of single
 * positions or a function that gives one. All else that MATLAB calls a 1-by-1 array, a range of one
 * number among them, may be an array of one element in the host.
 *
 * Where it has no elements, a value without MAY_HAVE_ROWS or without MAY_HAVE_COLUMNS is of 0 by 0,
 * 1 by 0 or 0 by 1: what may be of 0 by 3 has both. Rounded numbers, and sums and products of whole
 * ones, are taken to be whole: they are not where they are infinite or not real, which is no
 * position or count either. A complex number is broken and counts as negative. */
#pragma once

#include "syntax/tree/tree.h"

/* Of ValueBit. 0: nobody has looked, as in a tree whose values have not been traced. */
typedef uint16_t Value;

enum ValueBit : uint16_t {
    MAY_BE_NUMBER = 1 << 0,
    MAY_BE_TRUTH = 1 << 1, /* true and false, and arrays of them */
    MAY_BE_TEXT = 1 << 2,
    MAY_BE_CELL = 1 << 3,
    MAY_BE_RECORD = 1 << 4,
    MAY_BE_FUNCTION = 1 << 5,
    MAY_BE_OTHER = 1 << 6,      /* an object */
    MAY_BE_SINGLE = 1 << 7,     /* held plainly: one number, one text, one record */
    MAY_BE_ARRAY = 1 << 8,      /* of any number of elements; a cell is one always, and where the
                                   value may be a cell the bit speaks of the other kinds */
    MAY_HAVE_ROWS = 1 << 9,     /* several rows, where it has elements */
    MAY_HAVE_COLUMNS = 1 << 10, /* several columns, where it has elements */
    MAY_BE_EMPTY = 1 << 11,
    MAY_BE_FILLED = 1 << 12,   /* one element or more */
    MAY_BE_NEGATIVE = 1 << 13, /* a number, or one of them */
    MAY_BE_BROKEN = 1 << 14,   /* a number that is not whole, or is not finite */
    MAY_BE_MISSING = 1 << 15   /* of a variable: it may have no value */
};

constexpr Value ANY_KIND = (1 << 7) - 1;
constexpr Value ANY_SHAPE =
    MAY_BE_SINGLE | MAY_BE_ARRAY | MAY_HAVE_ROWS | MAY_HAVE_COLUMNS | MAY_BE_EMPTY | MAY_BE_FILLED;
constexpr Value ANY_SIGN = MAY_BE_NEGATIVE | MAY_BE_BROKEN;
constexpr Value ANY_VALUE = ANY_KIND | ANY_SHAPE | ANY_SIGN;

constexpr Value ARITHMETIC = MAY_BE_NUMBER | MAY_BE_TRUTH;
/* Shapes: one value; a row of elements or none; a column. */
constexpr Value ONE = MAY_BE_SINGLE | MAY_BE_FILLED;
constexpr Value ROW = MAY_BE_ARRAY | MAY_HAVE_COLUMNS | MAY_BE_EMPTY | MAY_BE_FILLED;
constexpr Value COLUMN = MAY_BE_ARRAY | MAY_HAVE_ROWS | MAY_BE_EMPTY | MAY_BE_FILLED;

/* A position or a number of elements, and any number. */
constexpr Value COUNT = MAY_BE_NUMBER | ONE;
constexpr Value ONE_TRUTH = MAY_BE_TRUTH | ONE;
/* One number, held plainly. A variable that has no value fails where it is read. */
constexpr Value ONE_NUMBER = MAY_BE_NUMBER | ONE | ANY_SIGN | MAY_BE_MISSING;
/* A text of any length: held plainly. */
constexpr Value ANY_TEXT =
    MAY_BE_TEXT | MAY_BE_SINGLE | MAY_HAVE_COLUMNS | MAY_BE_EMPTY | MAY_BE_FILLED;

inline bool is_within(Value value, Value set) { return (value & ~set) == 0; }
inline Value kinds_of(Value value) { return value & ANY_KIND; }
inline bool is_surely(Value value, Value kinds) { return is_within(kinds_of(value), kinds); }
inline bool is_one_number(Value value) { return is_within(value, ONE_NUMBER); }
inline bool may_be(Value value, Value bits) { return (value & bits) != 0; }
/* Whether a character or a truth value that becomes an element of a variable's array becomes a
 * number there. */
inline bool counts_as_number(Value array, Value element) {
    Value kinds = kinds_of(element);
    return kinds_of(array) == MAY_BE_NUMBER && !may_be(array, MAY_BE_MISSING) &&
           (kinds == MAY_BE_TRUTH || kinds == MAY_BE_TEXT);
}

/* What is known of an expression's value; nothing is known where nobody has looked. Of a NAME also
 * whether it may have none; of the base of a target, before it is changed. */
inline Value value_of(const Node *node) { return node->value ? node->value : ANY_VALUE; }
