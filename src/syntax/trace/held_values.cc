// Persistent and global variables.
#include "syntax/trace/held_values.h"

#include "support/allocation.h"

namespace {

constexpr Value UNKNOWN = ANY_VALUE | MAY_BE_MISSING;
constexpr Value NOTHING_YET = MAY_BE_NUMBER | MAY_BE_ARRAY | MAY_BE_EMPTY | MAY_BE_MISSING;

bool is_persistent(const Symbol *symbol) {
    return is_held(symbol) && (symbol->flags & SYMBOL_PERSISTENT);
}

bool is_global(const Symbol *symbol) { return is_held(symbol) && !is_persistent(symbol); }

// What the functions of the file give a global: a variable that none of them has.
Symbol *shared_in(NameMap *globals, const char *name) {
    Symbol *shared = static_cast<Symbol *>(find_name(globals, name));
    if (shared) return shared;
    shared = new_known_global(name);
    enter_name(globals, name, shared);
    return shared;
}

Symbol *shared_global(const Symbol *symbol) {
    return Finders.globals ? shared_in(Finders.globals, symbol->name) : nullptr;
}

void join_global(Symbol *shared, const Symbol *symbol, int depth) {
    shared->given_kinds |= symbol->given_kinds;
    for (const Symbol *part = symbol->parts ? symbol->parts->next : nullptr; part;
         part = part->next)
        if (Symbol *same = field_of(shared, part->name, depth)) join_global(same, part, depth + 1);
}

// Of what may be a cell, and be given something else elsewhere, but nothing that has fields.
Value value_of_global(const Symbol *shared) {
    Value kinds = shared->given_kinds & (MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_FUNCTION);
    return kinds == MAY_BE_CELL ? UNKNOWN & ~(MAY_BE_RECORD | MAY_BE_FUNCTION) : UNKNOWN;
}

void give_global(Symbol *symbol, const Symbol *shared, int depth) {
    symbol->has_given_parts = true;
    symbol->now = symbol->since = value_of_global(shared);
    for (const Symbol *part = shared->parts ? shared->parts->next : nullptr; part;
         part = part->next)
        if (Symbol *same = field_of(symbol, part->name, depth)) give_global(same, part, depth + 1);
}

const Symbol *find_part(const Symbol *holder, const char *name) {
    const Symbol *part = holder->parts ? holder->parts->next : nullptr;
    while (part && part->name != name) part = part->next;
    return part;
}

// Whether the shared one tells more than the variable, which may be null, began with.
bool tells_more(const Symbol *shared, const Symbol *symbol) {
    if (value_of_global(shared) != (symbol ? symbol->now : UNKNOWN)) return true;
    for (const Symbol *part = shared->parts ? shared->parts->next : nullptr; part;
         part = part->next)
        if (tells_more(part, symbol ? find_part(symbol, part->name) : nullptr)) return true;
    return false;
}

void begin_persistent(Symbol *symbol) {
    symbol->parts = nullptr;
    symbol->has_given_parts = false;
    symbol->now = symbol->since = NOTHING_YET;
}

}  // namespace

void begin_held_values(const Scope *scope) {
    for (const SymbolCell *cell = scope->globals; cell; cell = cell->next)
        if (is_persistent(cell->symbol)) begin_persistent(cell->symbol);
}

bool give_held_value(Symbol *symbol) {
    if (!is_held(symbol)) return false;
    if (is_persistent(symbol)) return true;
    symbol->parts = nullptr;
    symbol->has_given_parts = true;
    symbol->now = symbol->since = UNKNOWN;
    symbol->given_kinds = 0;
    const Symbol *shared = shared_global(symbol);
    if (shared && tells_more(shared, nullptr)) give_global(symbol, shared, 0);
    return true;
}

void join_globals(const Scope *scope) {
    for (const SymbolCell *cell = scope->globals; cell; cell = cell->next)
        if (is_global(cell->symbol))
            if (Symbol *shared = shared_global(cell->symbol)) join_global(shared, cell->symbol, 0);
}

bool knows_more_globals(const Scope *scope) {
    for (const SymbolCell *cell = scope->globals; cell; cell = cell->next) {
        const Symbol *shared = is_global(cell->symbol) ? shared_global(cell->symbol) : nullptr;
        if (shared && tells_more(shared, cell->symbol)) return true;
    }
    return false;
}

Symbol *new_known_global(const char *name) {
    Symbol *global = AllocRecord<Symbol>();
    *global = {};
    global->name = name;
    global->flags = SYMBOL_GLOBAL;
    global->has_given_parts = true;
    return global;
}

const Symbol *known_globals(const NameMap *globals) {
    Symbol *first = nullptr;
    for (uint32_t k = 0; k < globals->size; k++) {
        if (!globals->slots[k].name || !globals->slots[k].value) continue;
        Symbol *global = static_cast<Symbol *>(globals->slots[k].value);
        if (!tells_more(global, nullptr)) continue;
        global->next = first;
        first = global;
    }
    return first;
}

void join_known_globals(NameMap *globals, const Symbol *known) {
    for (; known; known = known->next) join_global(shared_in(globals, known->name), known, 0);
}

void hold_anything(const Scope *scope) {
    for (const SymbolCell *cell = scope->globals; cell; cell = cell->next)
        if (is_persistent(cell->symbol)) assign(cell->symbol, UNKNOWN);
}
