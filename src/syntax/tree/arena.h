/* The arena of the trees: nodes and texts lie side by side in tracked blocks, which go when the run
 * ends. Exhausted memory ends the run. */
#pragma once

#include <stddef.h>
#include <stdint.h>

/* What is free of the block that bytes are taken from. */
extern char *ArenaNext;
extern char *ArenaEnd;
/* Bytes of blocks taken since the start of the run. */
extern size_t ArenaTaken;

/* Forgets the blocks of the run before, at the start of a run. */
void begin_arena();
/* Size bytes of a new block. */
void *take_from_new_block(size_t size);
/* Size bytes, aligned for nodes, not cleared. */
inline void *take_bytes(size_t size) {
    size = (size + alignof(void *) - 1) & ~(alignof(void *) - 1);
    char *bytes = ArenaNext;
    if (static_cast<size_t>(ArenaEnd - bytes) < size) return take_from_new_block(size);
    ArenaNext = bytes + size;
    return bytes;
}
/* A copy of length bytes of text, among them no NUL, and a NUL. */
char *copy_bytes(const char *text, size_t length);
/* The same where there may be others, which become blanks. */
char *keep_bytes(const char *text, size_t length);
