/* Whether a variable exists. */
#pragma once

#include "syntax/names/names.h"
#include "translate/expressions.h"

/* exist('x') and exist('x', 'var') of a parameter: whether the caller has given it, or of a
 * variable of the function: whether it has been set. Null for everything else, which is a call;
 * reported where it asks for a variable of which nobody knows. */
mExpr *lower_exist(const Node *name, const Node *arguments);
/* Puts what tells whether the variable has a value: it has one at first as value says. */
void put_presence_variable(Symbol *symbol, const char *value);
/* Puts that variables of a function have no value at first, where exist is asked for them. */
void put_absences(const Scope *scope);
/* Puts that the variable of a target has a value, where exist may ask for it later. */
void put_presence(const Node *target);
