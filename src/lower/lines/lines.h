/* Lines of host text that wait to be written. A function is lowered completely before its procedure
 * is written, as its header names what its body needs. */
#pragma once

#include <stdint.h>

#include "translate/text_forms.h"

struct Origin;

/* A line without its indentation and its end; one that holds a procedure has line ends of its own
 * inside. The empty text is an empty line. */
struct Line {
    int32_t level;   /* of indentation */
    int32_t comment; /* level of the # that makes a comment of the line; NO_COMMENT for none */
    const char *text;
    Line *next;
    Origin *origin;  /* null when nobody observes it, or for lines that come from nowhere */
    size_t trailing; /* bytes at the end of the text that are comments after the code */
};
constexpr int32_t NO_COMMENT = -1;

/* A list of lines, at first {nullptr, nullptr}. */
struct Lines {
    Line *first;
    Line *last;
};

/* Puts a line of the current origin after the others; the text is kept by the caller until the run
 * ends. */
void add_line(Lines *lines, int level, const char *text);
/* Puts a copy of the line, without the comments after its code, after the others. */
void add_line_again(Lines *lines, int level, const Line *line);
/* Moves the lines of more after the others, and empties it. */
void append_lines(Lines *lines, Lines *more);
/* Drops the lines after last, one of them; null: all. */
void drop_after(Lines *lines, Line *last);
/* Whether one line is after last, or after null, and it has no comments. */
bool is_bare_after(const Lines *lines, const Line *last);
/* Writes the lines, with their indentation and ends, into the output text, and tells of them
 * (origins.h). */
void write_lines(const Lines *lines);

/* Bytes of the text without blanks at its end. */
size_t length_without_last_blanks(const char *text);
/* Makes comments of lines that are none, with the # at a level; line ends inside their texts begin
 * lines of their own. */
void comment_lines(Lines *lines, int level);

/* The lines, none of which is a comment, as one kept text, with line ends between them but none
 * after the last. */
const char *lines_text(const Lines *lines);
/* The text with what is after its line ends, those in strings left out, deeper by levels. */
const char *indent_inner_lines(const char *text, int levels);
