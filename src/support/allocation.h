/* Tracked allocation. Every block that a run's own code needs is listed in the AllocationTable
 * from Alloc to Free; what is still listed when the run ends is released in one pass. Builders
 * therefore hand records and texts around freely, free nothing and change no operand.
 *
 * None of these operations answers null: exhausted memory ends the run. */
#pragma once

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
/* Releases every listed block, at the end of a run. The table keeps its stale entries: the caller
 * destroys it next. */
void FreeAll();

/* A part of a tracked block, contents not cleared, for what is neither given back nor resized
 * before the run ends. Records and small texts are so many that a block for each would cost more
 * time than the rest of the translation. */
void *AllocKept(size_t size);
/* A kept copy of length bytes of text, and a NUL. */
char *KeepText(const char *text, size_t length);
/* A new kept record of type T, not cleared. */
template <typename T>
T *AllocRecord() {
    return static_cast<T *>(AllocKept(sizeof(T)));
}
