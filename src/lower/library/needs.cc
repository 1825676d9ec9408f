// What a form needs to know of its arguments.
#include "lower/library/needs.h"

#include <stdlib.h>
#include <string.h>

#include "lower/expressions.h"
#include "lower/program_files.h"
#include "syntax/names/names.h"
#include "syntax/values/values.h"

namespace {

using Test = bool (*)(const Node *argument);

bool is_true_of_all(const OfferedCall *call, Test test) {
    for (const Node *argument = call->first; argument; argument = argument->next)
        if (!test(without_parens(argument))) return false;
    return true;
}

bool is_no_text(const Node *argument) { return argument->kind != NODE_STRING; }

// A whole number of the source, or 0.
long count_of(const Node *argument) {
    bool is_count = argument->kind == NODE_NUMBER && has_flag(argument, NUMBER_INTEGER);
    return is_count ? strtol(argument->text, nullptr, 10) : 0;
}

bool is_count(const Node *argument) { return count_of(argument) > 0; }

const Node *last_argument(const OfferedCall *call) {
    const Node *last = call->first;
    while (last->next) last = last->next;
    return without_parens(last);
}

bool is_second_single(const OfferedCall *call) {
    return call->count < 2 || is_surely_single(call->first->next);
}

bool is_empty_literal(const Node *argument) {
    argument = without_parens(argument);
    return argument->kind == NODE_MATRIX && !argument->first_child;
}

bool is_varargin(const Node *argument) {
    const Symbol *symbol = argument->symbol;
    if (strcmp(argument->text, "varargin") != 0 || !symbol->scope) return false;
    constexpr uint32_t SET = SYMBOL_ASSIGNED | SYMBOL_CHANGED | SYMBOL_GLOBAL;
    return (symbol->scope->flags & HAS_VARARGIN) && !(symbol->flags & SET);
}

// x(:) and s.f(:), where x and s are variables.
bool is_column(const Node *reference) {
    const Node *base = reference->first_child;
    const Node *last = base->next;
    while (last->next) last = last->next;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return false;
    const Node *argument = last->first_child;
    return last->kind == NODE_ARGUMENTS && argument && !argument->next &&
           argument->kind == NODE_COLON;
}

bool is_surely_vector(const Node *argument) {
    switch (argument->kind) {
        case NODE_RANGE:
        case NODE_STRING: return true;
        case NODE_NAME: return is_varargin(argument);
        case NODE_REFERENCE: return is_column(argument);
        default: return is_surely_single(argument);
    }
}

}  // namespace

bool meets_needs(const OfferedCall *call, uint16_t needs) {
    if ((needs & FOR_LIBRARY) && !CurrentFile->is_library) return false;
    if ((needs & NEEDS_NO_TEXT) && !is_true_of_all(call, is_no_text)) return false;
    if ((needs & NEEDS_SINGLES) && !is_true_of_all(call, is_surely_single)) return false;
    if ((needs & NEEDS_COUNTS) && !is_true_of_all(call, is_count)) return false;
    if ((needs & NEEDS_SECOND_SINGLE) && !is_second_single(call)) return false;
    if ((needs & NEEDS_VECTOR) && !is_surely_vector(without_parens(call->first))) return false;
    if ((needs & NEEDS_ONE_FIRST) && count_of(without_parens(call->first)) != 1) return false;
    if ((needs & NEEDS_ONE_LAST) && count_of(last_argument(call)) != 1) return false;
    if ((needs & NEEDS_EMPTY_SECOND) && !is_empty_literal(call->first->next)) return false;
    if (!(needs & NEEDS_PLANE)) return true;
    long plane = count_of(last_argument(call));
    return plane == 1 || plane == 2;
}
