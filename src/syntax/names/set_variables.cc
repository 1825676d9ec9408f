// Which variables are surely set.
#include "syntax/names/set_variables.h"

#include "support/allocation.h"
#include "syntax/scan/spellings.h"

struct SetCell {
    Symbol *symbol;
    SetCell *next;
};

/* A variable that branches of a statement set. */
struct SetBranchCell {
    Symbol *symbol;
    const SetBranches *of;
    int32_t count;         // of these branches
    SetBranchCell *outer;  // the variable's, of a statement around; null for none
    SetBranchCell *next;
};

namespace {

void use_given(Symbol *symbol) {
    if (symbol->position > 0) symbol->flags |= SYMBOL_GIVEN_COUNTS;
}

void own_given(Symbol *symbol) {
    if (symbol->position > 0) symbol->flags |= SYMBOL_GIVEN_IS_OWN;
}

void return_given(Symbol *symbol) {
    use_given(symbol);
    own_given(symbol);
}

void set(SetWalk *walk, Symbol *symbol) {
    if (symbol->is_set) return;
    bool is_returned = walk->last_return > symbol->unset_since;
    if (is_returned && (symbol->flags & SYMBOL_OUTPUT)) return_given(symbol);
    symbol->is_set = true;
    SetCell *cell = AllocRecord<SetCell>();
    *cell = {symbol, walk->in_block};
    walk->in_block = cell;
}

void unset(SetWalk *walk, Symbol *symbol) {
    symbol->is_set = false;
    symbol->unset_since = ++walk->clock;
}

bool raises_error(const Node *statement) {
    if (statement->kind != NODE_EXPRESSION) return false;
    const Node *node = statement->first_child;
    if (node->kind == NODE_REFERENCE) node = node->first_child;
    return node->kind == NODE_NAME && is_known_to(node->text, RAISES_ERROR);
}

// Whether what follows the statement of the block is run after it.
bool goes_on(const Node *block) {
    const Node *last = nullptr;
    for (const Node *node = block->first_child; node; node = node->next)
        if (node->kind != NODE_COMMENT) last = node;
    if (!last) return true;
    bool is_jump =
        last->kind == NODE_RETURN || last->kind == NODE_BREAK || last->kind == NODE_CONTINUE;
    return !is_jump && !raises_error(last);
}

void count_branch(SetBranches *branches, Symbol *symbol) {
    SetBranchCell *cell = symbol->in_branches;
    if (!cell || cell->of != branches) {
        cell = AllocRecord<SetBranchCell>();
        *cell = {symbol, branches, 0, symbol->in_branches, branches->sets};
        symbol->in_branches = branches->sets = cell;
    }
    cell->count++;
}

}  // namespace

void note_set_reading(Symbol *symbol) {
    if (!symbol->is_set) use_given(symbol);
}

void note_whole_set(SetWalk *walk, Symbol *symbol) { set(walk, symbol); }

void note_part_set(SetWalk *walk, Symbol *symbol) {
    if (!symbol->is_set) {
        use_given(symbol);
        own_given(symbol);
    }
    set(walk, symbol);
}

void note_set_return(SetWalk *walk) { walk->last_return = ++walk->clock; }

SetCell *begin_set_block(SetWalk *walk) {
    SetCell *outer = walk->in_block;
    walk->in_block = nullptr;
    return outer;
}

void end_set_block(SetWalk *walk, SetCell *outer) {
    for (const SetCell *cell = walk->in_block; cell; cell = cell->next)
        if (cell->symbol->is_set) unset(walk, cell->symbol);
    walk->in_block = outer;
}

void end_set_branch(SetWalk *walk, SetCell *outer, SetBranches *branches, const Node *block) {
    bool counts = goes_on(block);
    if (counts) branches->count++;
    for (const SetCell *cell = walk->in_block; cell; cell = cell->next) {
        Symbol *symbol = cell->symbol;
        if (!symbol->is_set) continue;
        if (counts) count_branch(branches, symbol);
        unset(walk, symbol);
    }
    walk->in_block = outer;
}

void end_set_branches(SetWalk *walk, const SetBranches *branches) {
    for (const SetBranchCell *cell = branches->sets; cell; cell = cell->next) {
        cell->symbol->in_branches = cell->outer;
        if (branches->is_whole && cell->count == branches->count) set(walk, cell->symbol);
    }
}

void finish_sets(SetWalk *walk, const Scope *scope) {
    note_set_return(walk);
    constexpr uint32_t HIDDEN = SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        bool is_returned = !symbol->is_set && (symbol->flags & SYMBOL_OUTPUT);
        if (is_returned || (symbol->flags & HIDDEN)) return_given(symbol);
    }
}
