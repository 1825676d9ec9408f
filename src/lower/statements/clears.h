/* clear and clearvars: variables begin anew without elements. */
#pragma once

#include "syntax/tree/tree.h"

/* Puts what an EXPRESSION or COMMAND that clears variables makes of them. False when it is another
 * statement, or one that the host has a form for: nothing is put. */
bool put_clear(const Node *statement);
