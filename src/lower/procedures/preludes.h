/* What the body of a procedure begins with. */
#pragma once

#include "lower/procedures/given_parameters.h"
#include "syntax/names/names.h"

/* A function whose prelude is put. */
struct Prelude {
    const Scope *scope;
    const Node *first; /* of its statements */
    GivenCheck check;
};

/* What stands between the parentheses of the head of a function or anonymous function. */
const char *parameter_list(const Scope *scope);
/* first: of the statements, or null. */
Prelude begin_prelude(const Scope *scope, const Node *first);
/* Puts the lines in front of its statements: copies of changed parameters, varargin and varargout,
 * default values of the head. */
void put_prelude(const Prelude *prelude);
/* Puts the parameters that have their values after the check alone. */
void put_checked_parameters(const Prelude *prelude);
/* The variable of a parameter becomes the value that was given. */
void put_given_value(Symbol *parameter);
/* The same where it has been given. */
void put_value_if_given(Symbol *parameter);
/* Puts the default values and the comments of the arguments blocks that the statements from first
 * on begin with; answers the first statement after them. */
const Node *put_argument_blocks(const Node *first);
