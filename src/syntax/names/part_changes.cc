// Where parts of variables are set.
#include "syntax/names/part_changes.h"

#include <algorithm>

#include "support/allocation.h"

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
    const Place *last;  // where they are set
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

void add_place(PartChange *change, uint32_t offset) {
    if (change->last && change->last->offset == offset) return;
    Place *place = AllocRecord<Place>();
    *place = {offset, change->last};
    change->last = place;
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
    *change = {field, level, nullptr, first, first ? first->count + 1 : 1};
    symbol->changes = change;
    return change;
}

void add_change(Symbol *symbol, const char *field, uint32_t level, uint32_t offset) {
    add_place(change_at(symbol, field, level), offset);
}

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
    if (level > 0) add_change(symbol, field_of(target), level, target->offset);
}

void pass_part_changes(Symbol *from, const Node *target) {
    const Node *base = target->kind == NODE_REFERENCE ? target->first_child : target;
    const char *field = field_of(target);
    for (const PartChange *change = base->symbol->changes; change; change = change->next) {
        bool is_inside = change->level > level_of(target) && may_be_same(change->field, field);
        const char *inner = base == target ? change->field : nullptr;
        if (!is_inside) continue;
        PartChange *passed = change_at(from, inner, change->level - depth_of(target) * LEVELS);
        int count = 0;
        for (const Place *place = change->last; place; place = place->before) {
            bool is_last = ++count == MOST_PLACES;
            add_place(passed, is_last ? UINT32_MAX : place->offset);
            if (is_last) break;
        }
    }
}

bool changes_inside(const Symbol *symbol, const Node *place, uint32_t deeper, const Reach *reach) {
    uint32_t level = level_inside(place, deeper);
    const char *field = field_of(place);
    for (const PartChange *change = symbol->changes; change; change = change->next)
        if (change->level > level && may_be_same(change->field, field) &&
            any_is_reached(reach, change->last))
            return true;
    return false;
}
