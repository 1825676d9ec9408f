/* Parameters that surely have been given where they are used, though the function asks how many
 * are: their variables need not ask again. */
#pragma once

#include "syntax/names/names.h"

/* Statements in front of which a function leaves where it has too few arguments,
 *
 *     if nargin < 2, error('...'); end
 *
 * and which need none of them. */
struct GivenCheck {
    const Node *statement; /* the last of them, after which the parameters have their values; or
                              null */
    int32_t least;         /* so many parameters surely have been given then */
};

/* Looks at the statements from first on. */
GivenCheck find_given_check(const Scope *scope, const Node *first);
/* Whether the parameter gets its value after the check only. */
bool is_given_after(const GivenCheck *check, const Scope *scope, const Symbol *parameter);
/* Whether the statement reads the parameter before it does anything else. */
bool is_read_first(const Node *statement, const Symbol *parameter);
/* Whether the function, of which first is the first statement, reads the parameter before it does
 * anything else: where it is missing, that is the same error. */
bool is_read_at_once(const Node *first, const Symbol *parameter);

/* Whether the default of a parameter in the head may be made of it, so that it has its value
 * before.
 */
bool is_in_defaults(const Scope *scope, const Symbol *parameter);
/* Whether the variable is named in the text, by an anonymous function too. */
bool mentions(const Node *node, const Symbol *symbol);
/* Whether the statement is a plain assignment of a variable, of a value that cannot act. */
bool is_plain_assignment(const Node *statement);
