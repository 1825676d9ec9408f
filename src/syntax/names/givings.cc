// Variables that are given away.
#include "syntax/names/givings.h"

#include <string.h>

#include "support/allocation.h"
#include "syntax/names/assigned_values.h"
#include "syntax/names/later_uses.h"
#include "syntax/names/part_changes.h"
#include "syntax/scan/spellings.h"

/* An assignment of a variable as a whole. */
struct Giving {
    Node *value;
    const Node *target;
    uint32_t statement;     // its place
    const Node *loop;       /* statement around it, or null */
    const Node *last_named; /* where its variable is named last while it is not used again */
    Reach reach;            /* from it */
    bool is_left;           /* its variable is used after it */
    const Giving *given;    /* another one of the same variable, settled before, or null */
    Giving *before;         /* in the text, or null */
};

namespace {

const Node *base_of(const Node *target) {
    return target->kind == NODE_REFERENCE ? target->first_child : target;
}

// What they hold at the end lives on: by themselves, or in what takes it.
constexpr uint32_t SEEN_OUTSIDE =
    SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT | SYMBOL_OUTPUT;
constexpr uint32_t LIVE_ON = SEEN_OUTSIDE | SYMBOL_LIVES_ON;

// Whether the value may be held by another variable, too. An index makes a new array.
bool may_be_shared(const Symbol *symbol, const Node *node) {
    node = without_parens(node);
    bool is_selection = node->kind == NODE_REFERENCE && last_selector(node)->kind == NODE_ARGUMENTS;
    if (node->is_given_away || is_selection) return false;
    const Node *base = base_of(node);
    return base->kind == NODE_NAME && is_variable(base->symbol) && base->symbol != symbol;
}

// Whether it is set to what another variable holds: that would be copied there instead, if it is
// not copied anyway, as parts of it are set.
bool is_set_to_shared(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next) {
        if (value->kind != VALUE_WHOLE || !may_be_shared(symbol, value->node)) continue;
        const LaterUse *later = later_use(symbol, value->statement);
        if (!later || !later->changes) return true;
    }
    return false;
}

// Whether all that it holds has been made for it.
bool can_own(const Symbol *symbol, const Scope *scope) {
    if (!is_variable(symbol) || symbol->scope != scope) return false;
    if (symbol->flags & (SEEN_OUTSIDE | SYMBOL_OPTIONS)) return false;
    if (is_set_to_shared(symbol)) return false;
    if (symbol->position > 0) return is_copied_parameter(symbol) && owns_given_value(symbol);
    return !(scope->flags & HAS_VARARGIN) || strcmp(symbol->name, "varargin") != 0;
}

bool is_inside(const Node *node, const Node *outer) {
    return node->offset >= outer->offset && end_of(node) <= end_of(outer);
}

// Whether each turn of the loop that comes to the giving sets the variable first: in a block around
// it.
bool is_set_in_turns(const Symbol *symbol, const Giving *giving) {
    const Node *block = symbol->set_in;
    return block && block->kind == NODE_BLOCK && is_inside(block, giving->loop) &&
           is_inside(giving->target, block);
}

// Whether the value is named for the last time.
bool is_last_use(const Giving *giving) {
    const Node *value = giving->value;
    return value->kind == NODE_NAME && giving->last_named &&
           value->symbol->last_named == giving->last_named;
}

// x or s.f.g: what is put there again replaces itself.
bool is_one_place(const Node *target) {
    const Node *selector = target->kind == NODE_REFERENCE ? second_child(target) : nullptr;
    while (selector && selector->kind == NODE_FIELD) selector = selector->next;
    return !selector;
}

// Whether both are fields of the same variable, and not the same one.
bool are_other_fields(const Node *value, const Node *other) {
    if (value->kind != NODE_REFERENCE || other->kind != NODE_REFERENCE) return false;
    const Node *field = second_child(value);
    const Node *other_field = second_child(other);
    return field->kind == NODE_FIELD && other_field->kind == NODE_FIELD &&
           field->text != other_field->text;
}

// More of a variable are not looked through.
constexpr int MOST_GIVINGS = 16;

// Whether what the variable holds has one owner where it has been given before: another part of it,
// or to the same place.
bool has_one_owner(const Giving *giving) {
    int count = 0;
    for (const Giving *other = base_of(giving->value)->symbol->given; other; other = other->given) {
        bool is_replaced =
            is_one_place(giving->target) && is_same_tree(giving->target, other->target);
        if (!is_replaced && !are_other_fields(giving->value, other->value)) return false;
        if (++count == MOST_GIVINGS) return false;
    }
    return true;
}

