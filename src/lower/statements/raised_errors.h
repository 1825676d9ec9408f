/* Errors that the translation raises at run time. */
#pragma once

#include "syntax/tree/tree.h"

/* Puts a call of error with the message, one level deeper. place: a NAME in its source. */
void put_raised_error(const Node *place, const char *message);
/* Whether the statement is a call of MATLAB's error or rethrow. */
bool raises_error(const Node *statement);
