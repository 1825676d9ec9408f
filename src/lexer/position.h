/* Where the scanner is. SourceLine, SourcePos, SourceText and PrevLine feed the error text that
 * hosts see; they keep the peculiarities that hosts know (a comment does not move the lines, an
 * inserted comma counts). TokenOffset is exact, for tools that show the place themselves. */
#pragma once

#include <mtranslate.h>

/* Offset in bytes, in the source being read, of the token returned last; at the end of the input
 * the length of the source. */
extern long TokenOffset;
/* Offset of the next character that the scanner takes from the source. */
extern long ScanOffset;

/* The position variables as one value, to go back to after another source has been read. */
struct SourcePosition {
    unsigned int line;
    int column;
    const char *text;
    const char *previous_text;
    long token_offset;
    long scan_offset;
};

/* Start of a run: line 1, column 0, offset 0, no line texts. */
void reset_position();
/* Start of a source: line 1, offset 0. The column and the line texts are those of the source before
 * until a line has ended. */
void begin_position();
SourcePosition save_position();
void restore_position(const SourcePosition *position);

/* A token of length characters begins at the current place. */
inline void advance_position(int length) {
    TokenOffset = ScanOffset;
    ScanOffset += length;
    SourcePos += length;
}
/* Lines ended: the column starts afresh. */
void count_lines(unsigned int lines);
/* A run of line ends was read; text is the whole run and the line after it. */
void start_line(unsigned int lines, const char *text);
/* Number of lines that a run of line-end characters closes; \r\n is one. */
unsigned int lines_in_run(const char *run, int length);
