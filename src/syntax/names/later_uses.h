/* What the function does with its variables after a statement, in the order of execution, before
 * they are set as a whole. One walk over the function, from its end to its beginning, tells it. */
#pragma once

#include "syntax/names/names.h"

/* Of a variable, after a statement. */
struct LaterUse {
    uint32_t offset;  /* of the statement */
    bool is_used;     /* it may be read, given back, or a part of it set */
    uint64_t changes; /* the parts that may be set, by their numbers (part_changes.h) */
    const LaterUse *next;
};

/* Of a variable of a function that the statement at that place names; null where nothing is known.
 * All that the function does with its variables has been walked.
 * What the statement's own targets do counts too. */
const LaterUse *later_use(const Symbol *symbol, uint32_t statement);
