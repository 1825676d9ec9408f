/* Writing statements as host code. */
#pragma once

#include "emit/statements.h"

/* Writes a statement list, null for none, with its comments, each statement indented to level. A
 * script stands at level 0, a procedure's body at level 1. A list can be written once. */
void display_statement(mStat *first, int level);
/* Appends the host's test that every element of a condition's value is nonzero. The form carries
 * its package name in both modes and sets no flag. */
void write_condition(const char *condition);
/* Writes the text, a blank and a line end to standard output, for diagnosis in a debugger; 1. */
int showString(const char *text);
