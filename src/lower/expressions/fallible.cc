// Expressions that may be evaluated although their value is not asked for.
#include "lower/expressions/fallible.h"

#include "lower/expressions/expressions.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "support/same_text.h"
#include "syntax/library/library_table.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/value.h"
#include "syntax/values/values.h"

namespace {

// A longer expression is not looked through for every name.
constexpr uint32_t LONGEST_LOOK = 256;
constexpr int MOST_SIDES = 8;

// Whether the evaluation of the expression surely reads the variable.
bool surely_reads(const Node *node, const Symbol *symbol) {
    if (node->kind == NODE_NAME) return node->symbol == symbol;
    if (node->kind == NODE_ANONYMOUS) return false;
    bool is_lazy = node->kind == NODE_CHAIN && node->op <= OPERATOR_AND;
    for (const Node *child = first_child(node); child; child = is_lazy ? nullptr : child->next)
        if (surely_reads(child, symbol)) return true;
    return false;
}

bool asks_for_arguments(const Node *node) {
    if (node->kind == NODE_NAME)
        return is_same_text(node->text, "nargin") || is_same_text(node->text, "exist");
    for (const Node *child = first_child(node); child; child = child->next)
        if (asks_for_arguments(child)) return true;
    return false;
}

// Whether a side of the chain, of which first is the first one, may tell that a parameter has a
// value: what is known of it then holds after that side only.
bool may_tell(const Node *first) {
    if (!first) return true;
    int sides = 0;
    for (const Node *side = first; side; side = side->next)
        if (++sides > MOST_SIDES || side->length > LONGEST_LOOK || asks_for_arguments(side))
            return true;
    return false;
}

// It may be where the function asks how many are given.
bool may_parameter_be_missing(const Node *name, const Node *evaluated) {
    if (!(Lowering.scope->flags & (READS_NARGIN | ASKS_EXIST))) return false;
    return may_be(value_of(name), MAY_BE_MISSING) || may_tell(evaluated);
}

// Globals, and variables that other functions or scripts may set, are taken to have a value.
bool can_name_fail(const Node *name, const Node *evaluated) {
    constexpr uint32_t SET_ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    const Symbol *symbol = name->symbol;
    if (!is_variable(symbol)) return !is_known_to(name->text, IS_CONSTANT);
    bool may_be_missing = symbol->position > 0 ? may_parameter_be_missing(name, evaluated)
                                               : may_be(value_of(name), MAY_BE_MISSING) &&
                                                     !(symbol->flags & SET_ELSEWHERE);
    return may_be_missing &&
           !(evaluated && evaluated->length <= LONGEST_LOOK && surely_reads(evaluated, symbol));
}

bool is_own_function(const Node *name, uint32_t trait) {
    if (name->kind != NODE_NAME || is_variable(name->symbol)) return false;
    return is_known_to(name->text, trait) && !has_function(name);
}

bool is_total(const Node *name) { return is_own_function(name, IS_TOTAL); }

bool is_kind_test(const Node *reference, const Symbol *symbol) {
    const Node *base = reference->first_child;
    const Node *arguments = base->next;
    if (base->kind != NODE_NAME || arguments->kind != NODE_ARGUMENTS) return false;
    const Node *first = arguments->first_child;
    bool is_of_it = first && first->kind == NODE_NAME && first->symbol == symbol;
    return is_of_it && is_known_to(base->text, TELLS_KIND);
}

// Whether the expression asks of which kind the variable is.
bool asks_for_kind(const Node *node, const Symbol *symbol) {
    if (node->kind == NODE_REFERENCE && is_kind_test(node, symbol)) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (asks_for_kind(child, symbol)) return true;
    return false;
}

// What operators take no value of: cells, structs and functions, where the source shows that a
// variable may hold one or asks whether it does.
bool may_be_no_operand(const Node *operand, const Node *evaluated) {
    if (operand->kind != NODE_NAME || !is_variable(operand->symbol)) return false;
    Value kinds = kinds_of(value_of(operand));
    bool is_known = !(kinds & MAY_BE_OTHER);
    if (is_known && may_be(kinds, MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_FUNCTION)) return true;
    return evaluated && evaluated->length <= LONGEST_LOOK &&
           asks_for_kind(evaluated, operand->symbol);
}

bool any_is_no_operand(const Node *first, const Node *evaluated) {
    for (; first; first = first->next)
        if (may_be_no_operand(without_parens(first), evaluated)) return true;
    return false;
}

bool is_operation(const Node *node) {
    return node->kind == NODE_PREFIX || (node->kind == NODE_CHAIN && node->op > OPERATOR_AND);
}

bool any_can_fail(const Node *first, const Node *evaluated) {
    for (; first; first = first->next)
        if (can_fail(first, evaluated)) return true;
    return false;
}

// An element or a field of a variable.
bool is_part_of_variable(const Node *node) {
    if (node->kind != NODE_REFERENCE) return false;
    const Node *before = node->first_child;
    if (before->kind != NODE_NAME || !is_variable(before->symbol)) return false;
    for (; before->next; before = before->next)
        if (may_be_called(before)) return false;
    return true;
}

// Whether the evaluation of the expression surely evaluates such a part.
bool surely_evaluates(const Node *node, const Node *part) {
    if (node->kind == NODE_ANONYMOUS) return false;
    if (node->kind == part->kind && is_same_tree(node, part)) return true;
    bool is_lazy = node->kind == NODE_CHAIN && node->op <= OPERATOR_AND;
    for (const Node *child = first_child(node); child; child = is_lazy ? nullptr : child->next)
        if (surely_evaluates(child, part)) return true;
    return false;
}

// isempty(s.f) || numel(s.f) > 2: what takes whatever it gets may be given the same again.
bool can_argument_fail(const Node *argument, const Node *evaluated) {
    const Node *part = without_parens(argument);
    bool is_again = evaluated && evaluated->length <= LONGEST_LOOK && is_part_of_variable(part) &&
                    surely_evaluates(evaluated, part);
    return !is_again && can_fail(argument, evaluated);
}

// numel(a) == numel(b) && all(a == b): two arrays may not fit each other.
bool joins_arrays(const Node *node) {
    int arrays = 0;
    for (const Node *child = first_child(node); child; child = child->next) {
        if (joins_arrays(child)) return true;
        arrays += !is_surely_single(child);
    }
    return node->kind == NODE_CHAIN && arrays > 1;
}

// any(x), all(x > 1): what takes numbers takes what operators do.
bool can_number_fail(const Node *argument, const Node *evaluated) {
    return !argument || argument->next || may_be_no_operand(without_parens(argument), evaluated) ||
           joins_arrays(argument) || can_argument_fail(argument, evaluated);
}

// A function of one selector, its arguments, that takes whatever it gets.
bool can_reference_fail(const Node *reference, const Node *evaluated) {
    const Node *base = reference->first_child;
    const Node *arguments = base->next;
    if (arguments->next || arguments->kind != NODE_ARGUMENTS) return true;
    if (is_own_function(base, TAKES_NUMBERS))
        return can_number_fail(arguments->first_child, evaluated);
    if (!is_total(base)) return true;
    for (const Node *node = arguments->first_child; node; node = node->next)
        if (can_argument_fail(node, evaluated)) return true;
    return false;
}

bool is_comparison(const Node *node) {
    return node->kind == NODE_CHAIN && node->op >= OPERATOR_LESS && node->op <= OPERATOR_GREATER &&
           !second_child(node)->next;
}

bool is_operand_of(const Node *part, const Node *comparison) {
    const Node *left = comparison->first_child;
    return is_same_tree(part, without_parens(left)) ||
           is_same_tree(part, without_parens(left->next));
}

// s.n == 1 || s.n == 2: what has been compared once may be again.
bool is_compared_again(const Node *node, const Node *evaluated) {
    if (!evaluated || evaluated->length > LONGEST_LOOK || !is_comparison(node)) return false;
    evaluated = without_parens(evaluated);
    const Node *part = without_parens(node->first_child);
    bool is_again =
        is_comparison(evaluated) && is_part_of_variable(part) && is_operand_of(part, evaluated);
    const Node *other = without_parens(second_child(node));
    return is_again && !may_be_no_operand(other, evaluated) && !can_fail(other, evaluated);
}

}  // namespace

bool is_unknown_function(const Node *name) {
    return !is_known_to(name->text, IS_CONSTANT) && !is_total(name);
}

bool can_fail(const Node *node, const Node *evaluated) {
    switch (node->kind) {
        case NODE_NAME: return can_name_fail(node, evaluated);
        case NODE_REFERENCE: return can_reference_fail(node, evaluated);
        case NODE_HANDLE:
        case NODE_ANONYMOUS: return false;
        default:
            if (is_compared_again(node, evaluated)) return false;
            if (is_operation(node) && any_is_no_operand(first_child(node), evaluated)) return true;
            return any_can_fail(first_child(node), evaluated);
    }
}
