/* What a form needs to know of its arguments. */
#pragma once

#include <stdint.h>

#include "lower/library/offered_call.h"

enum LibraryNeed : uint32_t {
    NEEDS_NOTHING = 0,
    NEEDS_NO_TEXT = 1 << 0,       /* no argument is surely a text */
    NEEDS_JOINABLE = 1 << 1,      /* no argument is known to be a text: Concatenate takes none */
    NEEDS_NUMBERS = 1 << 2,       /* all arguments are surely numbers or truth values */
    NEEDS_TEXTS = 1 << 3,         /* one of two is surely a text, and the other no cell */
    NEEDS_SINGLES = 1 << 4,       /* all arguments are surely single values */
    NEEDS_SECOND_SINGLE = 1 << 5, /* the second argument is, if there is one */
    NEEDS_VECTOR = 1 << 6,        /* the first argument is surely a row or a column */
    NEEDS_COUNTS = 1 << 7,        /* all arguments are whole numbers of the source, from 1 on */
    NEEDS_ONE_FIRST = 1 << 8,     /* the first argument is 1 */
    NEEDS_ONE_LAST = 1 << 9,      /* the last argument is 1 */
    NEEDS_PLANE = 1 << 10,        /* the last argument is 1 or 2 */
    NEEDS_EMPTY_SECOND = 1 << 11, /* the second argument is [] */
    NEEDS_TEXT_FIRST = 1 << 12,   /* the first argument is surely a text */
    NEEDS_TEXT_LAST = 1 << 13,    /* the last one is */
    NEEDS_DESCEND = 1 << 14,      /* the first argument is no text, the second the text 'descend' */
    NEEDS_TWO_RESULTS = 1 << 15,  /* two are asked for */
    NEEDS_TEST = 1 << 16,         /* of the value only matters whether it is true */
    NEEDS_DENIED = 1 << 25,       /* only matters whether ~ of it is, which the function tells */
    GIVES_TRUTH = 1 << 26,        /* no need: it gives true or false, as conditions take it */
    FOR_LIBRARY = 1 << 17,        /* a word of the library's own functions */
    NEEDS_CELL_SECOND = 1 << 19,  /* the second argument is surely a cell */
    NEEDS_EXACT = 1 << 20,        /* the last one is the text 'exact' */
    NEEDS_FIRST = 1 << 21,        /* the first one is no text, the last one the text 'first' */
    NEEDS_USUAL_WEIGHT = 1 << 22, /* the second one is 0 or [] */
    NEEDS_PAIRING_FIRST = 1 << 23, /* the first one is a handle of an operator for elements */
    NEEDS_TEXTS_AFTER = 1 << 24,   /* all arguments after the first are surely texts */
    IN_PACKAGE = 1 << 18           /* no need: the form begins with the prefix of a package that the
                                      procedure is to declare */
};

/* Whether the call has all that the needs, flags of LibraryNeed, ask for. */
bool meets_needs(const OfferedCall *call, uint32_t needs);
