/* Functions whose names are words of the host: and, or, not. The host's operators stand for them.
 */
#pragma once

#include "translate/expressions.h"

/* A call of such a function as operators; null for any other, and for a wrong number of arguments.
 */
mExpr *new_word_call(const char *name, const vExpr *arguments);
/* Such a function as a value; null for any other. */
const char *word_function(const char *name);
