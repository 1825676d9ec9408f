// Targets that an index with literal bounds stands for.
#include "syntax/values/numbered_targets.h"

#include <assert.h>
#include <stdlib.h>
#include <string.h>

#include "syntax/names/assigned_values.h"
#include "syntax/tree/value.h"

const Node *only_value(const Node *name) {
    constexpr uint32_t OTHERS = SYMBOL_PARAMETER | SYMBOL_CHANGED | SYMBOL_GLOBAL |
                                SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    const AssignedValue *value = name->symbol->values;
    bool is_only = value && !value->next && value->kind == VALUE_WHOLE &&
                   !may_be(value_of(name), MAY_BE_MISSING);
    return is_only && !(name->symbol->flags & OTHERS) ? value->node : nullptr;
}

namespace {

// A whole number of the source, or the value of a variable that is never another; or -1.
long literal_value(const Node *node) {
    if (node->kind == NODE_NAME) node = only_value(node);
    if (!node) return -1;
    if (node->kind != NODE_NUMBER || !has_flag(node, NUMBER_INTEGER)) return -1;
    return strlen(node->text) < 7 ? strtol(node->text, nullptr, 10) : -1;
}

constexpr long MOST_TARGETS = 1000;

Bounds literal_bounds(const Node *argument) {
    argument = without_parens(argument);
    if (argument->kind != NODE_RANGE) return {1, -1};
    const Node *second = second_child(argument);
    Bounds bounds = {literal_value(argument->first_child), literal_value(second)};
    bool is_known = !second->next && bounds.first > 0 && bounds.last - bounds.first < MOST_TARGETS;
    return is_known ? bounds : Bounds{1, -1};
}

}  // namespace

const Node *list_index(const Node *reference) {
    assert(reference->kind == NODE_REFERENCE);
    const Node *index = nullptr;
    const Node *last = reference->first_child->next;
    for (; last->next; last = last->next) index = last;
    if (last->kind == NODE_BRACES) return last;
    bool is_field = last->kind == NODE_FIELD && index && index->kind == NODE_ARGUMENTS;
    return is_field ? index : nullptr;
}

Bounds numbered_bounds(const Node *node) {
    const Node *index = list_index(node);
    const Node *argument = index ? index->first_child : nullptr;
    return argument && !argument->next ? literal_bounds(argument) : Bounds{1, -1};
}
