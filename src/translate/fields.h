/* Names with a dot: fields in expressions (operators.h), file names and the like in commands. */
#pragma once

#include "translate/expressions.h"

/* A field name left.right; each half is offered to the host, the right one first. */
mExpr *new_field_name(const char *left, const char *right);
/* The command word first.second, one string. */
mExpr *new_dotstring(const char *first, const char *second);
