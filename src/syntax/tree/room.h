/* Room for the tree: nodes and texts lie side by side in tracked blocks, which go when the run
 * ends. Exhausted memory ends the run. */
#pragma once

#include <stddef.h>
#include <stdint.h>

/* What is free of the block that room is taken from. */
extern char *RoomNext;
extern char *RoomEnd;
/* Bytes of blocks taken since the start of the run. */
extern size_t RoomTaken;

/* Forgets the blocks of the run before, at the start of a run. */
void begin_room();
/* Room for size bytes in a new block. */
void *take_from_new_block(size_t size);
/* Room for size bytes, aligned for nodes, not cleared. */
inline void *take_room(size_t size) {
    size = (size + alignof(void *) - 1) & ~(alignof(void *) - 1);
    if (static_cast<size_t>(RoomEnd - RoomNext) < size) return take_from_new_block(size);
    void *room = RoomNext;
    RoomNext += size;
    return room;
}
/* A copy of length bytes of text, and a NUL. A NUL among them becomes a blank. */
char *keep_bytes(const char *text, size_t length);
