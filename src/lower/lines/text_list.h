/* Lists of names, for heads, declarations and returns. */
#pragma once

struct TextCell {
    const char *text;
    TextCell *next;
};

/* At first {}. */
struct TextList {
    TextCell *first;
    TextCell *last;
};

/* Puts a text after the others; it is kept by the caller until the run ends. */
void append_text(TextList *list, const char *text);
/* A kept text: the texts with a separator between them. */
const char *separated_texts(const TextList *list, const char *separator);
/* A kept text: the texts separated by ", ", up to the cell end (not included; null for all). */
const char *join_texts(const TextList *list, const TextCell *end = nullptr);
