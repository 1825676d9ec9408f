/* Assignments, to one target or to several. */
#pragma once

/* Writes "target := value" and makes the target a known variable if it is an identifier; a value
 * that is an identifier is copied. Several targets come as the concatenation that a matrix literal
 * makes of them: they are written in parentheses and all become known variables. Answers the place
 * of the NUL; needs the room of both texts and 60 bytes. */
char *write_assignment(char *at, const char *target, const char *value);
