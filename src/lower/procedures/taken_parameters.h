/* Parameters whose first use is to be replaced. In
 *
 *     x = x(:);
 *
 * the value is made from what has been given, so the variable x needs no value before. */
#pragma once

#include "syntax/names/names.h"

/* Looks for the statement that replaces a parameter which has been given, whose variable would
 * hold what the caller has, not a copy. Answers whether there is one. */
bool find_taking(const Scope *scope, Symbol *parameter);

/* A variable that is read under another name. */
struct TakenName {
    Symbol *symbol;
    const char *written; /* its own name */
    TakenName *next;
};

/* While the value of the assignment is lowered, the parameters that it replaces have the names that
 * stand in the procedure's head. Answers what the end needs. */
TakenName *begin_taking(const Node *assignment);
void end_taking(const TakenName *taken);
/* The assignment has been given up: puts its parameters' values all the same. */
void put_untaken(const Node *statement);
