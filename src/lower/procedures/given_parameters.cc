// Parameters that surely have been given.
#include "lower/procedures/given_parameters.h"

#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/fallible.h"
#include "lower/program/called_functions.h"
#include "lower/statements/raised_errors.h"
#include "syntax/values/given_counts.h"

namespace {

// Functions begin with their checks, and read their parameters early.
constexpr int32_t MOST_STATEMENTS = 40;

// Longer statements, and functions of more parameters, are not looked through.
constexpr uint32_t LONGEST_STATEMENT = 2000;
constexpr int32_t MOST_PARAMETERS = 64;

// The error or return with which a block ends, if nothing in front of it may leave the function;
// else null.
const Node *leaving_statement(const Node *block) {
    for (const Node *child = block->first_child; child; child = child->next) {
        if (raises_error(child) || child->kind == NODE_RETURN) return child;
        bool goes_on = child->kind == NODE_COMMENT || child->kind == NODE_EXPRESSION ||
                       child->kind == NODE_ASSIGN;
        if (!goes_on) return nullptr;
    }
    return nullptr;
}

// The way out of the function of an if that does nothing else; else null.
const Node *way_out(const Node *statement) {
    bool is_alone = statement->kind == NODE_IF && !statement->first_child->next;
    return is_alone ? leaving_statement(second_child(statement->first_child)) : nullptr;
}

bool calls_own_function(const Node *expression) {
    const Node *name = expression->kind == NODE_REFERENCE ? expression->first_child : expression;
    return name->kind == NODE_NAME && has_function(name);
}

// How many arguments the function has been given where it goes on after a statement that may only
// leave it.
GivenCounts given_after_check(const Node *statement) {
    if (way_out(statement)) return given_where(statement->first_child->first_child, false);
    bool is_call =
        statement->kind == NODE_EXPRESSION && !calls_own_function(statement->first_child);
    return is_call ? given_after(statement->first_child) : ANY_COUNTS;
}

bool is_mentioned(const Node *first, const Node *last, const Symbol *parameter) {
    for (const Node *statement = first;; statement = statement->next) {
        if (mentions(statement, parameter)) return true;
        if (statement == last) return false;
    }
}

// Whether one of the first parameters is used in the statements up to a check; a return uses the
// outputs.
bool is_needed(const Node *first, const Node *last, const Scope *scope, int32_t least) {
    const Node *out = way_out(last);
    bool returns = out && out->kind == NODE_RETURN;
    for (const Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        if (symbol->position == 0 || symbol->position > least) continue;
        if (returns && (symbol->flags & SYMBOL_OUTPUT)) return true;
        if (is_mentioned(first, last, symbol)) return true;
    }
    return false;
}

// The part of a statement that is evaluated first, whatever happens.
const Node *first_evaluated(const Node *statement) {
    switch (statement->kind) {
        case NODE_EXPRESSION:
        case NODE_SWITCH: return statement->first_child;
        case NODE_ASSIGN:
        case NODE_MULTI_ASSIGN:
        case NODE_FOR: return second_child(statement);
        case NODE_IF: return statement->first_child->first_child;
        default: return nullptr;
    }
}

enum FirstDeed : uint8_t { DOES_NOTHING, READS_IT, ACTS };

FirstDeed first_deed(const Node *node, const Symbol *parameter);

FirstDeed first_deed_of(const Node *first, const Node *last, const Symbol *parameter) {
    FirstDeed deed = DOES_NOTHING;
    for (; first != last && deed == DOES_NOTHING; first = first->next)
        deed = first_deed(first, parameter);
    return deed;
}

// What the evaluation does first: it reads the parameter, or calls a function that may do anything.
FirstDeed first_deed(const Node *node, const Symbol *parameter) {
    if (node->kind == NODE_ANONYMOUS || node->kind == NODE_HANDLE) return DOES_NOTHING;
    if (node->kind == NODE_NAME) {
        if (node->symbol == parameter) return READS_IT;
        return !is_variable(node->symbol) && is_unknown_function(node) ? ACTS : DOES_NOTHING;
    }
    const Node *child = first_child(node);
    bool is_lazy = node->kind == NODE_CHAIN && node->op <= OPERATOR_AND;
    if (is_lazy) return first_deed(child, parameter);
    bool is_call = node->kind == NODE_REFERENCE && child->kind == NODE_NAME;
    if (!is_call) return first_deed_of(child, nullptr, parameter);
    if (child->symbol == parameter) return READS_IT;
    FirstDeed deed = first_deed_of(child->next, nullptr, parameter);
    return deed == DOES_NOTHING ? first_deed(child, parameter) : deed;
}

// Whether the block only assigns variables, as those of defaults do.
bool only_assigns(const Node *block) {
    for (const Node *child = block->first_child; child; child = child->next)
        if (child->kind != NODE_COMMENT && !is_plain_assignment(child)) return false;
    return true;
}

// Whether nobody can see the statement but by the variables that it sets.
bool is_harmless(const Node *statement) {
    if (statement->kind != NODE_IF) return is_plain_assignment(statement);
    for (const Node *branch = statement->first_child; branch; branch = branch->next) {
        bool is_else = branch->kind == NODE_ELSE;
        if (!is_else && may_act(branch->first_child)) return false;
        if (!only_assigns(is_else ? branch->first_child : second_child(branch))) return false;
    }
    return true;
}

}  // namespace

