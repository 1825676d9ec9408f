// Parts of variables.
#include "lower/shared_parts.h"

#include "translate/text_forms.h"

static const Symbol *base_symbol(const Node *node) {
    const Node *base = node->kind == NODE_REFERENCE ? node->first_child : node;
    return base->kind == NODE_NAME && is_variable(base->symbol) ? base->symbol : nullptr;
}

bool needs_part_copy(const Node *target, const Node *value) {
    const Symbol *from = base_symbol(value);
    if (!from) return false;
    uint32_t changes = target->kind == NODE_NAME ? SYMBOL_CHANGED : SYMBOL_CHANGED_DEEPLY;
    return (base_symbol(target)->flags & changes) || (from->flags & SYMBOL_CHANGED_DEEPLY);
}

const char *part_text(const Node *target, const Node *value, const char *text) {
    return needs_part_copy(target, value) ? form_text("copy(%s)", {text}) : text;
}
