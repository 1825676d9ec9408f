/* Where lines of host text come from, for tools that show source and translation side by side. When
 * nobody observes them there are no records, and all of this does nothing. */
#pragma once

#include <stdint.h>

#include "lower/lines/pieces.h"

enum LineKind : uint8_t {
    STATEMENT_LINES, /* of a statement, with what it needs in front */
    HEAD_LINES,      /* of a part of a statement that holds others: if, elseif, case ... */
    END_LINES,       /* of its end, or of a function's */
    COMMENT_LINES,   /* of a comment, alone or after a statement */
    FUNCTION_LINES,  /* of a function's head, with declarations */
    PRELUDE_LINES,   /* of what parameters need in front of the statements */
    RESULT_LINES,    /* of the return that a function ends with */
    GAP_LINES        /* source that is put as comments */
};

/* A part of a source that has lines of its own. */
struct Origin {
    LineKind kind;
    const Source *source;
    uint32_t begin; /* bytes, from 0 */
    uint32_t end;   /* not included; where nothing stands in the source, begin */
    uint32_t limit; /* end of the statement that it is a part of */
    Origin *also;   /* another one that the same line comes from, or null: the statement after which
                       a comment stands, or that calls the script */
};

/* Of the lines that are being put; null when nobody observes them. */
extern Origin *CurrentOrigin;
/* Of the statement that calls the script whose lines are being put, or null. */
extern Origin *CallingOrigin;

/* Start of a run. */
void begin_origins();
/* From now on lines come from these bytes of the current file. Answers the origin before, for
 * end_origin. */
Origin *begin_origin(LineKind kind, uint32_t begin, uint32_t end);
/* The same of the node's source. */
Origin *begin_origin(LineKind kind, const Node *node);
inline void end_origin(Origin *outer) { CurrentOrigin = outer; }
/* The current origin ends in front of the byte: it is the head of what stands there. */
void end_head(uint32_t after);
/* From now on lines come from the rest of the same statement, from the byte on. */
void begin_rest(uint32_t begin);

/* Tells of count lines that are written, perhaps 0 origins. */
void tell_lines(const Origin *origin, uint32_t count);