bool changes_later(const Giving *giving) {
    const Symbol *from = base_of(giving->value)->symbol;
    const Symbol *taker = base_of(giving->target)->symbol;
    return changes_inside(from, giving->value, 0, &giving->reach, giving->statement) ||
           changes_inside(taker, giving->target, 0, &giving->reach, giving->statement);
}

// Whether an output, and nothing else, is given it, and neither of them changes it any more: when
// the function has ended, the output has it alone.
bool is_left_to_output(const Giving *giving) {
    const Symbol *from = base_of(giving->value)->symbol;
    const Symbol *taker = base_of(giving->target)->symbol;
    if ((taker->flags & LIVE_ON) != SYMBOL_OUTPUT || taker == from) return false;
    if (from->loops || (from->flags & SYMBOL_TAKES_PARTS) || !has_one_owner(giving)) return false;
    return !changes_later(giving);
}

// Whether nobody uses the variable after it before it is set as a whole.
bool uses_up(const Giving *giving) {
    const Symbol *taker = base_of(giving->target)->symbol;
    if (giving->value->kind != NODE_NAME) return false;
    if (!giving->value->symbol->changes && !taker->changes) return false;  // it may be shared
    const LaterUse *later = later_use(giving->value->symbol, giving->statement);
    return later && !later->is_used;
}

bool may_give(Giving *giving) {
    bool is_last = is_last_use(giving) || uses_up(giving);
    if (!is_last && !is_left_to_output(giving)) return false;
    giving->is_left = !is_last;
    bool is_repeated = giving->loop && (is_last || !is_one_place(giving->target));
    return !is_repeated || uses_up(giving) ||
           is_set_in_turns(base_of(giving->value)->symbol, giving);
}

// What is known of what the taker does with it. Answers whether that is new.
bool pass_on(const Giving *giving) {
    Symbol *from = base_of(giving->value)->symbol;
    bool lives_on = base_of(giving->target)->symbol->flags & LIVE_ON;
    bool is_new = lives_on && !(from->flags & SYMBOL_LIVES_ON);
    if (lives_on) from->flags |= SYMBOL_LIVES_ON;
    return pass_part_changes(giving->value, giving->target) || is_new;
}

void settle_giving(Giving *giving, const Scope *scope) {
    Symbol *from = base_of(giving->value)->symbol;
    if (!may_give(giving) || !can_own(from, scope)) return;
    giving->value->is_given_away = true;
    from->flags |= SYMBOL_GIVEN_AWAY;
    giving->given = from->given;
    from->given = giving;
    pass_on(giving);
}

// In a loop the taker may give it on further up in the text. More rounds are not gone.
constexpr int MOST_ROUNDS = 8;

void settle_in_loops(const Givings *givings) {
    bool is_new = true;
    for (int round = 0; is_new && round < MOST_ROUNDS; round++) {
        is_new = false;
        for (Giving *giving = givings->last; giving; giving = giving->before)
            if (giving->value->is_given_away) is_new |= pass_on(giving);
    }
    for (Giving *giving = givings->last; giving; giving = giving->before)
        if ((is_new && giving->loop) || (giving->is_left && changes_later(giving)))
            giving->value->is_given_away = false;
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
    Node *value = target->next;
    if (base_of(value)->kind != NODE_NAME || base_of(target)->kind != NODE_NAME) return;
    bool is_selection =
        value->kind == NODE_REFERENCE && last_selector(value)->kind == NODE_ARGUMENTS;
    if (is_selection) return;
    if (outermost && outermost->offset < givings->last_unseen) return;
    uint32_t since = outermost ? outermost->offset : target->offset;
    Giving *giving = AllocRecord<Giving>();
    *giving = {value, target,  assignment->offset, loop, base_of(value), {since, givings->others},
               false, nullptr, givings->last};
    givings->last = giving;
}

void note_unseen_uses(Givings *givings, const Node *name) {
    if (!is_known_to(name->text, READS_VARIABLES)) return;
    givings->last = nullptr;
    givings->last_unseen = end_of(name);
}

void end_giving_branch(const Givings *givings, const Giving *before) {
    for (Giving *giving = givings->last; giving && giving != before; giving = giving->before)
        if (base_of(giving->value)->symbol->last_named != giving->last_named)
            giving->last_named = nullptr;
}

void end_giving_branches(const Givings *givings, const Giving *before) {
    for (Giving *giving = givings->last; giving && giving != before; giving = giving->before)
        if (giving->last_named) giving->last_named = base_of(giving->value)->symbol->last_named;
}

void finish_givings(const Givings *givings, const Scope *scope) {
    if (!givings->last || scope->owner->kind != NODE_FUNCTION || has_captured(scope)) return;
    for (Giving *giving = givings->last; giving; giving = giving->before)
        settle_giving(giving, scope);
    settle_in_loops(givings);
}
