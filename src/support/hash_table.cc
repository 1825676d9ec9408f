// The core of the hash table: buckets of growable entry arrays, first match wins.
#include "support/hash_table.h"

#include <assert.h>
#include <string.h>

#include <bit>

#include "support/allocation.h"
#include "support/heap.h"

namespace {

// A bucket's capacity at its first insertion; it doubles from there. Most buckets hold an entry or
// two, so memory follows the entries in steps of GROWTH_FACTOR.
constexpr int32_t FIRST_CAPACITY = 256;
constexpr int32_t FIRST_RESERVED = 4;
constexpr int32_t GROWTH_FACTOR = 4;
// Bytes for buckets and key copies in a table's own block: those of a dozen names.
constexpr size_t OWN_STORAGE = 2000;

size_t index_of(const HashTable *table, int32_t key) {
    assert(table->bucket_count > 0);
    uint32_t magnitude = key < 0 ? 0u - static_cast<uint32_t>(key) : static_cast<uint32_t>(key);
#ifdef __SIZEOF_INT128__
    // magnitude % bucket_count: the fraction of the quotient, times the count
    uint64_t fraction = table->reciprocal * magnitude;
    uint64_t count = static_cast<uint32_t>(table->bucket_count);
    return static_cast<size_t>(static_cast<unsigned __int128>(fraction) * count >> 64);
#else
    return magnitude % static_cast<uint32_t>(table->bucket_count);
#endif
}

constexpr size_t WORD_BITS = 64;

bool is_used(const HashTable *table, size_t index) {
    return table->used[index / WORD_BITS] >> index % WORD_BITS & 1;
}

// Null for a bucket without entries so far.
HashBucket *bucket_of(const HashTable *table, int32_t key) {
    size_t index = index_of(table, key);
    return is_used(table, index) ? table->buckets[index] : nullptr;
}

// The bucket, or a new one for null, with space for more. Null when the heap is exhausted.
HashBucket *grow(HashTable *table, HashBucket *bucket) {
    int32_t count = bucket ? bucket->count : 0;
    int32_t capacity = bucket ? bucket->capacity : FIRST_CAPACITY;
    int32_t reserved = bucket ? bucket->reserved * GROWTH_FACTOR : FIRST_RESERVED;
    if (count == capacity) capacity *= 2;
    if (reserved > capacity) reserved = capacity;
    size_t size = sizeof(HashBucket) + static_cast<size_t>(reserved) * sizeof(HashEntry);
    HashBucket *grown = static_cast<HashBucket *>(HashAlloc(table, size));
    if (!grown) return nullptr;
    *grown = {reinterpret_cast<HashEntry *>(grown + 1), capacity, count, reserved};
    if (bucket)
        memcpy(grown->entries, bucket->entries, static_cast<size_t>(count) * sizeof(HashEntry));
    HashFree(table, bucket);
    return grown;
}

HashBucket *bucket_with_space(HashTable *table, size_t index) {
    HashBucket *bucket = is_used(table, index) ? table->buckets[index] : nullptr;
    if (bucket && bucket->count < bucket->reserved) return bucket;
    bucket = grow(table, bucket);
    if (!bucket) return nullptr;
    table->buckets[index] = bucket;
    table->used[index / WORD_BITS] |= uint64_t(1) << index % WORD_BITS;
    return bucket;
}

size_t words_of(int32_t bucket_count) {
    return bucket_count > 0 ? (static_cast<size_t>(bucket_count) + WORD_BITS - 1) / WORD_BITS : 0;
}

HashEntry *find(const HashBucket *bucket, int32_t key, const void *probe, HashCompare compare) {
    for (int32_t i = 0; bucket && i < bucket->count; i++) {
        HashEntry *entry = &bucket->entries[i];
        if (entry->key == key && compare(entry->value, probe)) return entry;
    }
    return nullptr;
}

HashEntry *find_last(const HashBucket *bucket, int32_t key, const void *probe,
                     HashCompare compare) {
    for (int32_t i = bucket ? bucket->count - 1 : -1; i >= 0; i--) {
        HashEntry *entry = &bucket->entries[i];
        if (entry->key == key && compare(entry->value, probe)) return entry;
    }
    return nullptr;
}

}  // namespace

void *HashAlloc(HashTable *table, size_t size) {
    size = (size + alignof(HashEntry) - 1) / alignof(HashEntry) * alignof(HashEntry);
    if (size > static_cast<size_t>(table->end - table->next)) return HeapAlloc(size);
    table->next += size;
    return table->next - size;
}

void HashFree(const HashTable *table, void *storage) {
    const char *at = static_cast<const char *>(storage);
    bool is_own = at > reinterpret_cast<const char *>(table) && at < table->end;
    if (!is_own) HeapFree(storage);
}

