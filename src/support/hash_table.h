/* HashTable: a chained table over 32-bit keys that the caller has hashed already. It serves as the
 * registry of tracked blocks (key: the narrowed address) and, below the StringHash operations, as
 * the name sets of a run.
 *
 * Keys may occur more than once; look-ups, updates and removals act on the first match in the
 * order of the bucket. Values belong to the caller. The table's storage comes from HeapAlloc. */
#pragma once

#include <stddef.h>
#include <stdint.h>

/* One pointer-sized word of the caller's. */
typedef void *HashValue;

struct HashEntry {
    int32_t key;
    HashValue value;
};

struct HashBucket {
    HashEntry *entries; /* growable array, after the record in the same block */
    int32_t capacity;   /* entries that the array can hold: 256, then doubled */
    int32_t count;      /* entries in use */
    int32_t reserved;   /* entries that there is memory for as yet */
};

/* Making, visiting and releasing a table costs what it holds, not how many buckets it has: an array
 * of bits tells which buckets have been inserted into, and only those are looked at. The first
 * buckets and key copies lie after the table in its own block. */
struct HashTable {
    HashBucket **buckets; /* not set where a bucket has no bit */
    uint64_t *used;       /* bit b % 64 of word b / 64 for bucket b */
    int32_t bucket_count; /* fixed at creation */
    uint64_t reciprocal;  /* 2^64 / bucket_count, rounded up: finds a bucket without a division */
    char *next;           /* free bytes of the block */
    char *end;            /* of the block */
};

/* Nonzero when the stored value matches the probe. */
typedef int (*HashCompare)(HashValue stored, const void *probe);
/* Writes what it likes through the slot of the matching entry; the result is ignored. */
typedef int (*HashUpdateFunction)(HashValue *slot, HashValue new_value);
/* Visits answer nonzero to continue and 0 to stop, and must not change the visited table. */
typedef int (*HashVisit)(HashValue value, void *datum_a, void *datum_b);
typedef int (*HashPairVisit)(int32_t key, HashValue value, void *datum);

/* A table of empty buckets; null when the heap is exhausted. */
HashTable *HashCreate(int32_t bucket_count);
/* Storage for what belongs to a table; null when the heap is exhausted. */
void *HashAlloc(HashTable *table, size_t size);
/* Gives storage back before the table is destroyed. */
void HashFree(const HashTable *table, void *storage);
/* The first bucket from index on that has been inserted into, or -1. */
int32_t HashNextUsed(const HashTable *table, int32_t index);
/* Appends the entry to the key's bucket. 1; 0, with the table unchanged, when the heap is
 * exhausted. */
int HashInsert(HashTable *table, int32_t key, HashValue value);
/* 1 with the value of the first match in *value; 0, with *value untouched, when there is none. */
int HashLookup(const HashTable *table, int32_t key, HashValue *value, const void *probe,
               HashCompare compare);
/* 1 after calling update on the first match, else 0. */
int HashUpdate(HashTable *table, int32_t key, HashValue new_value, const void *probe,
               HashCompare compare, HashUpdateFunction update);
/* 1 after removing the first match, else 0. The bucket's last entry moves into the gap. The
 * removed value goes to *value unless value is null. */
int HashRemove(HashTable *table, int32_t key, HashValue *value, const void *probe,
               HashCompare compare);
/* The same for a table without duplicates, found faster when the entry was inserted lately. */
int HashRemoveRecent(HashTable *table, int32_t key, HashValue *value, const void *probe,
                     HashCompare compare);
/* Visit every entry, bucket by bucket and in the order of each bucket. 1 when complete, 0 when a
 * visit stopped. */
int HashForEach(const HashTable *table, void *datum_a, void *datum_b, HashVisit visit);
int HashForEachPair(const HashTable *table, void *datum, HashPairVisit visit);
/* Orders every bucket by ascending key; entries of equal keys end in any order. */
void HashSort(HashTable *table);
/* A table with the same entries, values shared; null when the heap is exhausted. Of a table and
 * its copy only one may be given to StringHashDestroy. */
HashTable *HashCopy(const HashTable *table);
/* Releases the table's storage, never the values. Nothing for null. */
void HashDestroy(HashTable *table);
