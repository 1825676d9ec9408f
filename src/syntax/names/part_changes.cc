// Where parts of variables are set.
#include "syntax/names/part_changes.h"

#include <algorithm>

#include "support/allocation.h"
#include "syntax/names/later_uses.h"

namespace {

struct Place {
    uint32_t offset;
    const Place *before;  // noted before, or null
};

}  // namespace

/* Parts of a variable that lie equally deep in one field. */
struct PartChange {
    const char *field;  // in which they lie, interned; null: anywhere
    uint32_t level;
    const Place *last;    // where they are set
    const Place *passed;  // where parts of what is given what they are of are set
    PartChange *next;
    int32_t count;  // of those from here on
};

namespace {

// Of more nothing is told apart.
constexpr int32_t MOST_CHANGES = 64;

// A selector leads two levels down, elements in parentheses lie one below what they are of.
constexpr uint32_t LEVELS = 2;

uint32_t level_of(const Node *place) {
    bool is_element = place->kind == NODE_REFERENCE && last_selector(place)->kind == NODE_ARGUMENTS;
    return depth_of(place) * LEVELS + is_element;
}

uint32_t level_inside(const Node *place, uint32_t deeper) {
    return deeper == 0 ? level_of(place) : (depth_of(place) + deeper) * LEVELS;
}

// s.f and s(k).f
const char *field_of(const Node *place) {
    if (place->kind != NODE_REFERENCE) return nullptr;
    const Node *selector = second_child(place);
    if (selector->kind == NODE_ARGUMENTS) selector = selector->next;
    return selector && selector->kind == NODE_FIELD ? selector->text : nullptr;
}

bool may_be_same(const char *field, const char *other) {
    return !field || !other || field == other;
}

const Place *new_place(uint32_t offset, const Place *before) {
    if (before && before->offset == offset) return before;
    Place *place = AllocRecord<Place>();
    *place = {offset, before};
    return place;
}

PartChange *change_at(Symbol *symbol, const char *field, uint32_t level) {
    PartChange *first = symbol->changes;
    for (PartChange *change = first; change; change = change->next)
        if (change->field == field && change->level == level) return change;
    if (first && first->count == MOST_CHANGES) {
        first->field = nullptr;
        first->level = std::max(first->level, level);
        return first;
    }
    PartChange *change = AllocRecord<PartChange>();
    *change = {field, level, nullptr, nullptr, first, first ? first->count + 1 : 1};
    symbol->changes = change;
    return change;
}

uint64_t bit_of(const PartChange *change) { return uint64_t(1) << (change->count - 1); }

// More places than these are not looked through.
constexpr int MOST_PLACES = 64;

bool is_reached(const Reach *reach, uint32_t offset) {
    if (offset < reach->since) return false;
    for (const OtherBranches *others = reach->others; others; others = others->outer)
        if (offset >= others->from && offset < others->to) return false;
    return true;
}

bool any_is_reached(const Reach *reach, const Place *place) {
    int count = 0;
    for (; place; place = place->before)
        if (++count > MOST_PLACES || is_reached(reach, place->offset)) return true;
    return false;
}

}  // namespace

void note_part_change(Symbol *symbol, const Node *target, bool is_element) {
    uint32_t level = depth_of(target) * LEVELS + is_element;
    if (level == 0) return;
    PartChange *change = change_at(symbol, field_of(target), level);
    change->last = new_place(target->offset, change->last);
}

uint64_t changes_at_target(const Symbol *symbol, const Node *target) {
    uint64_t found = 0;
    const char *field = field_of(target);
    uint32_t depth = depth_of(target);
    const PartChange *first = symbol->changes;
    if (first && first->count == MOST_CHANGES) found = bit_of(first);
    for (const PartChange *change = first; change; change = change->next)
        if (change->field == field && change->level / LEVELS == depth) found |= bit_of(change);
    return found;
}

static bool has_place(const Place *places, uint32_t offset) {
    while (places && places->offset != offset) places = places->before;
    return places;
}

// Answers whether one is new.
static bool pass_places(PartChange *passed, const Place *place) {
    bool is_new = false;
    int count = 0;
    for (; place && count < MOST_PLACES; place = place->before) {
        uint32_t offset = ++count == MOST_PLACES ? UINT32_MAX : place->offset;
        if (has_place(passed->passed, offset)) continue;
        passed->passed = new_place(offset, passed->passed);
        is_new = true;
    }
    return is_new;
}

bool pass_part_changes(const Node *value, const Node *target) {
    const Node *base = target->kind == NODE_REFERENCE ? target->first_child : target;
    const Node *from = value->kind == NODE_REFERENCE ? value->first_child : value;
    const char *field = field_of(target);
    bool is_new = false;
    for (const PartChange *change = base->symbol->changes; change; change = change->next) {
        bool is_inside = change->level > level_of(target) && may_be_same(change->field, field);
        if (!is_inside) continue;
        bool is_same = base == target && value == from;
        const char *inner = is_same ? change->field : field_of(value);
        uint32_t level = change->level + (depth_of(value) - depth_of(target)) * LEVELS;
        PartChange *passed = change_at(from->symbol, inner, level);
        is_new |= pass_places(passed, change->last);
        is_new |= pass_places(passed, change->passed);
    }
    return is_new;
}

// Before the variable is set anew.
static bool is_set_after(const PartChange *change, const Symbol *symbol, uint32_t statement) {
    const LaterUse *later = statement == UINT32_MAX ? nullptr : later_use(symbol, statement);
    return !later || (later->changes & bit_of(change)) != 0;
}

bool changes_inside(const Symbol *symbol, const Node *place, uint32_t deeper, const Reach *reach,
                    uint32_t statement) {
    uint32_t level = level_inside(place, deeper);
    const char *field = field_of(place);
    for (const PartChange *change = symbol->changes; change; change = change->next) {
        if (change->level <= level || !may_be_same(change->field, field)) continue;
        bool is_set =
            any_is_reached(reach, change->last) && is_set_after(change, symbol, statement);
        if (is_set || any_is_reached(reach, change->passed)) return true;
    }
    return false;
}
