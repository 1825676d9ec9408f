/* Checks of the number of arguments or results: narginchk, nargoutchk, error(nargchk(...)). */
#pragma once

#include "syntax/tree/tree.h"

/* Puts the tests that such a statement's EXPRESSION makes in a function, with the errors that it
 * raises. False when it is no check: nothing is put. */
bool put_argument_check(const Node *expression);
