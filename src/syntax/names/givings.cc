// Variables that are given away.
#include "syntax/names/givings.h"

#include <string.h>

#include <algorithm>

#include "support/allocation.h"
#include "syntax/names/assigned_values.h"
#include "syntax/scan/spellings.h"

/* An assignment of a variable as a whole. */
struct Giving {
    Node *value;
    const Node *target;
    const Node *loop;       /* statement around it, or null */
    const Node *last_named; /* where its variable is named last while it is not used again */
    Giving *before;         /* in the text, or null */
};

namespace {

const Node *base_of(const Node *target) {
    return target->kind == NODE_REFERENCE ? target->first_child : target;
}

// What they hold at the end lives on.
constexpr uint32_t LIVE_ON = SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT |
                             SYMBOL_OUTPUT | SYMBOL_LIVES_ON;

// Whether it is set to what another variable holds: that would be copied there instead.
bool is_set_to_shared(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next) {
        const Node *node = value->kind == VALUE_WHOLE ? value->node : nullptr;
        if (node) node = without_parens(node);
        const Node *base = node ? base_of(node) : nullptr;
        if (base && base->kind == NODE_NAME && is_variable(base->symbol) && !node->is_given_away)
            return true;
    }
    return false;
}

// Whether all that it holds has been made for it.
bool can_own(const Symbol *symbol, const Scope *scope) {
    if (!is_variable(symbol) || symbol->scope != scope) return false;
    if (symbol->flags & (LIVE_ON | SYMBOL_OPTIONS)) return false;
    if (is_set_to_shared(symbol)) return false;
    if (symbol->position > 0) return is_copied_parameter(symbol) && owns_given_value(symbol);
    return !(scope->flags & HAS_VARARGIN) || strcmp(symbol->name, "varargin") != 0;
}

// Whether each turn of the loop sets it before it uses it.
bool is_set_in_turns(const Symbol *symbol, const Node *loop) {
    for (const Node *child = loop->first_child; child; child = child->next)
        if (child->kind == NODE_BLOCK && child == symbol->set_in) return true;
    return false;
}

void settle_giving(const Giving *giving, const Scope *scope) {
    Symbol *from = giving->value->symbol;
    const Symbol *taker = base_of(giving->target)->symbol;
    if (from->last_named != giving->last_named || !can_own(from, scope)) return;
    if (giving->loop && !is_set_in_turns(from, giving->loop)) return;
    giving->value->is_given_away = true;
    from->flags |= SYMBOL_GIVEN_AWAY;
    if (taker->flags & LIVE_ON) from->flags |= SYMBOL_LIVES_ON;
    uint32_t depth = depth_of(giving->target);
    if (taker->depth_changed > depth)
        from->depth_changed = std::max(from->depth_changed, taker->depth_changed - depth);
}

// A function that is made may keep what a variable shares with another one.
bool has_captured(const Scope *scope) {
    for (const Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if ((symbol->flags & SYMBOL_CAPTURED) && is_variable(symbol)) return true;
    return false;
}

}  // namespace

void note_giving(Givings *givings, const Node *assignment, const Node *loop,
                 const Node *outermost) {
    const Node *target = assignment->first_child;
    if (target->next->kind != NODE_NAME || base_of(target)->kind != NODE_NAME) return;
    if (outermost && outermost->offset < givings->last_unseen) return;
    Giving *giving = AllocRecord<Giving>();
    *giving = {target->next, target, loop, target->next, givings->last};
    givings->last = giving;
}

void note_unseen_uses(Givings *givings, const Node *name) {
    if (!is_known_to(name->text, READS_VARIABLES)) return;
    givings->last = nullptr;
    givings->last_unseen = end_of(name);
}

void end_giving_branch(const Givings *givings, const Giving *before) {
    for (Giving *giving = givings->last; giving && giving != before; giving = giving->before)
        if (giving->value->symbol->last_named != giving->last_named) giving->last_named = nullptr;
}

void end_giving_branches(const Givings *givings, const Giving *before) {
    for (Giving *giving = givings->last; giving && giving != before; giving = giving->before)
        if (giving->last_named) giving->last_named = giving->value->symbol->last_named;
}

void finish_givings(const Givings *givings, const Scope *scope) {
    if (!givings->last || scope->owner->kind != NODE_FUNCTION || has_captured(scope)) return;
    for (const Giving *giving = givings->last; giving; giving = giving->before)
        if (giving->last_named) settle_giving(giving, scope);
}
