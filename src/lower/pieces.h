/* What becomes of the pieces of a program, told to tools while it is lowered. */
#pragma once

#include <stdint.h>

#include "lower/program_files.h"

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

/* Told of a call's NAME or HANDLE, of a COMMENT or of a statement in CurrentFile, unless the front
 * end has brought that along; perhaps several times, the last of which counts. target: the path of
 * the file that holds what is called, null where the run has none. It must neither end the run nor
 * throw. */
typedef void (*PieceListener)(const Node *node, PieceEnd end, const char *target);
/* Null by default; belongs to who set it, and stays from run to run. */
extern PieceListener OnPiece;

inline void note_piece(const Node *node, PieceEnd end, const char *target = nullptr) {
    if (OnPiece && !CurrentFile->is_library) OnPiece(node, end, target);
}
