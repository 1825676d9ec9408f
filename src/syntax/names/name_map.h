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

/* What the name stands for, or null. */
void *find_name(const NameMap *map, const char *name);
/* Lets the name stand for the value, null for nothing; answers what it stood for before. */
void *enter_name(NameMap *map, const char *name, void *value);
