/* What becomes of the pieces of a program, told to tools while it is lowered. */
#pragma once

#include <stdint.h>

#include "lower/program/program_files.h"
#include "support/observers.h"

enum PieceEnd : uint8_t {
    CALL_OF_OWN,      /* a function of the same file */
    CALL_OF_FILE,     /* a function of another file, or a script */
    CALL_OF_HOST,     /* the host has answered */
    CALL_OF_LANGUAGE, /* the front end has a form of its own for it */
    CALL_OF_CLASS,    /* only classes have it: the host gets the call as it is */
    CALL_OF_UNKNOWN,  /* none of these: the host gets the call as it is */
    COMMENT_IS_PUT,
    SOURCE_IS_PUT /* a statement is given up: its source is put, with the comments in it */
};

/* Tells of it as described at Observers::piece. */
inline void note_piece(const Node *node, PieceEnd end, const char *target = nullptr) {
    if (Observing.piece && !CurrentFile->is_library)
        Observing.piece(Observing.context, node, end, target);
}
