/* The return of a script. The host's language ends procedures only: what follows a statement that
 * may have returned goes into a branch. After "if c, return, end" that is its else; elsewhere a
 * variable keeps whether a return was met, and loops are left. */
#pragma once

#include "lower/program/context.h"
#include "syntax/tree/tree.h"

/* A RETURN in a script. */
void put_script_return(const Node *node);
/* After a loop with such a return, what leaves the loop around it. */
void put_exit_after_loop();

/* In front of each statement of a list: opens the branch that it belongs into. Answers what the
 * other two get. */
ScriptContext begin_in_rest(OpenRest *rest, const Node *statement);
/* The statement's lines have been made and are about to be put: puts what they need in front. */
void start_returned(const OpenRest *rest, const ScriptContext *before, bool is_given_up);
/* They have been put; the current origin is that of the last one. */
void end_in_rest(OpenRest *rest, const Node *statement, const ScriptContext *before);
/* Closes the branches of a list. */
void close_rest(OpenRest *rest);
