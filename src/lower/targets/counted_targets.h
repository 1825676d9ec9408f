/* Several targets whose number is known at run time only, [c{1:n}] and [varargout{1:nargout}],
 * which get the results of a call: a branch for each number. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether the MULTI_ASSIGN has one such target, and a call as its value. */
bool is_counted(const Node *assignment);
/* Puts the branches. */
void put_counted(const Node *assignment);
