// Parts of variables.
#include "lower/shared_parts.h"

#include "lower/context.h"
#include "syntax/values/shapes.h"
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

// What is held plainly is never changed inside.
static bool is_immutable(Value value) {
    constexpr Value PLAIN = ARITHMETIC | MAY_BE_TEXT | MAY_BE_FUNCTION;
    return is_surely(value, PLAIN) && is_single(value);
}

bool needs_kept_copy(const Node *value) {
    const Symbol *from = base_symbol(value);
    if (!from || is_immutable(value_of(value))) return false;
    uint32_t changes = value->kind == NODE_NAME ? SYMBOL_CHANGED : SYMBOL_CHANGED_DEEPLY;
    return (from->flags & changes) || (Lowering.scope->flags & CHANGES_DEEPLY);
}
