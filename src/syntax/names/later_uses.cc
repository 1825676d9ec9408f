// What is done with variables after a statement: a walk against the order of execution.
//
// The state of a variable is what may be done with it from the place of the walk on. Branches begin
// with the state after them and are joined. A loop adds to the state at its end what its body does
// before it sets the variable. Where a jump stands in front, nothing is taken for set: what the
// jump leads to counts as well. Neither is it in a try, which an error may leave anywhere.
#include "syntax/names/later_uses.h"

#include <algorithm>

#include "support/allocation.h"
#include "syntax/names/part_changes.h"
#include "syntax/scan/spellings.h"

namespace {

struct State {
    uint64_t changes;
    bool is_used;
};

State operator|(const State &one, const State &other) {
    return {one.changes | other.changes, one.is_used || other.is_used};
}

}  // namespace

/* Of a variable. */
struct LaterUses {
    State state;      // where the walk is
    uint32_t epoch;   // that it belongs to: one of another epoch is empty
    State joined;     // of the branches of a statement
    uint32_t join;    // number of that statement
    int32_t count;    // of those branches
    uint32_t seen;    // number of the list that has it
    LaterUse *first;  // the first one in the text
    mutable const LaterUse *last_found;
    bool is_mixed;  // they are not in the order of the text
};

