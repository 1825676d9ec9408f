/* What the results of functions are that no source defines, as far as somebody knows. */
#pragma once

#include <stdint.h>

enum ResultKind : uint8_t {
    RESULT_UNKNOWN,
    RESULT_NUMBER,  /* a single number */
    RESULT_TRUTH,   /* a single truth value */
    RESULT_TEXT,    /* a text */
    RESULT_CELL,    /* a cell array */
    RESULT_RECORD,  /* a structure */
    RESULT_SEVERAL, /* an array: there may be any number of elements */
    RESULT_KINDS
};
