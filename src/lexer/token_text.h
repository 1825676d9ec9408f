/* Values of tokens. */
#pragma once

/* The characters between the outer quotes of a string literal of length bytes, as a tracked text.
 * Doubled quotes stay doubled. A backslash stands for itself and the character behind it, and is
 * all that is kept of the two; right before the closing quote it stands alone. */
char *string_value(const char *literal, int length);
