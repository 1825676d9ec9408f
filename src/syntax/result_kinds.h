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

/* The kind of the first result of a call. name: of the source, with the dots of packages. It must
 * not throw. */
typedef ResultKind (*ResultKindFinder)(const char *name);
/* Null by default; belongs to who set it, and stays from run to run. */
extern ResultKindFinder ResultKindOf;
