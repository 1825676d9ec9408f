/* Parameters that get their default value or the given one in one place. Where a function begins
 * with
 *
 *     if nargin < 2, b = 1; end
 *
 * and does not use b before, the statement gets an else, in which b is the value that was given,
 * and the prelude need not ask the same. */
#pragma once

#include "syntax/names/names.h"

/* Looks for the statement of a parameter that may be missing; answers whether there is one. */
bool find_default(const Scope *scope, Symbol *parameter);
/* In the lines of such a statement, after those of its branch: the else, if it has one. */
void put_given_values(const Node *statement);
