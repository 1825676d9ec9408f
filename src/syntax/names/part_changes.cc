// Where parts of variables are set.
#include "syntax/names/part_changes.h"

#include <algorithm>

#include "support/allocation.h"

/* Parts of a variable that lie equally deep in one field. */
struct PartChange {
    const char *field;  // in which they lie, interned; null: anywhere
    uint32_t level;
    uint32_t last;  // offset of the last target
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

void add_change(Symbol *symbol, const char *field, uint32_t level, uint32_t offset) {
    PartChange *first = symbol->changes;
    if (first && first->count == MOST_CHANGES) {
        first->field = nullptr;
        first->level = std::max(first->level, level);
        first->last = std::max(first->last, offset);
        return;
    }
    for (PartChange *change = first; change; change = change->next)
        if (change->field == field && change->level == level) {
            change->last = std::max(change->last, offset);
            return;
        }
    PartChange *change = AllocRecord<PartChange>();
    *change = {field, level, offset, first, first ? first->count + 1 : 1};
    symbol->changes = change;
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
        if (is_inside)
            add_change(from, inner, change->level - depth_of(target) * LEVELS, change->last);
    }
}

bool changes_inside(const Symbol *symbol, const Node *place, uint32_t deeper, uint32_t since) {
    uint32_t level = level_inside(place, deeper);
    const char *field = field_of(place);
    for (const PartChange *change = symbol->changes; change; change = change->next)
        if (change->level > level && change->last >= since && may_be_same(change->field, field))
            return true;
    return false;
}
