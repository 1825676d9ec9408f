/* The string-keyed layer over HashTable: pairs of a private key copy and a value of the caller's.
 * A run keeps its sets of names in such tables, each name with itself as the value. */
#pragma once

#include "support/hash_table.h"

/* Visits answer nonzero to continue and 0 to stop. */
typedef int (*StringHashVisit)(const char *text, HashValue value, void *datum);

/* Hash of a text: only its first, middle, last and next-to-last bytes and its length enter. */
int32_t string_hash(const char *text);
/* Adds the pair without looking for an earlier one; 1. Exhausted memory ends the run. */
int StringHashInsert(HashTable *table, const char *text, HashValue value);
/* The value inserted first under the text, or null: a stored null looks like an absent text. */
HashValue StringHashLookup(const HashTable *table, const char *text);
/* 1 after replacing the value of the first matching pair, else 0. */
int StringHashUpdate(HashTable *table, const char *text, HashValue new_value);
/* 1 after removing and releasing the first matching pair, else 0. */
int StringHashRemove(HashTable *table, const char *text);
/* Visit every pair in the order of HashForEach. 1 when complete, 0 when a visit stopped. */
int StringHashForEach(const HashTable *table, void *datum, StringHashVisit visit);
int StringHashForEachPair(const HashTable *table, void *datum, StringHashVisit visit);
/* Visitor of StringHashDestroy, which hands the table on: releases one pair with its key copy; 1.
 */
int freeStringCallback(HashValue pair, void *datum_a, void *datum_b);
/* Releases the pairs, then the table; never the values. Nothing for null. */
void StringHashDestroy(HashTable *table);

/* Enters the text, with itself as the value, unless the set holds it already. */
void add_name(HashTable *set, const char *text);
