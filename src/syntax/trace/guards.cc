// What a condition says of the values after it.
#include <stdlib.h>

#include "support/same_text.h"
#include "syntax/library/kind_tests.h"
#include "syntax/scan/spellings.h"
#include "syntax/trace/library_values.h"
#include "syntax/trace/trace.h"
#include "syntax/values/field_values.h"
#include "syntax/values/values.h"

namespace {

constexpr int MOST_PARAMETERS = 64;

void keep_only(Symbol *symbol, Value kept) {
    Value now = value_now(symbol);
    Value left = now & kept;
    bool is_possible = kinds_of(left) && may_be(left, MAY_BE_EMPTY | MAY_BE_FILLED);
    if (is_traced(symbol) && is_possible && left != now) set_value(symbol, left);
}

// s.f, where s is one record.
Symbol *tested_field(const Node *reference) {
    const Node *holder = reference->first_child;
    if (holder->kind != NODE_NAME || !is_variable(holder->symbol)) return nullptr;
    Symbol *symbol = holder->symbol;
    int depth = 0;
    for (const Node *part = holder->next; part && symbol; part = part->next) {
        bool is_field = part->kind == NODE_FIELD && is_one_record(value_now(symbol) & ANY_VALUE);
        symbol = is_field ? field_of(symbol, part->text, depth++) : nullptr;
    }
    return symbol;
}

// The variable or the field that is asked about; null for anything else.
Symbol *tested_variable(const Node *argument) {
    if (!argument) return nullptr;
    if (argument->kind == NODE_REFERENCE) return tested_field(argument);
    bool is_name = argument->kind == NODE_NAME && is_variable(argument->symbol);
    return is_name ? argument->symbol : nullptr;
}

// A number that is not of one class is of another.
void assume_test(Symbol *symbol, const KindTest *test, bool is_true) {
    constexpr Value OTHERS = ANY_VALUE & ~ANY_KIND;
    if (!test) return;
    if (is_true) {
        keep_only(symbol, OTHERS | test->perhaps);
    } else if (test->yes == test->perhaps) {
        keep_only(symbol, ANY_VALUE & ~test->yes);
    }
}

// isa(x, 'class').
void assume_class(Symbol *symbol, const Node *name, bool is_true) {
    if (name && name->kind == NODE_STRING)
        assume_test(symbol, find_class_test(name->text), is_true);
}

// isscalar(x), isrow(x), iscolumn(x): how one element is held they do not tell.
bool assume_shape(Symbol *symbol, const char *name, bool is_true) {
    constexpr Value SIZED = MAY_HAVE_ROWS | MAY_HAVE_COLUMNS;
    if (is_same_text(name, "isscalar")) {
        if (is_true) keep_only(symbol, ANY_VALUE & ~(SIZED | MAY_BE_EMPTY));
    } else if (is_same_text(name, "isrow")) {
        if (is_true) keep_only(symbol, ANY_VALUE & ~MAY_HAVE_ROWS);
    } else if (is_same_text(name, "iscolumn")) {
        if (is_true) keep_only(symbol, ANY_VALUE & ~MAY_HAVE_COLUMNS);
    } else {
        return false;
    }
    return true;
}

// isfield(s, 'f'), isfield(s.a, 'f').
void assume_field(const Node *arguments, bool is_true) {
    const Node *name = arguments->next;
    if (!name || name->kind != NODE_STRING || !*name->text) return;
    Symbol *holder = tested_variable(arguments);
    if (!holder || !is_traced(holder)) return;
    int depth = 0;
    if (arguments->kind == NODE_REFERENCE)
        for (const Node *part = second_child(arguments); part; part = part->next) depth++;
    Symbol *field = field_of(holder, intern(name->text), depth);
    if (!field) return;
    if (is_true) return note_presence(field);
    assign(field, MAY_BE_MISSING);
}

void assume_call(Node *node, bool is_true) {
    LibraryCall call = library_call(node);
    if (!call.function || !call.arguments) return;
    if (is_same_text(call.function->name, "isfield")) return assume_field(call.arguments, is_true);
    Symbol *symbol = tested_variable(call.arguments);
    if (!symbol) return;
    const char *name = call.function->name;
    if (is_same_text(name, "isempty"))
        return keep_only(symbol, is_true ? ANY_VALUE & ~MAY_BE_FILLED : ANY_VALUE & ~MAY_BE_EMPTY);
    if (is_same_text(name, "isa")) return assume_class(symbol, call.arguments->next, is_true);
    if (!assume_shape(symbol, name, is_true)) assume_test(symbol, find_kind_test(name), is_true);
}

void assume_comparison(const Node *chain, bool is_true) {
    assume_given(given_where(chain, is_true), chain->offset);
}

// What has no elements is not true, and its negation is not either.
bool has_elements(const Node *node) { return !may_be(value_of(node), MAY_BE_EMPTY); }

void assume_operands(Node *chain, bool is_true) {
    for (Node *node = chain->first_child; node; node = node->next) assume(node, is_true);
}

void assume_chain(Node *chain, bool is_true) {
    switch (chain->op) {
        case OPERATOR_AND_THEN:
        case OPERATOR_AND:
            if (is_true) assume_operands(chain, true);
            return;
        case OPERATOR_OR_ELSE:
        case OPERATOR_OR:
            if (!is_true && has_elements(chain)) assume_operands(chain, false);
            return;
        default:
            if (chain->op >= OPERATOR_LESS && chain->op <= OPERATOR_GREATER)
                assume_comparison(chain, is_true);
    }
}

// exist('x', 'var') of a variable; exist('x'), where nothing else is known by that name.
void assume_existence(Node *reference, bool is_true) {
    Node *base = reference->first_child;
    if (base->kind != NODE_NAME || !is_same_text(base->text, "exist")) return;
    const Node *asked = base->next->kind == NODE_ARGUMENTS ? base->next->first_child : nullptr;
    if (!asked || asked->kind != NODE_STRING || !*asked->text || !library_of(base)) return;
    const Node *kind = asked->next;
    bool is_of_variables = kind ? kind->kind == NODE_STRING && is_same_text(kind->text, "var")
                                : !library_result(asked->text);
    if (!is_of_variables) return;
    Symbol *symbol = find_symbol(TracedScope, intern(asked->text));
    if (!symbol || !is_traced(symbol) || !is_variable(symbol)) return;
    if (is_true) set_value(symbol, value_now(symbol) & ANY_VALUE);
}

// Whether nothing has set the parameter on any way to here.
bool is_as_given(const Scope *scope, const Symbol *symbol, uint32_t offset) {
    if (!is_traced(symbol) || scope->creator || is_in_region()) return false;
    return symbol->first_set == 0 || symbol->first_set > offset;
}

}  // namespace

