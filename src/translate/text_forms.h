/* Writing host text into a buffer that the caller has sized. */
#pragma once

#include <stddef.h>

#include <initializer_list>

/* Writes the text with its NUL; answers the place of the NUL. */
char *write_text(char *at, const char *text);
/* Writes the form with each "%s" replaced by the next operand, and a NUL; answers its place. */
char *write_form(char *at, const char *form, std::initializer_list<const char *> operands);
/* Writes the text with every backslash doubled, and a NUL; answers its place. */
char *write_escaped(char *at, const char *text);
/* Whether the text begins with the prefix. */
bool has_prefix(const char *text, const char *prefix);
/* Whether the text is a letter followed by letters, digits and underscores. */
bool is_identifier(const char *text);
