/* What interned names stand for at a place of the source. */
#pragma once

#include <stdint.h>

struct Symbol;

struct Binding {
    const char *name; /* interned; null in a free slot */
    Symbol *symbol;   /* null: nothing now */
};

/* A table by the names' addresses; at first {}. Its storage is a tracked block. */
struct Bindings {
    Binding *slots;
    uint32_t size; /* a power of two, or 0 */
    uint32_t used;
};

/* What the name stands for, or null. */
Symbol *bound_symbol(const Bindings *bindings, const char *name);
/* Lets the name stand for the symbol, or for nothing; answers what it stood for before. */
Symbol *bind_name(Bindings *bindings, const char *name, Symbol *symbol);
/* Gives the storage back. */
void drop_bindings(Bindings *bindings);
