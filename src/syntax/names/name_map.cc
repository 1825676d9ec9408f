// A table of names with open addressing.
#include "syntax/names/name_map.h"

#include <string.h>

#include "support/allocation.h"

namespace {

constexpr uint32_t FIRST_SIZE = 32;

// The slot of the name, or the free one where it belongs. The table is not full.
NameSlot *find_slot(const NameMap *map, const char *name) {
    uint64_t address = reinterpret_cast<uintptr_t>(name);
    uint64_t hash = (address >> 3) * 0x9E3779B97F4A7C15U;
    uint32_t at = static_cast<uint32_t>(hash >> 32);
    for (;; at++) {
        NameSlot *slot = map->slots + (at & (map->size - 1));
        if (!slot->name || slot->name == name) return slot;
    }
}

void grow(NameMap *map) {
    NameMap old = *map;
    map->size = old.size ? 2 * old.size : FIRST_SIZE;
    map->slots = static_cast<NameSlot *>(AllocKept(map->size * sizeof(NameSlot)));
    memset(map->slots, 0, map->size * sizeof(NameSlot));
    for (uint32_t i = 0; i < old.size; i++) {
        const NameSlot *slot = old.slots + i;
        if (slot->name) *find_slot(map, slot->name) = *slot;
    }
    FreeKept(old.slots);
}

}  // namespace

void *find_name(const NameMap *map, const char *name) {
    return map->size ? find_slot(map, name)->value : nullptr;
}

void *enter_name(NameMap *map, const char *name, void *value) {
    if (map->used >= map->size / 4 * 3) grow(map);
    NameSlot *slot = find_slot(map, name);
    if (!slot->name) {
        slot->name = name;
        map->used++;
    }
    void *before = slot->value;
    slot->value = value;
    return before;
}
