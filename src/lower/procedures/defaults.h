/* Parameters that get their default value or the given one in one place. Where a function begins
 * with
 *
 *     if nargin < 2, b = 1; end
 *
 * and does not use b before, the statement gets an else, in which b is the value that was given,
 * and the prelude need not ask the same. Where something is asked of the given value too,
 *
 *     if nargin < 2 || isempty(b), b = 1; end
 *
 * b begins as the default, and is the given value where that is taken. */
#pragma once

#include "syntax/names/names.h"

/* Looks for the statement of a parameter that may be missing; answers whether there is one. */
bool find_default(const Scope *scope, Symbol *parameter);
/* Whether the statement is one of the function that is being lowered. */
bool has_given_values(const Node *statement);
/* Puts a statement that asks of the given value too; else answers false. */
bool put_asked_default(const Node *statement);
/* In the lines of such a statement, after those of its branch: the else, if it has one. */
void put_given_values(const Node *statement);
