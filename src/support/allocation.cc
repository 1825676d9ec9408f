// Tracked allocation: system heap blocks listed in a hash table by address.
#include "support/allocation.h"

#include <assert.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

#include "run/run_end.h"
#include "support/budget.h"

HashTable *AllocationTable;

#if defined(__SANITIZE_ADDRESS__)
bool PartsShareBlocks = false;
#elif defined(__has_feature)
bool PartsShareBlocks = !__has_feature(address_sanitizer);
#else
bool PartsShareBlocks = true;
#endif

char *KeptNext;
char *KeptEnd;

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

constexpr size_t LARGEST_BLOCK = INT32_MAX;

size_t checked(size_t size, void *other) {
    if (size > LARGEST_BLOCK) end_run(TEXT_TOO_LONG);
    check_budget(size, other);
    return size ? size : 1;
}

void *enter(void *block) {
    if (!block) end_run(OUT_OF_MEMORY);
    if (!HashInsert(AllocationTable, key_of(block), block)) {
        free(block);
        end_run(OUT_OF_MEMORY);
    }
    count_block(block);
    return block;
}

void remove_entry(void *block) {
    discount_block(block);
    HashRemoveRecent(AllocationTable, key_of(block), nullptr, block, is_same_block);
}

// A run mostly needs no more than the region, touches the pages of the run before again and has
// nothing to give back.
constexpr size_t REGION_SIZE = 1 << 20;
char *Region;
bool HasRegion;  // the run has taken it

// A run that needs more is a large one. A part of more than a quarter of a block gets a block of
// its own, so that little is lost at a block's end.
constexpr size_t KEPT_BLOCK = 64000;
constexpr size_t LARGEST_PART = KEPT_BLOCK / 4;

size_t kept_free() { return static_cast<size_t>(KeptEnd - KeptNext); }

bool take_region() {
    if (HasRegion) return false;
    HasRegion = true;
    if (!Region) {
        void *mapped =
            mmap(nullptr, REGION_SIZE, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED) return false;
        Region = static_cast<char *>(mapped);
    }
    KeptNext = Region;
    KeptEnd = Region + REGION_SIZE;
    return true;
}

void take_block() {
    KeptNext = static_cast<char *>(Alloc(KEPT_BLOCK));
    KeptEnd = KeptNext + KEPT_BLOCK;
}

}  // namespace

void *Alloc(size_t size) { return enter(malloc(checked(size, nullptr))); }

void Free(void *block) {
    if (!block) return;
    remove_entry(block);
    free(block);
}

void *Realloc(void *block, size_t size) {
    if (!block) return Alloc(size);
    size = checked(size, block);
    remove_entry(block);
    void *resized = realloc(block, size);
    if (!resized) free(block);
    return enter(resized);
}

void *AllocKeptElsewhere(size_t size) {
    assert(kept_free() < size);
    if (!PartsShareBlocks || size > REGION_SIZE) return Alloc(size);
    while (kept_free() < size) {
        if (take_region()) continue;
        if (size > LARGEST_PART) return Alloc(size);
        take_block();
    }
    return AllocKept(size);
}

void *GrowKept(void *part, size_t size, size_t larger) {
    void *grown = memcpy(AllocKept(larger), part, size);
    FreeKept(part);
    return grown;
}

void FreeKept(void *part) {
    if (!PartsShareBlocks) Free(part);
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
    KeptNext = KeptEnd = nullptr;
    HasRegion = false;
}

void ReleaseRegion() {
    if (Region) munmap(Region, REGION_SIZE);
    Region = nullptr;
}
