// Tracked allocation: system heap blocks listed in a hash table by address.
#include "support/allocation.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "driver/run_end.h"

HashTable *AllocationTable;

namespace {

// Blocks of the same 4 KB of addresses share a key: a small run then touches few buckets, each of
// which has room for 256 blocks from the start, and the buckets of a large run stay short.
constexpr int KEY_SHIFT = 12;

int32_t key_of(const void *block) {
    return static_cast<int32_t>(reinterpret_cast<uintptr_t>(block) >> KEY_SHIFT);
}

int is_same_block(HashValue stored, const void *probe) { return stored == probe; }

void *enter(void *block) {
    if (!block) end_run("memory exhausted");
    if (!HashInsert(AllocationTable, key_of(block), block)) {
        free(block);
        end_run("memory exhausted");
    }
    return block;
}

void remove_entry(void *block) {
    HashRemove(AllocationTable, key_of(block), nullptr, block, is_same_block);
}

}  // namespace

void *Alloc(size_t size) { return enter(malloc(size ? size : 1)); }

void Free(void *block) {
    if (!block) return;
    remove_entry(block);
    free(block);
}

void *Realloc(void *block, size_t size) {
    if (!block) return Alloc(size);
    remove_entry(block);
    void *resized = realloc(block, size ? size : 1);
    if (!resized) free(block);
    return enter(resized);
}

char *StrDupBytes(const char *text, size_t length) {
    char *copy = static_cast<char *>(Alloc(length + 1));
    memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

char *StrDup(const char *text) { return StrDupBytes(text, strlen(text)); }

void FreeAll() {
    HashVisit release = [](HashValue block, void *, void *) {
        free(block);
        return 1;
    };
    HashForEach(AllocationTable, nullptr, nullptr, release);
}
