/* A source text under translation. Its bytes stay in memory until the run ends: the tree and the
 * messages name places in them. */
#pragma once

#include <stdint.h>

struct Source {
    const char *name;       /* of the file; null for a command */
    const char *text;       /* length bytes and a NUL; may hold NULs */
    uint32_t length;        /* below 2^31 */
    Source *caller;         /* the source that calls this one, or null */
    uint32_t caller_offset; /* where it does */
    int32_t errors;         /* reported so far */
    uint32_t *line_starts;  /* offsets; null until a place is asked for */
    uint32_t line_count;
};

/* A position for people: line and column (in bytes) from 1. */
struct Position {
    uint32_t line;
    uint32_t column;
};

/* A kept record of a text that the caller keeps until the run ends; name may be null. */
Source *new_source(const char *name, const char *text, uint32_t length);
/* Where the line at a byte ends: the first \n or \r from there on, or the end of the text. */
const char *line_end(const char *at, const char *end);
/* Where the byte stands. An offset after the end counts as the end. */
Position position_of(Source *source, uint32_t offset);
/* The bytes of a line, from 1, without its line end. */
const char *line_text(Source *source, uint32_t line, uint32_t *length);
