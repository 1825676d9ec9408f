// Sorting the buckets of a hash table: a quicksort with the median of three as the pivot.
#include "support/hash_table.h"

namespace {

void swap_entries(HashEntry *a, HashEntry *b) {
    HashEntry held = *a;
    *a = *b;
    *b = held;
}

void order(HashEntry *a, HashEntry *b) {
    if (a->key > b->key) swap_entries(a, b);
}

// Puts the pivot, which stands at lo + 1, between the smaller entries of (lo + 1, hi) and the
// rest; answers its place.
int32_t partition(HashEntry *entries, int32_t lo, int32_t hi) {
    int32_t place = lo + 1;
    int32_t pivot = entries[place].key;
    for (int32_t i = lo + 2; i < hi; i++) {
        if (entries[i].key < pivot) swap_entries(&entries[++place], &entries[i]);
    }
    swap_entries(&entries[lo + 1], &entries[place]);
    return place;
}

void sort_range(HashEntry *entries, int32_t lo, int32_t hi) {
    if (lo >= hi) return;
    int32_t mid = lo + (hi - lo) / 2;
    order(&entries[lo], &entries[mid]);
    order(&entries[mid], &entries[hi]);
    order(&entries[lo], &entries[mid]);
    if (hi - lo > 2) {
        swap_entries(&entries[mid], &entries[lo + 1]);
        int32_t place = partition(entries, lo, hi);
        sort_range(entries, lo, place - 1);
        sort_range(entries, place + 1, hi);
    }
}

}  // namespace

void HashSort(HashTable *table) {
    for (int32_t b = -1; (b = HashNextUsed(table, b + 1)) >= 0;) {
        HashBucket *bucket = table->buckets[b];
        sort_range(bucket->entries, 0, bucket->count - 1);
    }
}
