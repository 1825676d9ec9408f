/* Memory of a program's result. It outlives the run, so it is none of the run's. */
#pragma once

#include <stddef.h>
#include <string.h>

#include <vector>

struct ResultBlock;

/* Blocks of the system's heap; at first {}. */
struct ResultMemory {
    ResultBlock *blocks;
    char *next;
    size_t left;
};

/* Cleared memory for size bytes, for any record. Throws std::bad_alloc. */
void *take_result(ResultMemory *memory, size_t size);
/* Gives all of it back. The record itself may lie in it. */
void release_result(const ResultMemory *memory);
/* A copy of length bytes, and a NUL. */
const char *keep_result(ResultMemory *memory, const char *text, size_t length);
/* The same of a text; null for null. */
inline const char *keep_result(ResultMemory *memory, const char *text) {
    return text ? keep_result(memory, text, strlen(text)) : nullptr;
}

/* A cleared record of the interface, which begins with its size. */
template <typename Record>
Record *new_result(ResultMemory *memory) {
    Record *record = static_cast<Record *>(take_result(memory, sizeof(Record)));
    record->size = sizeof(Record);
    return record;
}

/* The pointers of a vector as a list of the interface; null for none. */
template <typename Record>
const Record **list_result(ResultMemory *memory, const std::vector<const Record *> &items) {
    if (items.empty()) return nullptr;
    void *list = take_result(memory, items.size() * sizeof(void *));
    memcpy(list, items.data(), items.size() * sizeof(void *));
    return static_cast<const Record **>(list);
}
