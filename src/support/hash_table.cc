// The core of the hash table: buckets of growable entry arrays, first match wins.
#include "support/hash_table.h"

#include <assert.h>

#include "support/heap.h"

namespace {

// A bucket gets room for this many entries at its first insertion and doubles from there.
constexpr int32_t FIRST_CAPACITY = 256;

HashBucket **bucket_of(const HashTable *table, int32_t key) {
    assert(table->bucket_count > 0);
    uint32_t magnitude = key < 0 ? 0u - static_cast<uint32_t>(key) : static_cast<uint32_t>(key);
    // magnitude % bucket_count: the fraction of the quotient, times the count
    uint64_t fraction = table->reciprocal * magnitude;
    uint64_t count = static_cast<uint32_t>(table->bucket_count);
    return &table->buckets[static_cast<unsigned __int128>(fraction) * count >> 64];
}

// Gives a full bucket, or one that is not there yet, room for more. False when the heap is
// exhausted.
bool grow(HashBucket **slot) {
    HashBucket *bucket = *slot;
    int32_t capacity = bucket ? bucket->capacity * 2 : FIRST_CAPACITY;
    int32_t count = bucket ? bucket->count : 0;
    size_t size = sizeof(HashBucket) + static_cast<size_t>(capacity) * sizeof(HashEntry);
    bucket = static_cast<HashBucket *>(HeapResize(bucket, size));
    if (!bucket) return false;
    *bucket = {reinterpret_cast<HashEntry *>(bucket + 1), capacity, count};
    *slot = bucket;
    return true;
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

HashTable *HashCreate(int32_t bucket_count) {
    HashTable *table = static_cast<HashTable *>(HeapAlloc(sizeof(HashTable)));
    if (!table) return nullptr;
    size_t used = bucket_count > 0 ? static_cast<size_t>(bucket_count) : 0;
    table->buckets = static_cast<HashBucket **>(HeapAllocCleared(used * sizeof(void *)));
    table->bucket_count = bucket_count;
    table->reciprocal = used > 0 ? UINT64_MAX / used + 1 : 0;
    if (table->buckets) return table;
    HeapFree(table);
    return nullptr;
}

int HashInsert(HashTable *table, int32_t key, HashValue value) {
    HashBucket **slot = bucket_of(table, key);
    bool is_full = !*slot || (*slot)->count == (*slot)->capacity;
    if (is_full && !grow(slot)) return 0;
    HashBucket *bucket = *slot;
    bucket->entries[bucket->count++] = {key, value};
    return 1;
}

int HashLookup(const HashTable *table, int32_t key, HashValue *value, const void *probe,
               HashCompare compare) {
    HashEntry *entry = find(*bucket_of(table, key), key, probe, compare);
    if (!entry) return 0;
    *value = entry->value;
    return 1;
}

int HashUpdate(HashTable *table, int32_t key, HashValue new_value, const void *probe,
               HashCompare compare, HashUpdateFunction update) {
    HashEntry *entry = find(*bucket_of(table, key), key, probe, compare);
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
    HashBucket *bucket = *bucket_of(table, key);
    return remove_entry(bucket, find(bucket, key, probe, compare), value);
}

int HashRemoveRecent(HashTable *table, int32_t key, HashValue *value, const void *probe,
                     HashCompare compare) {
    HashBucket *bucket = *bucket_of(table, key);
    return remove_entry(bucket, find_last(bucket, key, probe, compare), value);
}

int HashForEachPair(const HashTable *table, void *datum, HashPairVisit visit) {
    for (int32_t b = 0; b < table->bucket_count; b++) {
        const HashBucket *bucket = table->buckets[b];
        for (int32_t i = 0; bucket && i < bucket->count; i++) {
            if (!visit(bucket->entries[i].key, bucket->entries[i].value, datum)) return 0;
        }
    }
    return 1;
}

int HashForEach(const HashTable *table, void *datum_a, void *datum_b, HashVisit visit) {
    for (int32_t b = 0; b < table->bucket_count; b++) {
        const HashBucket *bucket = table->buckets[b];
        for (int32_t i = 0; bucket && i < bucket->count; i++) {
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
    for (int32_t b = 0; b < table->bucket_count; b++) HeapFree(table->buckets[b]);
    HeapFree(table->buckets);
    HeapFree(table);
}
