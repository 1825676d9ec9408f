// The arena of the trees.
#include "syntax/tree/arena.h"

#include <string.h>

#include "support/allocation.h"

char *ArenaNext;
char *ArenaEnd;
size_t ArenaTaken;

namespace {

// Blocks double up to the largest, so that a small source takes little and a large one few.
constexpr size_t FIRST_BLOCK = 4000;
constexpr size_t LARGEST_BLOCK = 64000;
size_t NextBlock = FIRST_BLOCK;

}  // namespace

void begin_arena() {
    ArenaNext = ArenaEnd = nullptr;
    ArenaTaken = 0;
    NextBlock = FIRST_BLOCK;
}

void *take_from_new_block(size_t size) {
    ArenaTaken += size;
    if (size > NextBlock / 4 || !PartsShareBlocks) return AllocKept(size);
    ArenaNext = static_cast<char *>(AllocKept(NextBlock));
    ArenaEnd = ArenaNext + NextBlock;
    ArenaTaken += NextBlock - size;
    NextBlock = NextBlock * 2 < LARGEST_BLOCK ? NextBlock * 2 : LARGEST_BLOCK;
    return take_bytes(size);
}

char *copy_bytes(const char *text, size_t length) {
    char *copy = static_cast<char *>(take_bytes(length + 1));
    memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

char *keep_bytes(const char *text, size_t length) {
    char *copy = copy_bytes(text, length);
    for (char *nul = copy;
         (nul = static_cast<char *>(memchr(nul, '\0', length - static_cast<size_t>(nul - copy))));)
        *nul = ' ';
    return copy;
}
