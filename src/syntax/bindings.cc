// A table of names with open addressing.
#include "syntax/bindings.h"

#include <string.h>

#include "support/allocation.h"

namespace {

constexpr uint32_t FIRST_SIZE = 64;

// The slot of the name, or the free one where it belongs. The table has room.
Binding *find_slot(const Bindings *bindings, const char *name) {
    uint64_t address = reinterpret_cast<uintptr_t>(name);
    uint64_t hash = (address >> 3) * 0x9E3779B97F4A7C15U;
    uint32_t at = static_cast<uint32_t>(hash >> 32);
    for (;; at++) {
        Binding *slot = bindings->slots + (at & (bindings->size - 1));
        if (!slot->name || slot->name == name) return slot;
    }
}

void grow(Bindings *bindings) {
    Bindings old = *bindings;
    bindings->size = old.size ? 2 * old.size : FIRST_SIZE;
    bindings->slots = static_cast<Binding *>(Alloc(bindings->size * sizeof(Binding)));
    memset(bindings->slots, 0, bindings->size * sizeof(Binding));
    for (uint32_t i = 0; i < old.size; i++) {
        const Binding *slot = old.slots + i;
        if (slot->name) *find_slot(bindings, slot->name) = *slot;
    }
    Free(old.slots);
}

}  // namespace

Symbol *bound_symbol(const Bindings *bindings, const char *name) {
    return bindings->size ? find_slot(bindings, name)->symbol : nullptr;
}

Symbol *bind_name(Bindings *bindings, const char *name, Symbol *symbol) {
    if (bindings->used >= bindings->size / 4 * 3) grow(bindings);
    Binding *slot = find_slot(bindings, name);
    if (!slot->name) {
        slot->name = name;
        bindings->used++;
    }
    Symbol *before = slot->symbol;
    slot->symbol = symbol;
    return before;
}

void drop_bindings(Bindings *bindings) {
    Free(bindings->slots);
    *bindings = {};
}
