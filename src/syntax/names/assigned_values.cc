// The values that variables are assigned.
#include "syntax/names/assigned_values.h"

#include <algorithm>

#include "support/allocation.h"
#include "syntax/names/part_changes.h"

// Whether the value may hold what variables hold: its names are settled.
static bool takes_parts(const Node *value) {
    value = without_parens(value);
    const Node *base = value->kind == NODE_REFERENCE ? value->first_child : value;
    if (base->kind == NODE_NAME && base->symbol && is_variable(base->symbol)) return true;
    if (value->kind != NODE_MATRIX && value->kind != NODE_CELL) return false;
    for (const Node *row = value->first_child; row; row = row->next)
        for (const Node *element = row->first_child; element; element = element->next)
            if (takes_parts(element)) return true;
    return false;
}

void note_value(Symbol *symbol, ValueKind kind, const Node *node) {
    AssignedValue *value = AllocRecord<AssignedValue>();
    *value = {node, kind, UINT32_MAX, symbol->values};
    symbol->values = value;
    if (node && kind == VALUE_WHOLE && takes_parts(node)) symbol->flags |= SYMBOL_TAKES_PARTS;
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
    note_part_change(symbol, target, is_element);
    if (!value || takes_parts(value)) symbol->flags |= SYMBOL_TAKES_PARTS;
    if (depth > 0) symbol->scope->flags |= CHANGES_PARTS;
    if (grows_in_plane(selector)) symbol->flags |= SYMBOL_GROWS_IN_PLANE;
    if (!(symbol->flags & USED)) symbol->flags |= SYMBOL_STARTS_AS_PART;
}

const Node *held_function(const AssignedValue *value) {
    if (value->kind != VALUE_WHOLE) return nullptr;
    const Node *node = without_parens(value->node);
    return node->kind == NODE_HANDLE || node->kind == NODE_ANONYMOUS ? node : nullptr;
}
