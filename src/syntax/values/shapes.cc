// Shapes.
#include "syntax/values/shapes.h"

Value numeric_shape(Value value) {
    Value shape = value & ANY_SHAPE;
    if (!may_be(value, MAY_BE_TEXT) || is_one_character(value)) return shape;
    Value others = kinds_of(value) == MAY_BE_TEXT ? 0 : shape;
    return others | MAY_BE_ARRAY | (shape & ~MAY_BE_SINGLE);
}

Value elementwise_shape(Value left, Value right) {
    constexpr Value EITHER = MAY_BE_ARRAY | MAY_HAVE_ROWS | MAY_HAVE_COLUMNS | MAY_BE_EMPTY;
    constexpr Value BOTH = MAY_BE_SINGLE | MAY_BE_FILLED;
    left = numeric_shape(left);
    right = numeric_shape(right);
    return ((left | right) & EITHER) | (left & right & BOTH);
}

Value transposed(Value value) {
    Value turned = value & ~(MAY_HAVE_ROWS | MAY_HAVE_COLUMNS);
    if (value & MAY_HAVE_ROWS) turned |= MAY_HAVE_COLUMNS;
    if (value & MAY_HAVE_COLUMNS) turned |= MAY_HAVE_ROWS;
    bool is_upright = may_be(value, MAY_BE_TEXT) && may_be(turned, MAY_HAVE_ROWS);
    return is_upright ? Value(turned | MAY_BE_ARRAY) : turned;
}
