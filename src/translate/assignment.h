/* Assignments, to one target or to several. */
#pragma once

#include "translate/expressions.h"

/* Bytes that suffice for an assignment and its NUL. */
size_t assignment_size(const char *target, const char *value);
/* Writes "target := value" and makes the target a known variable if it is an identifier; a value
 * that is an identifier is copied. Several targets come as the concatenation that a matrix literal
 * makes of them: they are written in parentheses and all become known variables. */
void write_assignment(Writer *to, const char *target, const char *value);
