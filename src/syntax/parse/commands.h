/* Command syntax: hold on. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether the name that is the current token, at the start of a statement, begins a command: by
 * what stands after it. The caller knows that it is no variable. */
bool is_command();
/* The command, up to what ends its statement. */
Node *parse_command();
/* !words: the rest of the line, for the system. The current token is the !. */
Node *parse_system_command();