namespace {

// What a variable's state was before a change; and a list of states.
struct Cell {
    LaterUses *of;
    State state;
    uint32_t epoch;
    Cell *next;
};

struct Walk {
    Scope *scope;
    LaterUses *everything;  // stands for all variables, where the text does not tell which are used
    Cell *changes;          // the last one first, while some may be taken back
    int open;               // how many may take them back
    Cell *free;
    uint32_t epoch;
    uint32_t clock;          // of epochs, joins and lists
    uint32_t setting_until;  // what is set from this byte on may not be set
    bool records;
};

Cell *new_cell(Walk *walk, LaterUses *of, const State &state, Cell *next) {
    Cell *cell = walk->free;
    if (cell)
        walk->free = cell->next;
    else
        cell = AllocRecord<Cell>();
    *cell = {of, state, of->epoch, next};
    return cell;
}

void free_cells(Walk *walk, Cell *first) {
    while (first) {
        Cell *next = first->next;
        first->next = walk->free;
        walk->free = first;
        first = next;
    }
}

State state_of(const Walk *walk, const LaterUses *of) {
    return of->epoch == walk->epoch ? of->state : State{};
}

void set_state(Walk *walk, LaterUses *of, const State &state) {
    if (walk->open > 0) walk->changes = new_cell(walk, of, of->state, walk->changes);
    of->state = state;
    of->epoch = walk->epoch;
}

void add_state(Walk *walk, LaterUses *of, const State &added) {
    State state = state_of(walk, of);
    bool is_there = (state.is_used || !added.is_used) && !(added.changes & ~state.changes);
    if (!is_there) set_state(walk, of, state | added);
}

// Takes back the changes after mark; answers the states that they have led to, each once.
Cell *take_back(Walk *walk, const Cell *mark) {
    Cell *states = nullptr;
    uint32_t list = ++walk->clock;
    while (walk->changes != mark) {
        Cell *change = walk->changes;
        walk->changes = change->next;
        if (change->of->seen != list) {
            change->of->seen = list;
            states = new_cell(walk, change->of, state_of(walk, change->of), states);
        }
        change->of->state = change->state;
        change->of->epoch = change->epoch;
        change->next = walk->free;
        walk->free = change;
    }
    return states;
}

LaterUses *new_uses() {
    LaterUses *uses = AllocRecord<LaterUses>();
    *uses = {};
    return uses;
}

// Null for what is no variable of the function.
LaterUses *uses_of(const Walk *walk, Symbol *symbol) {
    if (symbol->scope != walk->scope || !is_variable(symbol)) return nullptr;
    if (!symbol->later) symbol->later = new_uses();
    return symbol->later;
}

void use(Walk *walk, Symbol *symbol) {
    if (LaterUses *of = uses_of(walk, symbol)) add_state(walk, of, {0, true});
}

// Of an expression: all names in it are read.
void walk_reads(Walk *walk, const Node *node) {
    if (node->kind == NODE_NUMBER) return;
    if (node->kind == NODE_NAME) {
        if (is_variable(node->symbol)) return use(walk, node->symbol);
        if (is_known_to(node->text, READS_VARIABLES)) add_state(walk, walk->everything, {0, true});
        return;
    }
    for (const Node *child = first_child(node); child; child = child->next) walk_reads(walk, child);
}

void walk_siblings(Walk *walk, const Node *first) {
    for (; first; first = first->next) walk_reads(walk, first);
}

// Whether nobody else holds the value: what operators give is new.
bool is_new(const Node *value) {
    if (value->kind == NODE_NUMBER || value->kind == NODE_STRING) return true;
    if (value->kind != NODE_CHAIN) return false;
    for (const Node *child = value->first_child; child; child = child->next)
        if (child->kind == NODE_POSTFIX) return false;
    return true;
}

// Whether the value may hold what the variable holds, or a part of it, so that it goes on there.
bool may_hold(const Node *value, const Symbol *symbol) {
    if (is_named(value)) return value->symbol == symbol;
    if (is_new(value)) return false;
    for (const Node *child = first_child(value); child; child = child->next)
        if (may_hold(child, symbol)) return true;
    return false;
}

// value: null where the variable takes a new one.
void walk_target(Walk *walk, const Node *target, const Node *value) {
    if (target->kind == NODE_NAME) {
        LaterUses *of = uses_of(walk, target->symbol);
        bool is_set = target->offset < walk->setting_until;
        if (of && is_set && !(value && may_hold(value, target->symbol))) set_state(walk, of, {});
        return;
    }
    if (target->kind != NODE_REFERENCE) return;
    const Node *base = target->first_child;
    if (base->kind != NODE_NAME) return walk_reads(walk, target);
    if (LaterUses *of = uses_of(walk, base->symbol))
        add_state(walk, of, {changes_at_target(base->symbol, target), true});
    walk_siblings(walk, base->next);
}

void record(Walk *walk, Symbol *symbol, uint32_t statement, const State &state) {
    LaterUses *of = uses_of(walk, symbol);
    if (!of) return;
    LaterUse *first = of->first;
    if (first && first->offset == statement) {
        first->is_used |= state.is_used;
        first->changes |= state.changes;
        return;
    }
    of->is_mixed |= first && first->offset < statement;
    LaterUse *added = AllocRecord<LaterUse>();
    *added = {statement, state.is_used, state.changes, first};
    of->first = added;
}

// The states of all variables that are named in the node, after a statement.
void record_all(Walk *walk, const Node *node, uint32_t statement) {
    if (node->kind == NODE_NAME) {
        const LaterUses *of = uses_of(walk, node->symbol);
        if (!of) return;
        State everything = state_of(walk, walk->everything);
        return record(walk, node->symbol, statement, state_of(walk, of) | everything);
    }
    if (node->kind == NODE_NUMBER) return;
    for (const Node *child = first_child(node); child; child = child->next)
        record_all(walk, child, statement);
}

// Whether variables may be held as they are. What a call gives is not looked into.
bool may_share(const Node *value) {
    value = without_parens(value);
    if (value->kind == NODE_CELL || value->kind == NODE_MATRIX) return true;
    const Node *base = value->kind == NODE_REFERENCE ? value->first_child : value;
    return base->kind == NODE_NAME && is_variable(base->symbol);
}

// Before and after the targets are set.
void walk_assignment(Walk *walk, const Node *statement) {
    const Node *target = statement->first_child;
    bool records = walk->records && may_share(target->next);
    if (records) record_all(walk, statement, statement->offset);
    if (target->kind == NODE_TARGETS)
        for (const Node *child = target->first_child; child; child = child->next)
            walk_target(walk, child, target->next);
    else
        walk_target(walk, target, target->next);
    if (records && target->kind != NODE_NAME) record_all(walk, statement, statement->offset);
    if (statement->op != OPERATOR_NONE) walk_reads(walk, target);
    walk_siblings(walk, target->next);
}

void walk_block(Walk *walk, const Node *block);

void join(const Cell *states, uint32_t number) {
    for (const Cell *cell = states; cell; cell = cell->next) {
        LaterUses *of = cell->of;
        if (of->join != number) {
            of->join = number;
            of->joined = {};
            of->count = 0;
        }
        of->joined = of->joined | cell->state;
        of->count++;
    }
}

// Sets what the branches have led to, where each of the states has been joined.
void set_joined(Walk *walk, const Cell *states, uint32_t number, int32_t branches) {
    for (const Cell *cell = states; cell; cell = cell->next) {
        LaterUses *of = cell->of;
        if (of->join != number) continue;
        of->join = 0;
        State after = of->count < branches ? state_of(walk, of) : State{};
        set_state(walk, of, of->joined | after);
    }
}

// if and switch; the conditions are only read.
void walk_branches(Walk *walk, const Node *statement) {
    int32_t branches = 1;  // where none of them is taken
    Cell *all = nullptr;
    const Cell *mark = walk->changes;
    walk->open++;
    for (const Node *child = statement->first_child; child; child = child->next) {
        bool is_rest = child->kind == NODE_ELSE || child->kind == NODE_OTHERWISE;
        if (!is_rest && child->kind != NODE_BRANCH && child->kind != NODE_CASE) continue;
        const Node *block = is_rest ? child->first_child : second_child(child);
        walk_block(walk, block);
        Cell *states = take_back(walk, mark);
        branches += !is_rest;
        while (states) {
            Cell *next = states->next;
            states->next = all;
            all = states;
            states = next;
        }
    }
    walk->open--;
    uint32_t number = ++walk->clock;
    join(all, number);  // not before: statements inside of branches join the same variables
    set_joined(walk, all, number, branches);
    free_cells(walk, all);
    for (const Node *child = statement->first_child; child; child = child->next) {
        bool has_value = child->kind == NODE_BRANCH || child->kind == NODE_CASE;
        if (has_value) walk_reads(walk, child->first_child);
        bool is_subject = !has_value && child->kind != NODE_ELSE && child->kind != NODE_OTHERWISE;
        if (is_subject) walk_reads(walk, child);
    }
}

const Node *body_of(const Node *loop) {
    switch (loop->kind) {
        case NODE_FOR: return third_child(loop);
        case NODE_WHILE: return second_child(loop);
        default: return loop->first_child;
    }
}

// The first jump of the loop itself.
uint32_t first_jump(const Node *node) {
    switch (node->kind) {
        case NODE_BREAK:
        case NODE_CONTINUE: return node->offset;
        case NODE_IF:
        case NODE_BRANCH:
        case NODE_ELSE:
        case NODE_SWITCH:
        case NODE_CASE:
        case NODE_OTHERWISE:
        case NODE_TRY:
        case NODE_UNWIND:
        case NODE_BLOCK: break;
        default: return UINT32_MAX;
    }
    uint32_t first = UINT32_MAX;
    for (const Node *child = node->first_child; child; child = child->next)
        first = std::min(first, first_jump(child));
    return first;
}

// One turn, from its end to its beginning.
void walk_turn(Walk *walk, const Node *loop) {
    uint32_t outer = walk->setting_until;
    walk->setting_until = std::min(outer, first_jump(body_of(loop)));
    if (loop->kind == NODE_DO_UNTIL) walk_reads(walk, second_child(loop));
    walk_block(walk, body_of(loop));
    if (loop->kind == NODE_FOR) walk_target(walk, loop->first_child, second_child(loop));
    if (loop->kind == NODE_WHILE) walk_reads(walk, loop->first_child);
    walk->setting_until = outer;
}

// What a turn does with variables before it sets them.
Cell *states_of_turn(Walk *walk, const Node *loop) {
    bool records = walk->records;
    uint32_t epoch = walk->epoch;
    const Cell *mark = walk->changes;
    walk->records = false;
    walk->epoch = ++walk->clock;
    walk->open++;
    walk_turn(walk, loop);
    Cell *states = take_back(walk, mark);
    walk->open--;
    walk->epoch = epoch;
    walk->records = records;
    return states;
}

void walk_loop(Walk *walk, const Node *loop) {
    Cell *states = states_of_turn(walk, loop);
    for (const Cell *cell = states; cell; cell = cell->next) add_state(walk, cell->of, cell->state);
    free_cells(walk, states);
    if (walk->records) {
        const Cell *mark = walk->changes;
        walk->open++;
        walk_turn(walk, loop);
        free_cells(walk, take_back(walk, mark));
        walk->open--;
    }
    bool may_record = loop->kind == NODE_FOR && walk->records;
    if (may_record && may_share(second_child(loop))) {
        record_all(walk, second_child(loop), loop->offset);
        record_all(walk, loop->first_child, loop->offset);
    }
    if (loop->kind == NODE_FOR) walk_reads(walk, second_child(loop));
}

// An error leads from anywhere in the body to the handler.
void walk_try(Walk *walk, const Node *statement) {
    uint32_t outer = walk->setting_until;
    const Node *body = statement->first_child;
    const Node *handler = has_flag(statement, HAS_IDENTIFIER) ? third_child(statement) : body->next;
    walk->setting_until = 0;
    walk_block(walk, handler);
    walk_block(walk, body);
    walk->setting_until = outer;
}

// The outputs are given back.
void walk_end(Walk *walk) {
    for (Symbol *symbol = walk->scope->first_symbol; symbol; symbol = symbol->next) {
        if (!(symbol->flags & SYMBOL_OUTPUT)) break;  // they come first
        use(walk, symbol);
    }
}

void walk_statement(Walk *walk, const Node *statement) {
    switch (statement->kind) {
        case NODE_COMMENT:
        case NODE_FUNCTION:
        case NODE_BREAK:
        case NODE_CONTINUE: return;
        case NODE_ASSIGN:
        case NODE_MULTI_ASSIGN: return walk_assignment(walk, statement);
        case NODE_IF:
        case NODE_SWITCH: return walk_branches(walk, statement);
        case NODE_FOR:
        case NODE_WHILE:
        case NODE_DO_UNTIL: return walk_loop(walk, statement);
        case NODE_TRY: return walk_try(walk, statement);
        case NODE_UNWIND:
            walk_block(walk, second_child(statement));
            return walk_block(walk, statement->first_child);
        case NODE_RETURN: return walk_end(walk);
        case NODE_BAD: return add_state(walk, walk->everything, {0, true});
        default: return walk_reads(walk, statement);
    }
}

void walk_block(Walk *walk, const Node *block) {
    NodeCell *last = nullptr;
    for (Node *node = block->first_child; node; node = node->next) {
        NodeCell *cell = AllocRecord<NodeCell>();
        *cell = {node, last};
        last = cell;
    }
    for (; last; last = last->next) walk_statement(walk, last->node);
}

void note_later_uses(Scope *scope) {
    scope->flags |= HAS_LATER_USES;
    if (scope->owner->kind != NODE_FUNCTION) return;
    Walk walk = {};
    walk.scope = scope;
    walk.everything = new_uses();
    walk.epoch = walk.clock = 1;
    walk.setting_until = UINT32_MAX;
    walk.records = true;
    walk_end(&walk);
    walk_block(&walk, child_of_kind(scope->owner, NODE_BLOCK));
}

}  // namespace

const LaterUse *later_use(const Symbol *symbol, uint32_t statement) {
    constexpr uint32_t ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    if (symbol->flags & ELSEWHERE) return nullptr;
    if (!(symbol->scope->flags & HAS_LATER_USES)) note_later_uses(symbol->scope);
    const LaterUses *uses = symbol->later;
    if (!uses || uses->is_mixed) return nullptr;
    const LaterUse *found = uses->last_found;
    if (!found || found->offset > statement) found = uses->first;
    while (found && found->offset < statement) found = found->next;
    if (!found || found->offset != statement) return nullptr;
    uses->last_found = found;
    return found;
}
