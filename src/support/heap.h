/* Plain heap blocks: the storage of hash tables, scanner buffers, parser stacks and the copy of a
 * command. They are not in the registry of tracked blocks (the registry itself lives in them) but
 * on a chain of their own, so that whatever a run leaves behind can be released at once. */
#pragma once

#include <stddef.h>

/* A new block of size bytes, contents not cleared; null when the system heap is exhausted. */
void *HeapAlloc(size_t size);
/* The block with its contents in a new size, possibly moved: every caller stores the result. A
 * null block is a new one. Null, with the old block untouched, when the heap is exhausted. */
[[nodiscard]] void *HeapResize(void *block, size_t size);
/* Releases one block, or nothing for null. */
void HeapFree(void *block);
/* Releases every block that is still on the chain. */
void HeapReleaseAll();