// The table's arrays lie after it in one block.
HashTable *HashCreate(int32_t bucket_count) {
    size_t count = bucket_count > 0 ? static_cast<size_t>(bucket_count) : 0;
    size_t bits = words_of(bucket_count) * sizeof(uint64_t);
    size_t own = PartsShareBlocks ? OWN_STORAGE : 0;
    size_t size = sizeof(HashTable) + bits + count * sizeof(void *) + own;
    void *block = HeapAlloc(size);
    if (!block) return nullptr;
    HashTable *table = static_cast<HashTable *>(block);
    table->used = reinterpret_cast<uint64_t *>(table + 1);
    table->buckets = reinterpret_cast<HashBucket **>(table->used + words_of(bucket_count));
    table->next = reinterpret_cast<char *>(table->buckets + count);
    table->end = static_cast<char *>(block) + size;
    table->bucket_count = bucket_count;
    table->reciprocal = count > 0 ? UINT64_MAX / count + 1 : 0;
    memset(table->used, 0, bits);
    return table;
}

int32_t HashNextUsed(const HashTable *table, int32_t index) {
    size_t words = words_of(table->bucket_count);
    size_t at = static_cast<size_t>(index) / WORD_BITS;
    if (at >= words) return -1;
    uint64_t word = table->used[at] & ~uint64_t(0) << static_cast<size_t>(index) % WORD_BITS;
    while (word == 0) {
        if (++at == words) return -1;
        word = table->used[at];
    }
    return static_cast<int32_t>(at * WORD_BITS) + std::countr_zero(word);
}

int HashInsert(HashTable *table, int32_t key, HashValue value) {
    HashBucket *bucket = bucket_with_space(table, index_of(table, key));
    if (!bucket) return 0;
    bucket->entries[bucket->count++] = {key, value};
    return 1;
}

int HashLookup(const HashTable *table, int32_t key, HashValue *value, const void *probe,
               HashCompare compare) {
    HashEntry *entry = find(bucket_of(table, key), key, probe, compare);
    if (!entry) return 0;
    *value = entry->value;
    return 1;
}

int HashUpdate(HashTable *table, int32_t key, HashValue new_value, const void *probe,
               HashCompare compare, HashUpdateFunction update) {
    HashEntry *entry = find(bucket_of(table, key), key, probe, compare);
    if (!entry) return 0;
    update(&entry->value, new_value);
    return 1;
}

static int remove_entry(HashBucket *bucket, HashEntry *entry, HashValue *value) {
    if (!entry) return 0;
    if (value) *value = entry->value;
    *entry = bucket->entries[--bucket->count];
    return 1;
}

int HashRemove(HashTable *table, int32_t key, HashValue *value, const void *probe,
               HashCompare compare) {
    HashBucket *bucket = bucket_of(table, key);
    return remove_entry(bucket, find(bucket, key, probe, compare), value);
}

int HashRemoveRecent(HashTable *table, int32_t key, HashValue *value, const void *probe,
                     HashCompare compare) {
    HashBucket *bucket = bucket_of(table, key);
    return remove_entry(bucket, find_last(bucket, key, probe, compare), value);
}

int HashForEachPair(const HashTable *table, void *datum, HashPairVisit visit) {
    for (int32_t b = -1; (b = HashNextUsed(table, b + 1)) >= 0;) {
        const HashBucket *bucket = table->buckets[b];
        for (int32_t i = 0; i < bucket->count; i++) {
            if (!visit(bucket->entries[i].key, bucket->entries[i].value, datum)) return 0;
        }
    }
    return 1;
}

int HashForEach(const HashTable *table, void *datum_a, void *datum_b, HashVisit visit) {
    for (int32_t b = -1; (b = HashNextUsed(table, b + 1)) >= 0;) {
        const HashBucket *bucket = table->buckets[b];
        for (int32_t i = 0; i < bucket->count; i++) {
            if (!visit(bucket->entries[i].value, datum_a, datum_b)) return 0;
        }
    }
    return 1;
}

HashTable *HashCopy(const HashTable *table) {
    HashTable *copy = HashCreate(table->bucket_count);
    if (!copy) return nullptr;
    HashPairVisit insert = [](int32_t key, HashValue value, void *datum) {
        return HashInsert(static_cast<HashTable *>(datum), key, value);
    };
    if (HashForEachPair(table, copy, insert)) return copy;
    HashDestroy(copy);
    return nullptr;
}

void HashDestroy(HashTable *table) {
    if (!table) return;
    for (int32_t b = -1; (b = HashNextUsed(table, b + 1)) >= 0;) HashFree(table, table->buckets[b]);
    HeapFree(table);
}