void assume_given(GivenCounts given, uint32_t offset) {
    const Scope *scope = TracedScope;
    if (!tells_counts(given) || scope->parameters > MOST_PARAMETERS) return;
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        if (!(symbol->flags & (SYMBOL_PARAMETER | SYMBOL_OUTPUT))) return;
        if (symbol->position == 0 || !may_be(value_now(symbol), MAY_BE_MISSING)) continue;
        if (symbol->position <= given.least) set_value(symbol, value_now(symbol) & ANY_VALUE);
        if (symbol->position > given.most && is_as_given(scope, symbol, offset))
            set_value(symbol, MAY_BE_MISSING);
    }
}

// 'a' or {'a', 'b'}
static bool are_texts(const Node *cases) {
    cases = without_parens(cases);
    if (cases->kind != NODE_CELL) return cases->kind == NODE_STRING;
    for (const Node *row = cases->first_child; row; row = row->next)
        for (const Node *item = row->first_child; item; item = item->next)
            if (item->kind != NODE_STRING) return false;
    return true;
}

void assume_case(const Node *expression, const Node *cases) {
    Symbol *symbol = tested_variable(without_parens(expression));
    if (symbol && are_texts(cases)) keep_only(symbol, ANY_TEXT | MAY_BE_OTHER | MAY_BE_MISSING);
}

void assume(Node *condition, bool is_true) {
    switch (condition->kind) {
        case NODE_PARENS: return assume(condition->first_child, is_true);
        case NODE_PREFIX:
            if (condition->op == OPERATOR_NOT && (is_true || has_elements(condition->first_child)))
                assume(condition->first_child, !is_true);
            return;
        case NODE_CHAIN: return assume_chain(condition, is_true);
        case NODE_REFERENCE:
            assume_existence(condition, is_true);
            return assume_call(condition, is_true);
        default: return;
    }
}
