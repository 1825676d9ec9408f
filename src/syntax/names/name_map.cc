// A table of names with open addressing.
#include "syntax/names/name_map.h"

#include <string.h>

#include "support/allocation.h"

namespace {

constexpr uint32_t FIRST_SIZE = 32;

[[gnu::noinline]] void grow(NameMap *map) {
    NameMap old = *map;
    map->size = old.size ? 2 * old.size : FIRST_SIZE;
    map->slots = static_cast<NameSlot *>(AllocKept(map->size * sizeof(NameSlot)));
    memset(map->slots, 0, map->size * sizeof(NameSlot));
    for (uint32_t i = 0; i < old.size; i++) {
        const NameSlot *slot = old.slots + i;
        if (slot->name) *slot_of_name(map, slot->name) = *slot;
    }
    FreeKept(old.slots);
}

}  // namespace

void *enter_name(NameMap *map, const char *name, void *value) {
    if (map->used >= map->size / 4 * 3) grow(map);
    NameSlot *slot = slot_of_name(map, name);
    if (!slot->name) {
        slot->name = name;
        map->used++;
    }
    void *before = slot->value;
    slot->value = value;
    return before;
}
