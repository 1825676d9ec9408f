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
 * b begins as the default, and is the given value where that is taken. In
 *
 *     if nargin > 1, y = b; end
 *
 * it gets the value in the branch, and in front of any other statement that reads it first. */
#pragma once

#include "syntax/names/names.h"

/* Looks for the statement of a parameter that may be missing; answers whether there is one. */
bool find_default(const Scope *scope, Symbol *parameter);
/* Whether the statement is one of the function that is being lowered. */
bool has_given_values(const Node *statement);
/* Puts a statement that asks of the given value too; else answers false. */
bool put_asked_default(const Node *statement);
/* In front of the statement: the values that it reads. */
void put_values_before(const Node *statement);
/* Whether parameters take their values in the first branch of the if; puts them into it. */
bool takes_in_branch(const Node *statement);
void put_values_in_branch(const Node *statement);
/* Whether they do so where it is not taken: in an else, or after the end of a branch with which the
 * function ends. */
bool takes_in_else(const Node *statement);
bool are_after_branch(const Node *statement);
/* Puts the else with the values; the values that stand after the branch. */
void put_values_in_else(const Node *statement);
void put_values_after_branch(const Node *statement);
/* The statement has been given up: puts the values all the same. */
void put_untaken_values(const Node *statement);
