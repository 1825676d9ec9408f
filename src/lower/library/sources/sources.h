/* Functions that the front end brings along, in MATLAB. They use what is a form of the host, and
 * each other; a call of one puts its translation after the files of the run. */
#pragma once

#include <stdint.h>

#include "support/row_index.h"

struct LibrarySource {
    const char *name;
    int8_t least; /* arguments, without the first one that it is given here */
    int8_t most;
    int8_t results;       /* at most */
    uint32_t needs;       /* flags of LibraryNeed */
    const char *given;    /* the first argument, a host text; null for none */
    const char *text;     /* $1 to $4 stand for the words */
    const char *words[4]; /* all null: the text has none */
};

/* The text of a function that tells whether a condition is true. Words: the function, the
 * condition, its arguments. */
inline constexpr char Asked[] = R"(function answer = $1($3)
% Whether $2 is true.
answer = false;
value = $2;
if value
    answer = true;
end
)";

typedef NamedRows<LibrarySource> LibrarySources;

LibrarySources shape_sources();
LibrarySources array_sources();
LibrarySources fold_sources();
LibrarySources extreme_sources();
LibrarySources element_sources();
LibrarySources number_sources();
LibrarySources text_sources();
LibrarySources order_sources();
LibrarySources matrix_sources();
LibrarySources turn_sources();
LibrarySources curve_sources();
LibrarySources search_sources();
