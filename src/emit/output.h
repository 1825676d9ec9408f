/* Writing into the run's OutputText. */
#pragma once

#include <stddef.h>

#include <initializer_list>

#include "translate/expressions.h"

/* Appends one text or character, or several texts. */
void write_output(const char *text);
void write_character(char character);
/* Appends the bytes from start up to end, none of them NUL. */
void write_output(const char *start, const char *end);
void write_blanks(size_t count);
/* Appends a line: so many blanks, the bytes, none of them NUL, and a line end. */
void write_line(size_t blanks, const char *text, size_t length);
void write_output(std::initializer_list<const char *> texts);
/* Appends four blanks a level; nothing for a level of 0 or less. */
void write_indent(int level);
/* Appends the texts of a list of expressions, separated by ", ", up to the cell end (not
 * included; null for the whole list). */
void write_list(const vExpr *list, const vExpr *end);
