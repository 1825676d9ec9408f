/* What the body of a procedure begins with. */
#pragma once

#include "syntax/names/names.h"

/* What stands between the parentheses of the head of a function or anonymous function. */
const char *parameter_list(const Scope *scope);
/* Puts the lines in front of its statements: copies of changed parameters, varargin and varargout,
 * default values of the head. */
void put_prelude(const Scope *scope);
/* The variable of a parameter becomes the value that was given. */
void put_given_value(Symbol *parameter);
/* Puts the default values and the comments of the arguments blocks that the statements from first
 * on begin with; answers the first statement after them. */
const Node *put_argument_blocks(const Node *first);
