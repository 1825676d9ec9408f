/* Writing host text. */
#pragma once

#include <assert.h>
#include <stddef.h>
#include <string.h>

#include <initializer_list>

/* A text that is being written, in a buffer of the size that its builder has worked out. What does
 * not fit, its NUL included, fails an assertion. */
struct Writer {
    char *at;        /* of the NUL */
    const char *end; /* after the buffer */
};

/* The bytes that are free after the text and its NUL. */
inline size_t free_bytes(const Writer *to) { return static_cast<size_t>(to->end - to->at) - 1; }

/* Put the text, or length bytes of it, or one character after what is written. */
inline void write_text(Writer *to, const char *text) {
    assert(to->at < to->end && strlen(text) <= free_bytes(to));
    to->at = stpcpy(to->at, text);
}
inline void write_bytes(Writer *to, const char *text, size_t length) {
    assert(to->at < to->end && length <= free_bytes(to));
    memcpy(to->at, text, length);
    to->at += length;
    *to->at = '\0';
}
inline void write_character(Writer *to, char character) { write_bytes(to, &character, 1); }
/* The form, with each "%s" replaced by the next operand. */
void write_form(Writer *to, const char *form, std::initializer_list<const char *> operands);
/* The text with a backslash in front of every character that is in escaped. */
void write_escaped(Writer *to, const char *text, const char *escaped);
/* Characters that this writes. */
size_t escaped_length(const char *text, const char *escaped);

/* A writer of a new kept text of at most size bytes, the NUL among them. */
Writer new_text(size_t size);
/* Bytes that suffice for a form with its operands, and a NUL. */
inline size_t form_size(const char *form, std::initializer_list<const char *> operands) {
    size_t size = strlen(form) + 1;
    for (const char *operand : operands) size += strlen(operand);
    return size - operands.size() * strlen("%s");
}
/* A kept text: the form, with each "%s" replaced by the next operand. */
const char *form_text(const char *form, std::initializer_list<const char *> operands);

/* Whether the text begins with the prefix. */
bool has_prefix(const char *text, const char *prefix);
/* Whether the text is a letter followed by letters, digits and underscores. */
bool is_identifier(const char *text);
