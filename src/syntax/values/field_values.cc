// Fields whose values flow.
#include "syntax/values/field_values.h"

#include "support/allocation.h"
#include "support/same_text.h"
#include "syntax/scan/spellings.h"

namespace {

// Each assignment of a variable goes over its fields.
constexpr int MOST_FIELDS = 64;
constexpr int MOST_INNER_FIELDS = 8;
// The names of elements and results, which no field has, as they are not interned.
constexpr char ELEMENTS[] = "{}";
constexpr char RESULT[] = "()";

// Whether a field that has not been named so far may have been there, anywhere in the flow.
bool may_have_had_fields(const Symbol *holder) {
    return holder->has_given_parts || (holder->parts && kinds_of(holder->parts->ever));
}

// Nothing is known of it, wherever the flow goes on or back to; but of what has got all its fields
// one by one, it has not got this one.
Symbol *new_part(Symbol *holder, const char *name) {
    constexpr uint32_t INHERITED = SYMBOL_VARIABLE | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    Symbol *part = AllocRecord<Symbol>();
    *part = {};
    part->name = name;
    part->scope = holder->scope;
    part->flags = holder->flags & INHERITED;
    part->has_given_parts = may_have_had_fields(holder);
    part->now = part->since = part->has_given_parts ? UNKNOWN_FIELD : Value(MAY_BE_MISSING);
    return part;
}

}  // namespace

Symbol *rest_of(Symbol *holder) {
    if (!holder->parts) holder->parts = new_part(holder, nullptr);
    return holder->parts;
}

// A field that is not followed may be there from here on.
static Symbol *follow_no_more(Symbol *holder) {
    set_value(rest_of(holder), UNKNOWN_FIELD);
    return nullptr;
}

