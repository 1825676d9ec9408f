// Room for the tree.
#include "syntax/tree/room.h"

#include <string.h>

#include "support/allocation.h"

char *RoomNext;
char *RoomEnd;
size_t RoomTaken;

namespace {

// Blocks double up to the largest, so that a small source takes little and a large one few.
constexpr size_t FIRST_BLOCK = 4000;
constexpr size_t LARGEST_BLOCK = 64000;
size_t NextBlock = FIRST_BLOCK;

}  // namespace

void begin_room() {
    RoomNext = RoomEnd = nullptr;
    RoomTaken = 0;
    NextBlock = FIRST_BLOCK;
}

void *take_from_new_block(size_t size) {
    RoomTaken += size;
    if (size > NextBlock / 4 || !PartsShareBlocks) return AllocKept(size);
    RoomNext = static_cast<char *>(AllocKept(NextBlock));
    RoomEnd = RoomNext + NextBlock;
    RoomTaken += NextBlock - size;
    NextBlock = NextBlock * 2 < LARGEST_BLOCK ? NextBlock * 2 : LARGEST_BLOCK;
    return take_room(size);
}

char *keep_bytes(const char *text, size_t length) {
    char *copy = static_cast<char *>(take_room(length + 1));
    memcpy(copy, text, length);
    copy[length] = '\0';
    for (char *nul = copy;
         (nul = static_cast<char *>(memchr(nul, '\0', length - static_cast<size_t>(nul - copy))));)
        *nul = ' ';
    return copy;
}
