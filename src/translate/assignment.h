/* Assignments, to one target or to several. */
#pragma once

#include "translate/expressions.h"

/* Writes "target := value" and makes the target a known variable if it is an identifier; a value
 * that is an identifier is copied. Several targets come as the concatenation that a matrix literal
 * makes of them: they are written in parentheses and all become known variables. Answers the place
 * of the NUL; needs the room of both texts and 60 bytes. */
char *write_assignment(char *at, const char *target, const char *value);

/* Writes "target := value", or "target := copy(value)" when the value is an identifier; answers the
 * place of the NUL. Needs the room of both texts and 20 bytes. */
char *write_single_assignment(char *at, const char *target, const char *value);
/* Writes "(a, b)", several targets from their list, and notes nothing; answers the place of the
 * NUL. Needs the room of the texts, 2 bytes for each and 2 more. */
char *write_targets(char *at, const vExpr *targets);