// Names of captured variables are other symbols.
bool mentions(const Node *node, const Symbol *symbol) {
    if (is_named(node) && node->text == symbol->name) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (mentions(child, symbol)) return true;
    return false;
}

bool is_plain_assignment(const Node *statement) {
    return statement->kind == NODE_ASSIGN && statement->first_child->kind == NODE_NAME &&
           !may_act(second_child(statement));
}

GivenCheck find_given_check(const Scope *scope, const Node *first) {
    GivenCheck check = {nullptr, 0};
    bool is_plain = scope->owner->kind == NODE_FUNCTION && !scope->creator;
    if (!is_plain || scope->parameters > MOST_PARAMETERS) return check;
    int32_t count = 0;
    for (const Node *node = first; node && ++count < MOST_STATEMENTS; node = node->next) {
        if (node->length > LONGEST_STATEMENT) return check;
        if (node->kind == NODE_COMMENT || is_plain_assignment(node)) continue;
        GivenCounts given = given_after_check(node);
        if (!tells_counts(given)) return check;
        if (given.least <= check.least) continue;
        if (is_needed(first, node, scope, given.least)) return check;
        check = {node, given.least};
    }
    return check;
}

bool is_in_defaults(const Scope *scope, const Symbol *parameter) {
    if (scope->parameters > MOST_PARAMETERS) return true;
    const Node *child = child_of_kind(scope->owner, NODE_PARAMETERS)->first_child;
    for (; child; child = child->next)
        if (child->kind == NODE_DEFAULT && mentions(second_child(child), parameter)) return true;
    return false;
}

bool is_given_after(const GivenCheck *check, const Scope *scope, const Symbol *parameter) {
    constexpr uint32_t ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    return check->statement && parameter->position <= check->least && parameter->scope == scope &&
           parameter->last_asked == 0 && !(parameter->flags & ELSEWHERE) &&
           !is_in_defaults(scope, parameter);
}

bool is_read_first(const Node *statement, const Symbol *parameter) {
    const Node *evaluated = first_evaluated(statement);
    return evaluated && first_deed(evaluated, parameter) == READS_IT;
}

bool is_read_at_once(const Node *first, const Symbol *parameter) {
    if (parameter->scope->parameters > MOST_PARAMETERS) return false;
    int32_t count = 0;
    for (const Node *node = first; node && ++count < MOST_STATEMENTS; node = node->next) {
        if (node->length > LONGEST_STATEMENT) return false;
        if (node->kind == NODE_COMMENT) continue;
        if (is_read_first(node, parameter)) return true;
        if (!is_harmless(node) || mentions(node, parameter)) return false;
    }
    return false;
}