Symbol *field_of(Symbol *holder, const char *name, int depth) {
    if (depth == DEEPEST_HOLDER) return follow_no_more(holder);
    Symbol *last = rest_of(holder);
    int count = 0;
    for (Symbol *part = last->next; part; last = part, part = part->next, count++)
        if (part->name == name) return part;
    if (count == (depth == 0 ? MOST_FIELDS : MOST_INNER_FIELDS)) return follow_no_more(holder);
    Symbol *part = last->next = new_part(holder, name);
    Value rest = value_now(holder->parts);
    if (rest != UNKNOWN_FIELD) start_late(part, rest);
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

Symbol *result_of(Symbol *holder, int depth) { return field_of(holder, RESULT, depth); }

void note_presence(Symbol *field) {
    Value value = value_now(field);
    if (may_be(value, MAY_BE_MISSING) && kinds_of(value)) set_value(field, value & ANY_VALUE);
}

namespace {

// A field of which the walk has seen nothing.
Value value_of_rest(const Symbol *holder) {
    if (holder->parts) return value_now(holder->parts);
    bool is_followed = is_traced(holder) || is_held(holder);
    bool is_known = is_followed && !is_given_up() && !holder->has_given_parts;
    return !is_known ? UNKNOWN_FIELD : Value(MAY_BE_MISSING);
}

const KnownPart *find_part(const KnownParts *parts, const char *name) {
    const KnownPart *part = parts->first;
    while (part && part->name != name) part = part->next;
    return part;
}

bool may_have_parts(Value value) {
    return may_be(value, MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_FUNCTION);
}

// What has no parts tells nothing of those that others have.
const KnownParts *joined_inside(const KnownPart *one, const KnownPart *other) {
    if (!may_have_parts(one->value)) return other->inside;
    if (!may_have_parts(other->value)) return one->inside;
    return joined_parts(one->inside, other->inside);
}

}  // namespace

const KnownPart *new_known_part(const char *name, Value value, const KnownParts *inside,
                                const KnownPart *next) {
    KnownPart *part = AllocRecord<KnownPart>();
    *part = {name, value, inside, next};
    return part;
}

const KnownParts *new_known_parts(bool has_others, const KnownPart *first) {
    if (has_others && !first) return nullptr;
    KnownParts *parts = AllocRecord<KnownParts>();
    *parts = {has_others, first};
    return parts;
}

const KnownParts *parts_now(const Symbol *holder) {
    Symbol *first = holder->parts;
    bool has_others = value_of_rest(holder) != MAY_BE_MISSING;
    const KnownPart *parts = nullptr;
    for (const Symbol *part = first ? first->next : nullptr; part; part = part->next) {
        Value value = value_now(part);
        const KnownParts *inside = may_have_parts(value) ? parts_now(part) : nullptr;
        bool is_any = has_others && value == UNKNOWN_FIELD && !inside;  // as the others
        if (!is_any) parts = new_known_part(part->name, value, inside, parts);
    }
    return new_known_parts(has_others, parts);
}

const KnownParts *joined_parts(const KnownParts *one, const KnownParts *other) {
    if (!one || !other || one == other) return one == other ? one : nullptr;
    const KnownPart *parts = nullptr;
    for (const KnownPart *part = one->first; part; part = part->next) {
        const KnownPart *same = find_part(other, part->name);
        if (same) {
            Value value = part->value | same->value;
            parts = new_known_part(part->name, value, joined_inside(part, same), parts);
        } else if (!other->has_others) {
            Value value = part->value | MAY_BE_MISSING;
            parts = new_known_part(part->name, value, part->inside, parts);
        }
    }
    for (const KnownPart *part = one->has_others ? nullptr : other->first; part; part = part->next)
        if (!find_part(one, part->name))
            parts = new_known_part(part->name, part->value | MAY_BE_MISSING, part->inside, parts);
    return new_known_parts(one->has_others || other->has_others, parts);
}

bool is_part_of(const KnownParts *one, const KnownParts *other) {
    if (!other || one == other) return true;
    if (!one || (one->has_others && !other->has_others)) return false;
    for (const KnownPart *part = one->first; part; part = part->next) {
        const KnownPart *same = find_part(other, part->name);
        if (!same && !other->has_others) return false;
        if (!same) continue;
        if (!is_within(part->value, same->value)) return false;
        if (may_have_parts(part->value) && !is_part_of(part->inside, same->inside)) return false;
    }
    for (const KnownPart *part = other->first; part; part = part->next) {
        bool may_lack = may_be(part->value, MAY_BE_MISSING) && !one->has_others;
        if (!find_part(one, part->name) && !may_lack) return false;
    }
    return true;
}

const KnownParts *parts_of_cell(Value elements, const KnownParts *inside) {
    if (elements == UNKNOWN_FIELD && !inside) return nullptr;
    return new_known_parts(false, new_known_part(ELEMENTS, elements, inside, nullptr));
}

const KnownParts *parts_of_called(Value result, const KnownParts *inside) {
    return new_known_parts(false, new_known_part(RESULT, result, inside, nullptr));
}

Value elements_of_cell(const KnownParts *cell) {
    if (!cell) return UNKNOWN_FIELD;
    if (const KnownPart *elements = find_part(cell, ELEMENTS)) return elements->value;
    return cell->has_others ? UNKNOWN_FIELD : Value(MAY_BE_MISSING);
}

const KnownParts *inside_of_cell(const KnownParts *cell) {
    const KnownPart *elements = cell ? find_part(cell, ELEMENTS) : nullptr;
    return elements ? elements->inside : nullptr;
}

KnownPart part_in(const KnownParts *parts, const char *name) {
    const KnownPart *part = parts ? find_part(parts, name) : nullptr;
    if (part) return {nullptr, part->value, part->inside, nullptr};
    bool is_missing = parts && !parts->has_others;
    return {nullptr, is_missing ? Value(MAY_BE_MISSING) : UNKNOWN_FIELD, nullptr, nullptr};
}

KnownPart any_field_in(const KnownParts *parts) {
    KnownPart any = {nullptr, MAY_BE_MISSING, nullptr, nullptr};
    if (!parts || parts->has_others) any.value = UNKNOWN_FIELD;
    for (const KnownPart *part = parts ? parts->first : nullptr; part; part = part->next) {
        if (part->name == ELEMENTS || part->name == RESULT) continue;
        any.inside = joined_inside(&any, part);
        any.value |= part->value;
    }
    return any;
}

const KnownParts *with_part(const KnownParts *parts, const char *name, Value value,
                            const KnownParts *inside) {
    const KnownPart *first = new_known_part(name, value, inside, nullptr);
    for (const KnownPart *part = parts ? parts->first : nullptr; part; part = part->next)
        if (part->name != name)
            first = new_known_part(part->name, part->value, part->inside, first);
    return new_known_parts(!parts || parts->has_others, first);
}

const KnownParts *parts_of_any_field(const Symbol *holder) {
    return any_field_in(parts_now(holder)).inside;
}

const char *part_name(const char *text) {
    if (is_same_text(text, ELEMENTS)) return ELEMENTS;
    return is_same_text(text, RESULT) ? RESULT : intern(text);
}

void give_parts(Symbol *holder, int depth, const KnownParts *parts) {
    if (parts && !parts->has_others) {
        begin_fields(holder);
    } else {
        forget_fields(holder);
    }
    for (const KnownPart *part = parts ? parts->first : nullptr; part; part = part->next)
        if (Symbol *field = field_of(holder, part->name, depth))
            assign_known(field, depth + 1, part->value, part->inside);
}

void assign_known(Symbol *holder, int depth, Value value, const KnownParts *parts) {
    if (may_have_parts(value)) {
        give_parts(holder, depth, parts);
    } else {
        begin_fields(holder);
    }
    set_value(holder, value);
}

void add_value(Symbol *holder, int depth, Value value, const KnownParts *parts) {
    Value before = value_now(holder);
    if (!may_have_parts(value)) return set_value(holder, before | value);
    if (may_have_parts(before)) parts = joined_parts(parts_now(holder), parts);
    assign_known(holder, depth, before | value, parts);
}

Value any_field(const Symbol *holder, int depth) {
    Value value = value_of_rest(holder);
    int count = 0;
    for (const Symbol *part = holder->parts ? holder->parts->next : nullptr; part;
         part = part->next, count++)
        value |= value_now(part);
    bool has_room = count < (depth == 0 ? MOST_FIELDS : MOST_INNER_FIELDS);
    return has_room && depth < DEEPEST_HOLDER ? value : UNKNOWN_FIELD;
}

void forget_fields(Symbol *holder) {
    holder->has_given_parts = true;
    for (Symbol *part = holder->parts; part; part = part->next)
        if (part->now != UNKNOWN_FIELD || part->parts) assign(part, UNKNOWN_FIELD);
}

void begin_fields(Symbol *holder) {
    if (!holder->has_given_parts && !holder->parts) return;  // they are missing
    for (Symbol *part = rest_of(holder); part; part = part->next) {
        if (part->parts) begin_fields(part);
        set_value(part, MAY_BE_MISSING);
    }
}

void assign(Symbol *holder, Value value) {
    forget_fields(holder);
    set_value(holder, value);
}
