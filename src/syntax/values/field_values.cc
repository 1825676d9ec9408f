// Fields whose values flow.
#include "syntax/values/field_values.h"

#include "support/allocation.h"

namespace {

// Each assignment of a variable goes over its fields.
constexpr int MOST_FIELDS = 64;
constexpr int MOST_INNER_FIELDS = 8;
constexpr int DEEPEST_HOLDER = 3;
// The names of elements and results, which no field has, as they are not interned.
constexpr char ELEMENTS[] = "{}";
constexpr char RESULT[] = "()";

// Nothing is known of it, wherever the flow goes on or back to; but of what has got all its fields
// one by one, it has not got this one.
Symbol *new_part(Symbol *holder, const char *name) {
    constexpr uint32_t INHERITED = SYMBOL_VARIABLE | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    Symbol *part = AllocRecord<Symbol>();
    *part = {};
    part->name = name;
    part->scope = holder->scope;
    part->flags = holder->flags & INHERITED;
    part->has_given_parts = holder->has_given_parts;
    part->now = part->since = holder->has_given_parts ? UNKNOWN_FIELD : Value(MAY_BE_MISSING);
    return part;
}

// Of fields that have not been named so far: the first of all, without a name.
Symbol *rest_of(Symbol *holder) {
    if (!holder->parts) holder->parts = new_part(holder, nullptr);
    return holder->parts;
}

}  // namespace

Symbol *field_of(Symbol *holder, const char *name, int depth) {
    if (depth == DEEPEST_HOLDER) return nullptr;
    Symbol *last = rest_of(holder);
    int count = 0;
    for (Symbol *part = last->next; part; last = part, part = part->next, count++)
        if (part->name == name) return part;
    if (count == (depth == 0 ? MOST_FIELDS : MOST_INNER_FIELDS)) return nullptr;
    Symbol *part = last->next = new_part(holder, name);
    if (value_now(holder->parts) == MAY_BE_MISSING) start_late(part, MAY_BE_MISSING);
    return part;
}

// The first part has no name.
Symbol *next_field(const Symbol *field) {
    Symbol *next = field->next;
    while (next && (next->name == ELEMENTS || next->name == RESULT)) next = next->next;
    return next;
}

Symbol *first_field(const Symbol *holder) {
    return holder->parts ? next_field(holder->parts) : nullptr;
}

Symbol *elements_of(Symbol *holder, int depth) { return field_of(holder, ELEMENTS, depth); }

void add_elements(Symbol *holder, int depth, Value value) {
    Symbol *elements = elements_of(holder, depth);
    if (elements) assign(elements, value_now(elements) | value);
}

void begin_elements(Symbol *holder, int depth, Value elements) {
    if (elements == UNKNOWN_FIELD) return;
    begin_fields(holder);
    if (elements != MAY_BE_MISSING) add_elements(holder, depth, elements & ANY_VALUE);
}

Symbol *result_of(Symbol *holder, int depth) { return field_of(holder, RESULT, depth); }

void begin_result(Symbol *holder, int depth, Value value, Value elements) {
    begin_fields(holder);
    Symbol *result = result_of(holder, depth);
    if (!result) return;
    assign(result, value);
    begin_elements(result, depth + 1, elements);
}

void note_presence(Symbol *field) {
    Value value = value_now(field);
    if (may_be(value, MAY_BE_MISSING) && kinds_of(value)) set_value(field, value & ANY_VALUE);
}

static void copy_fields_at(Symbol *holder, const Symbol *from, int depth) {
    const Symbol *first = from->parts;
    for (const Symbol *part = first ? first->next : nullptr; part; part = part->next) {
        Value value = value_now(part);
        Symbol *field = value == UNKNOWN_FIELD ? nullptr : field_of(holder, part->name, depth);
        if (!field) continue;
        set_value(field, value);
        copy_fields_at(field, part, depth + 1);
    }
}

void copy_fields(Symbol *variable, const Symbol *from) {
    if (variable != from) copy_fields_at(variable, from, 0);
}

void forget_fields(Symbol *holder) {
    holder->has_given_parts = true;
    for (Symbol *part = holder->parts; part; part = part->next)
        if (part->now != UNKNOWN_FIELD || part->parts) assign(part, UNKNOWN_FIELD);
}

void begin_fields(Symbol *holder) {
    if (!holder->has_given_parts) return;  // they are missing
    rest_of(holder);
    for (Symbol *part = holder->parts; part; part = part->next) assign(part, MAY_BE_MISSING);
}

void assign(Symbol *holder, Value value) {
    forget_fields(holder);
    set_value(holder, value);
}
