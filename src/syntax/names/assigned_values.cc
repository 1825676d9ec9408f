// The values that variables are assigned.
#include "syntax/names/assigned_values.h"

#include <algorithm>

#include "support/allocation.h"

void note_value(Symbol *symbol, ValueKind kind, const Node *node) {
    AssignedValue *value = AllocRecord<AssignedValue>();
    *value = {node, kind, symbol->values};
    symbol->values = value;
}

// x(k) = [] is no element that makes x an array; x(k) = '' may be a character of a text.
static bool takes_away(const Node *target, const Node *value) {
    return value && target->next == value && is_empty_matrix(value);
}

void note_element(Symbol *symbol, const Node *target, const Node *value) {
    constexpr uint32_t USED = SYMBOL_PARAMETER | SYMBOL_GLOBAL | SYMBOL_PERSISTENT |
                              SYMBOL_ASSIGNED | SYMBOL_CHANGED | SYMBOL_READ | SYMBOL_SHARED;
    const Node *selector = second_child(target);
    if (selector->kind == NODE_BRACES) symbol->flags |= SYMBOL_HAS_BRACES;
    bool is_element = last_selector(target)->kind == NODE_ARGUMENTS && !takes_away(target, value);
    uint32_t depth = depth_of(target) + is_element;
    symbol->depth_changed = std::max(symbol->depth_changed, depth);
    if (depth > 0) symbol->scope->flags |= CHANGES_PARTS;
    if (grows_in_plane(selector)) symbol->flags |= SYMBOL_GROWS_IN_PLANE;
    if (!(symbol->flags & USED)) symbol->flags |= SYMBOL_STARTS_AS_PART;
}
