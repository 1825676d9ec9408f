// What a form needs to know of its arguments.
#include "lower/library/needs.h"

#include <stdlib.h>
#include <string.h>

#include "lower/expressions/expressions.h"
#include "lower/program/context.h"
#include "lower/program/program_files.h"
#include "syntax/library/library_table.h"
#include "syntax/names/names.h"
#include "syntax/tree/value.h"
#include "syntax/values/values.h"

namespace {

using Test = bool (*)(const Node *argument);

bool is_true_of_all(const OfferedCall *call, Test test) {
    for (const Node *argument = call->first; argument; argument = argument->next)
        if (!test(without_parens(argument))) return false;
    return true;
}

bool is_text(const Node *argument) { return is_surely(value_of(argument), MAY_BE_TEXT); }

bool is_no_text(const Node *argument) {
    return argument->kind != NODE_STRING && !is_text(argument);
}

bool is_number(const Node *argument) { return is_surely(value_of(argument), ARITHMETIC); }

// Whether it is a text on none of the ways to this place that are known. What is indexed is no
// function, and may be unknown otherwise.
bool is_joinable(const Node *argument) {
    constexpr Value UNKNOWN = ANY_KIND & ~MAY_BE_FUNCTION;
    Value value = value_of(argument);
    return !may_be(value, MAY_BE_TEXT) || (value & UNKNOWN) == UNKNOWN;
}

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

bool is_empty_literal(const Node *argument) { return is_empty_matrix(without_parens(argument)); }

bool descends(const OfferedCall *call) {
    const Node *order = without_parens(call->first->next);
    bool is_down = order->kind == NODE_STRING && strcmp(order->text, "descend") == 0;
    return is_down && is_no_text(without_parens(call->first));
}

bool is_word(const Node *argument, const char *word) {
    return argument->kind == NODE_STRING && strcmp(argument->text, word) == 0;
}

bool counts_from_first(const OfferedCall *call) {
    return is_word(last_argument(call), "first") && is_no_text(without_parens(call->first));
}

bool has_usual_weight(const OfferedCall *call) {
    const Node *weight = without_parens(call->first->next);
    bool is_zero = weight->kind == NODE_NUMBER && strcmp(weight->text, "0") == 0;
    return is_zero || is_empty_literal(weight);
}

// Of each two elements by themselves.
bool is_pairing(const Node *argument) {
    return argument->kind == NODE_HANDLE && has_trait(argument->text, PAIRS_ELEMENTS);
}

bool has_texts_after(const OfferedCall *call) {
    for (const Node *argument = call->first->next; argument; argument = argument->next)
        if (!is_text(without_parens(argument))) return false;
    return true;
}

// x(:) and s.f(:), where x and s are variables.
bool is_column(const Node *argument) {
    if (argument->kind != NODE_REFERENCE) return false;
    const Node *base = argument->first_child;
    const Node *last = base->next;
    while (last->next) last = last->next;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return false;
    if (last->kind != NODE_ARGUMENTS || !last->first_child) return false;
    return last->first_child->kind == NODE_COLON && !last->first_child->next;
}

bool is_surely_vector(const Node *argument) {
    Value value = value_of(argument);
    bool has_one_side = !may_be(value, MAY_HAVE_ROWS) || !may_be(value, MAY_HAVE_COLUMNS);
    return has_one_side || is_column(argument);
}

bool is_cell(const Node *argument) { return is_surely(value_of(argument), MAY_BE_CELL); }

// Whether one of both is a text, and the other no cell, whose elements would be compared.
bool are_texts(const OfferedCall *call) {
    Value first = value_of(call->first);
    Value second = value_of(call->first->next);
    if (may_be(first | second, MAY_BE_CELL)) return false;
    return is_surely(first, MAY_BE_TEXT) || is_surely(second, MAY_BE_TEXT);
}

// Whether all that matters is that it is true, or that ~ of it is.
bool is_asked(const OfferedCall *call, bool is_denied) {
    return call->is_tested && Lowering.is_denied == is_denied;
}

}  // namespace

bool meets_needs(const OfferedCall *call, uint32_t needs) {
    if ((needs & FOR_LIBRARY) && !CurrentFile->is_library) return false;
    if ((needs & NEEDS_TEST) && !is_asked(call, false)) return false;
    if ((needs & NEEDS_DENIED) && !(is_asked(call, true) && Lowering.takes_test)) return false;
    if ((needs & NEEDS_NO_TEXT) && !is_true_of_all(call, is_no_text)) return false;
    if ((needs & NEEDS_JOINABLE) && !is_true_of_all(call, is_joinable)) return false;
    if ((needs & NEEDS_NUMBERS) && !is_true_of_all(call, is_number)) return false;
    if ((needs & NEEDS_SINGLES) && !is_true_of_all(call, is_surely_single)) return false;
    if ((needs & NEEDS_COUNTS) && !is_true_of_all(call, is_count)) return false;
    if ((needs & NEEDS_SECOND_SINGLE) && !is_second_single(call)) return false;
    if ((needs & NEEDS_VECTOR) && !is_surely_vector(without_parens(call->first))) return false;
    if ((needs & NEEDS_ONE_FIRST) && count_of(without_parens(call->first)) != 1) return false;
    if ((needs & NEEDS_ONE_LAST) && count_of(last_argument(call)) != 1) return false;
    if ((needs & NEEDS_EMPTY_SECOND) && !is_empty_literal(call->first->next)) return false;
    if ((needs & NEEDS_DESCEND) && !descends(call)) return false;
    if ((needs & NEEDS_TWO_RESULTS) && call->results != 2) return false;
    if ((needs & NEEDS_TEXT_FIRST) && !is_text(without_parens(call->first))) return false;
    if ((needs & NEEDS_TEXT_LAST) && !is_text(last_argument(call))) return false;
    if ((needs & NEEDS_CELL_SECOND) && !is_cell(without_parens(call->first->next))) return false;
    if ((needs & NEEDS_EXACT) && !is_word(last_argument(call), "exact")) return false;
    if ((needs & NEEDS_FIRST) && !counts_from_first(call)) return false;
    if ((needs & NEEDS_PAIRING_FIRST) && !is_pairing(call->first)) return false;
    if ((needs & NEEDS_TEXTS_AFTER) && !has_texts_after(call)) return false;
    if ((needs & NEEDS_USUAL_WEIGHT) && !has_usual_weight(call)) return false;
    if ((needs & NEEDS_TEXTS) && !are_texts(call)) return false;
    if (!(needs & NEEDS_PLANE)) return true;
    long plane = count_of(last_argument(call));
    return plane == 1 || plane == 2;
}
