/* What interned names stand for: symbols at a place of a function, functions of a file. */
#pragma once

#include <stdint.h>

struct NameSlot {
    const char *name; /* interned; null in a free slot */
    void *value;      /* the caller's; null: nothing now */
};

/* A table by the names' addresses; at first {}. Its storage is a kept part. */
struct NameMap {
    NameSlot *slots;
    uint32_t size; /* a power of two, or 0 */
    uint32_t used;
};

/* The slot of the name, or the free one where it belongs. The table has free ones. */
inline NameSlot *slot_of_name(const NameMap *map, const char *name) {
    uint64_t address = reinterpret_cast<uintptr_t>(name);
    uint64_t hash = (address >> 3) * 0x9E3779B97F4A7C15U;
    uint32_t at = static_cast<uint32_t>(hash >> 32);
    for (;; at++) {
        NameSlot *slot = map->slots + (at & (map->size - 1));
        if (!slot->name || slot->name == name) return slot;
    }
}
/* What the name stands for, or null. */
inline void *find_name(const NameMap *map, const char *name) {
    return map->size ? slot_of_name(map, name)->value : nullptr;
}
/* Lets the name stand for the value, null for nothing; answers what it stood for before. */
void *enter_name(NameMap *map, const char *name, void *value);
