/* LongString: a growing text whose handle is the pointer to its NUL-terminated characters, so
 * that it can be passed wherever a text is expected. The bookkeeping is reached through a pointer
 * stored in front of the characters.
 *
 * Appending may move the characters: every caller stores the result over its old handle, and a
 * handle held anywhere else is stale. Both blocks of a text are tracked; exhausted memory, and a
 * text of 2 GB or more, end the run. */
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef char *LongString;

/* The empty text, with space for so many bytes, its NUL among them. */
LongString NewLongString(int32_t capacity = 256);
[[nodiscard]] LongString AppendToString(LongString handle, char character);
[[nodiscard]] LongString AppendStringToString(LongString handle, const char *text);
[[nodiscard]] LongString AppendBytesToString(LongString handle, const char *bytes, size_t length);
/* A whole line: blanks, the bytes and a line end. */
[[nodiscard]] LongString AppendLineToString(LongString handle, size_t blanks, const char *bytes,
                                            size_t length);
/* Number of characters, the terminator not counted. */
int32_t LengthString(LongString handle);
/* Empties the text and keeps its storage. */
void ClearLongString(LongString handle);
/* Releases the text before the run's end. */
void DisposeString(LongString handle);
