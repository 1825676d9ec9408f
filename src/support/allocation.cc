// Tracked allocation: system heap blocks listed in a hash table by address.
#include "support/allocation.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "run/run_end.h"

HashTable *AllocationTable;

namespace {

// Blocks of the same region of addresses share a bucket: a small run touches few buckets, and the
// buckets of a large run stay short. Within a bucket the keys differ by the place in the region, at
// the alignment of heap blocks.
constexpr int REGION_SHIFT = 15;
constexpr int ALIGNMENT_SHIFT = 4;
constexpr uintptr_t PLACES = uintptr_t(1) << (REGION_SHIFT - ALIGNMENT_SHIFT);
static_assert(PLACES < INT32_MAX / ALLOCATION_BUCKETS, "keys are positive");

int32_t key_of(const void *block) {
    uintptr_t address = reinterpret_cast<uintptr_t>(block);
    uintptr_t bucket = (address >> REGION_SHIFT) % ALLOCATION_BUCKETS;
    uintptr_t place = (address >> ALIGNMENT_SHIFT) % PLACES;
    return static_cast<int32_t>(place * ALLOCATION_BUCKETS + bucket);
}

int is_same_block(HashValue stored, const void *probe) { return stored == probe; }

// No text of a run comes near this size, except by a source that doubles its texts on purpose.
constexpr size_t LARGEST_BLOCK = INT32_MAX;

size_t checked(size_t size) {
    if (size > LARGEST_BLOCK) end_run("memory exhausted");
    return size ? size : 1;
}

void *enter(void *block) {
    if (!block) end_run("memory exhausted");
    if (!HashInsert(AllocationTable, key_of(block), block)) {
        free(block);
        end_run("memory exhausted");
    }
    return block;
}

void remove_entry(void *block) {
    HashRemoveRecent(AllocationTable, key_of(block), nullptr, block, is_same_block);
}

// The block that kept parts are taken from. A part of more than a quarter of a block gets a block
// of its own, so that little is lost at a block's end.
constexpr size_t KEPT_BLOCK = 4000;
constexpr size_t LARGEST_PART = KEPT_BLOCK / 4;
char *KeptNext;
size_t KeptRoom;

// The address sanitizer sees the bounds of blocks only: under it every part is a block.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool SHARES_BLOCKS = false;
#elif defined(__has_feature)
constexpr bool SHARES_BLOCKS = !__has_feature(address_sanitizer);
#else
constexpr bool SHARES_BLOCKS = true;
#endif

}  // namespace

void *Alloc(size_t size) { return enter(malloc(checked(size))); }

void Free(void *block) {
    if (!block) return;
    remove_entry(block);
    free(block);
}

void *Realloc(void *block, size_t size) {
    if (!block) return Alloc(size);
    size = checked(size);
    remove_entry(block);
    void *resized = realloc(block, size);
    if (!resized) free(block);
    return enter(resized);
}

void *AllocKept(size_t size) {
    if (!SHARES_BLOCKS || size > LARGEST_PART) return Alloc(size);
    size = (size + alignof(max_align_t) - 1) / alignof(max_align_t) * alignof(max_align_t);
    if (KeptRoom < size) {
        KeptNext = static_cast<char *>(Alloc(KEPT_BLOCK));
        KeptRoom = KEPT_BLOCK;
    }
    void *part = KeptNext;
    KeptNext += size;
    KeptRoom -= size;
    return part;
}

char *KeepText(const char *text, size_t length) {
    char *copy = static_cast<char *>(AllocKept(length + 1));
    memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

char *StrDup(const char *text) {
    size_t size = strlen(text) + 1;
    return static_cast<char *>(memcpy(Alloc(size), text, size));
}

void FreeAll() {
    HashVisit release = [](HashValue block, void *, void *) {
        free(block);
        return 1;
    };
    HashForEach(AllocationTable, nullptr, nullptr, release);
    KeptRoom = 0;
}
