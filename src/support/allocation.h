/* Tracked allocation. Every block that a run's own code needs is listed in the AllocationTable
 * from Alloc to Free; what is still listed when the run ends is released in one pass. Builders
 * therefore hand records and texts around freely, free nothing and change no operand.
 *
 * None of these operations answers null: exhausted memory ends the run. */
#pragma once

#include <assert.h>
#include <stddef.h>

#include "support/hash_table.h"

/* Registry of the live blocks of the run: key the narrowed address, value the address. Made with
 * ALLOCATION_BUCKETS buckets. */
extern HashTable *AllocationTable;
constexpr int32_t ALLOCATION_BUCKETS = 5120;

/* A new block of size bytes, contents not cleared. */
void *Alloc(size_t size);
/* Gives a block back; an unlisted one goes to the system heap all the same, null does nothing. */
void Free(void *block);
/* The block with its contents in a new size, possibly moved: every caller stores the result. A
 * null block is a new one. */
[[nodiscard]] void *Realloc(void *block, size_t size);
/* A new block with a copy of the text. */
char *StrDup(const char *text);
/* Releases every listed block and forgets every kept part, at the end of a run. The table keeps its
 * stale entries: the caller destroys it next. */
void FreeAll();

/* Memory for what is kept until the run ends, contents not cleared. Records and small texts are so
 * many that a block for each would cost more time than the rest of the translation: they are parts,
 * first of a region of 1 MB that stays from run to run, then of tracked blocks. */
inline void *AllocKept(size_t size);
/* The contents of a part of size bytes in a larger one; the part is given up. */
[[nodiscard]] void *GrowKept(void *part, size_t size, size_t larger);
/* For a part that nobody uses any more. It is lost, unless parts are blocks of their own. */
void FreeKept(void *part);
/* A kept copy of length bytes of text, and a NUL. */
char *KeepText(const char *text, size_t length);
/* Gives the region back to the system, between two runs. */
void ReleaseRegion();
/* Whether parts share blocks. Without it every part is a block of its own: the address sanitizer,
 * which knows the bounds of blocks only, sees each, and each can be made to fail. */
extern bool PartsShareBlocks;

/* Where the next part is taken from, as far as bytes are free. Without sharing there are never any.
 */
extern char *KeptNext;
extern char *KeptEnd;
/* A part larger than what is free; size is a multiple of the alignment. */
void *AllocKeptElsewhere(size_t size);

inline void *AllocKept(size_t size) {
    assert(size > 0);
    size = (size + alignof(max_align_t) - 1) / alignof(max_align_t) * alignof(max_align_t);
    char *part = KeptNext;
    if (static_cast<size_t>(KeptEnd - part) < size) return AllocKeptElsewhere(size);
    KeptNext = part + size;
    return part;
}

/* A new kept record of type T, not cleared. */
template <typename T>
T *AllocRecord() {
    return static_cast<T *>(AllocKept(sizeof(T)));
}
