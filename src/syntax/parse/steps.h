/* Octave's ++x and x++ as values. Where a simple statement uses x once, the step is a statement of
 * its own in front of it or after it; elsewhere the order would matter, and it is an error. */
#pragma once

#include "syntax/parse/statements.h"

/* ++ or --, the current token, and the variable after it, which is answered. */
Node *take_step_before();
/* The step, the current token, after a value, which is answered. */
Node *take_step_after(Node *value);
/* Whether the current token is such a step. One at the end of a statement that has only begun is
 * the statement. */
inline bool is_step_after() {
    return Current.kind == TOKEN_STEP ||
           (Current.kind == TOKEN_INCREMENT && Parsing.may_step && !Parsing.may_be_target);
}

/* Forgets the steps of the statement before. */
void begin_steps(bool may_step);
inline bool has_steps() { return Parsing.steps > 0; }
/* The statement so far is one where their order would matter. */
void refuse_steps();
/* Puts the steps of the statement, which has been read, in front of it and after it. Answers the
 * statement, or the step where that is all there is. */
Node *put_steps(Statement *statement, Node *node);

/* x++ is x += 1. The token is the ++. */
Node *new_increment(Node *target, const Token &token);
