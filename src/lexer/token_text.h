/* Values of tokens. */
#pragma once

/* A tracked copy of a text of length characters. A text that occurs again, as names and small
 * numbers do, mostly gets the copy that is there already, so values are not to be changed. */
char *shared_value(const char *text, int length);
/* Forgets the copies, at the start of a run. */
void forget_values();

/* The characters between the outer quotes of a string literal of length bytes, as a tracked text.
 * Doubled quotes stay doubled. A backslash stands for itself and the character after it, and is
 * all that is kept of the two; right before the closing quote it stands alone. */
char *string_value(const char *literal, int length);
