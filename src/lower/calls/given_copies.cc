// Variables that outlive a call, given to functions which change them meanwhile.
#include "lower/calls/given_copies.h"

#include "lower/expressions/operands.h"
#include "lower/expressions/value_lists.h"
#include "lower/library/kept_arguments.h"
#include "lower/program/called_functions.h"
#include "lower/program/program_files.h"
#include "lower/targets/shared_parts.h"
#include "support/allocation.h"
#include "syntax/names/assigned_values.h"
#include "syntax/names/names.h"

namespace {

constexpr uint32_t OUTLIVES_CALLS = SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED;

// What calls more functions than these is taken to change anything.
constexpr int MOST_FUNCTIONS = 64;

struct Reached {
    const Scope *scope;  // of a function that is in no other
    Reached *next;
};

// The functions that calls may come to.
struct Calls {
    Reached *first;
    Reached *last;
    int count;
    bool is_unknown;  // something is called that the file does not hold
};

void reach(Calls *calls, const Scope *scope) {
    if (!scope) {
        calls->is_unknown = true;
        return;
    }
    while (scope->outer) scope = scope->outer;
    for (const Reached *reached = calls->first; reached; reached = reached->next)
        if (reached->scope == scope) return;
    if (++calls->count > MOST_FUNCTIONS) {
        calls->is_unknown = true;
        return;
    }
    Reached *reached = AllocRecord<Reached>();
    *reached = {scope, nullptr};
    (calls->last ? calls->last->next : calls->first) = reached;
    calls->last = reached;
}

// A function of MATLAB's library calls only what it is given.
void reach_named(Calls *calls, const Symbol *symbol) {
    if (const Node *own = own_definition(symbol)) return reach(calls, scope_of(own));
    bool is_file = symbol->definition ||
                   (!symbol->library && symbol->last_named && has_file(symbol->last_named));
    calls->is_unknown |= is_file;
}

bool is_same_variable(const Symbol *symbol, const Symbol *other) {
    bool are_globals = symbol->flags & other->flags & SYMBOL_GLOBAL;
    return symbol == other || (are_globals && symbol->name == other->name);
}

// Sets a part of the variable where others have it: a shared one only where a nested function does.
bool changes_variable(const Symbol *symbol, const Symbol *variable) {
    if (!symbol->changes || !is_same_variable(symbol, variable)) return false;
    constexpr uint32_t ALWAYS = SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SET_INSIDE;
    return symbol->flags & ALWAYS;
}

// Whether the function, or one in it, changes the variable; what it calls is reached.
bool changes_in(const Scope *scope, const Symbol *variable, Calls *calls) {
    for (const Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        if (is_variable(symbol) ? changes_variable(symbol, variable) : calls->is_unknown)
            return true;
        if (!is_variable(symbol)) reach_named(calls, symbol);
    }
    for (const NodeCell *nested = scope->nested; nested; nested = nested->next)
        if (changes_in(scope_of(nested->node), variable, calls)) return true;
    return calls->is_unknown;
}

bool any_changes(Calls *calls, const Symbol *variable) {
    for (const Reached *reached = calls->first; reached; reached = reached->next)
        if (changes_in(reached->scope, variable, calls)) return true;
    return calls->is_unknown;
}

// All functions that are called or named in what the argument is, or in functions that it holds.
void reach_in(Calls *calls, const Node *node, bool is_held) {
    if (is_named(node)) {
        if (!is_variable(node->symbol)) return reach_named(calls, node->symbol);
        const AssignedValue *value = is_held ? nullptr : node->symbol->values;
        for (; value; value = value->next)
            if (const Node *function = held_function(value)) reach_in(calls, function, true);
        return;
    }
    for (const Node *child = first_child(node); child; child = child->next)
        reach_in(calls, child, is_held);
}

void reach_from(Calls *calls, const Node *name, const Node *arguments) {
    reach_in(calls, name, false);
    for (const Node *argument = arguments->first_child; argument; argument = argument->next)
        reach_in(calls, argument, false);
}

const Symbol *outliving_variable(const Node *argument) {
    argument = without_parens(argument);
    const Node *base = argument->kind == NODE_REFERENCE ? argument->first_child : argument;
    bool is_one = base->kind == NODE_NAME && is_variable(base->symbol);
    return is_one && (base->symbol->flags & OUTLIVES_CALLS) ? base->symbol : nullptr;
}

bool is_literal(const Node *node) {
    return node->kind == NODE_CELL || node->kind == NODE_MATRIX || node->kind == NODE_ROW;
}

// What becomes part of the value: elements of a literal, what struct and the like are given.
const Node *first_part(const Node *value) {
    if (is_literal(value)) return value->first_child;
    if (value->kind != NODE_REFERENCE) return nullptr;
    const Node *base = value->first_child;
    bool is_call = base->kind == NODE_NAME && !is_variable(base->symbol) &&
                   base->next->kind == NODE_ARGUMENTS && keeps_arguments(base);
    return is_call ? base->next->first_child : nullptr;
}

// Whether a variable among them outlives the call, and is changed in it.
bool has_changed_part(const Node *value, const Node *name, const Node *arguments, Calls *calls) {
    for (const Node *part = first_part(value); part; part = part->next) {
        const Node *inner = without_parens(part);
        if (has_changed_part(inner, name, arguments, calls)) return true;
        const Symbol *variable = outliving_variable(inner);
        if (!variable) continue;
        if (!calls->count && !calls->is_unknown) reach_from(calls, name, arguments);
        if (any_changes(calls, variable)) return true;
    }
    return false;
}

// What the function copies itself needs no other copy.
bool owns_parameter(const Node *name, int32_t position) {
    const Node *own = is_variable(name->symbol) ? nullptr : own_definition(name->symbol);
    const Scope *scope = own ? scope_of(own) : nullptr;
    const Symbol *symbol = scope ? scope->first_symbol : nullptr;
    while (symbol && symbol->position != position) symbol = symbol->next;
    return symbol && is_copied_parameter(symbol) && must_own(symbol);
}

}  // namespace

bool holds_changed_parts(const Node *name, const Node *arguments) {
    Calls calls = {};
    const Node *argument = arguments ? arguments->first_child : nullptr;
    for (; argument; argument = argument->next)
        if (has_changed_part(without_parens(argument), name, arguments, &calls)) return true;
    return false;
}

void copy_changed_arguments(const Node *name, const Node *arguments, ExprList *values) {
    const Node *argument = arguments ? arguments->first_child : nullptr;
    vExpr *cell = values->first;
    Calls calls = {};
    const Symbol *asked = nullptr;
    bool changes = false;
    for (int32_t position = 1; argument && cell && !is_value_list(argument, false);
         argument = argument->next, cell = cell->next, position++) {
        const Symbol *variable = outliving_variable(argument);
        if (!variable || owns_parameter(name, position)) continue;
        if (!calls.count && !calls.is_unknown) reach_from(&calls, name, arguments);
        if (variable != asked) changes = any_changes(&calls, variable);
        asked = variable;
        const char *text = changes ? given_text(argument, cell->item->text) : cell->item->text;
        if (text != cell->item->text) cell->item = new_call_leaf(text);
    }
}
