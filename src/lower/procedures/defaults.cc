// Defaults and given values.
#include "lower/procedures/defaults.h"

#include <algorithm>

#include "lower/conditions/condition_sides.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/fallible.h"
#include "lower/lines/origins.h"
#include "lower/procedures/given_parameters.h"
#include "lower/procedures/preludes.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/statements/branches.h"
#include "lower/statements/statements.h"
#include "syntax/values/given_counts.h"

namespace {

// Further down a default is not looked for: functions begin with theirs.
constexpr int32_t MOST_STATEMENTS = 40;
// Longer loops and switches are not looked through.
constexpr uint32_t LONGEST_BLOCK = 2000;

bool has_kind(const Node *node, NodeKind kind) {
    if (node->kind == kind) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (has_kind(child, kind)) return true;
    return false;
}

// Whether the statements are assignments that cannot be given up, and one of them sets the
// parameter before any reads it.
bool sets(const Node *block, const Symbol *parameter) {
    bool is_set = false;
    for (const Node *child = block->first_child; child; child = child->next) {
        if (child->kind == NODE_COMMENT) continue;
        if (!is_plain_assignment(child)) return false;
        if (is_set || !mentions(child, parameter)) continue;
        is_set =
            child->first_child->symbol == parameter && !mentions(second_child(child), parameter);
        if (!is_set) return false;
    }
    return is_set;
}

bool is_default_of(const Node *statement, const Symbol *parameter) {
    if (statement->kind != NODE_IF || statement->first_child->next) return false;
    const Node *condition = statement->first_child->first_child;
    return given_where(condition, false).least >= parameter->position &&
           !mentions(condition, parameter) && sets(condition->next, parameter);
}

// Whether the sides after the first are asked where the parameter is given. What an anonymous
// function holds is no value of the head.
bool asks_of_given(const Node *condition, const Symbol *parameter) {
    if (!joins_conditions(condition) || is_and(condition)) return false;
    const Node *first = condition->first_child;
    if (mentions(first, parameter)) return false;
    return given_where(first, false).least >= parameter->position &&
           !has_kind(condition, NODE_ANONYMOUS);
}

// Whether the block does nothing but to set the parameter to what is there always.
bool only_sets(const Node *block, const Symbol *parameter) {
    const Node *statement = next_statement(block->first_child);
    if (!statement || next_statement(statement->next) || !is_plain_assignment(statement))
        return false;
    const Node *value = second_child(statement);
    return statement->first_child->symbol == parameter && !can_fail(value, nullptr) &&
           !mentions(value, parameter);
}

bool is_asked_default_of(const Node *statement, const Symbol *parameter) {
    if (statement->kind != NODE_IF || statement->first_child->next) return false;
    const Node *branch = statement->first_child;
    return asks_of_given(without_parens(branch->first_child), parameter) &&
           only_sets(second_child(branch), parameter);
}

bool may_stand_before(const Node *statement, const Symbol *parameter) {
    switch (statement->kind) {
        case NODE_COMMENT: return true;
        case NODE_SWITCH:
        case NODE_FOR:
            if (statement->length > LONGEST_BLOCK) return false;
            [[fallthrough]];
        case NODE_ASSIGN:
        case NODE_MULTI_ASSIGN:
        case NODE_EXPRESSION:
        case NODE_IF: return !mentions(statement, parameter);
        default: return false;
    }
}

}  // namespace

bool find_default(const Scope *scope, Symbol *parameter) {
    constexpr uint32_t ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT | SYMBOL_OUTPUT;
    bool is_alone = scope->owner->kind == NODE_FUNCTION && !scope->creator &&
                    parameter->last_asked == 0 && !(parameter->flags & ELSEWHERE);
    if (!is_alone) return false;
    int32_t count = 0;
    const Node *statement = child_of_kind(scope->owner, NODE_BLOCK)->first_child;
    for (; statement && ++count < MOST_STATEMENTS; statement = statement->next) {
        if (is_default_of(statement, parameter) || is_asked_default_of(statement, parameter)) {
            parameter->default_in = statement;
            Lowering.defaults_end = std::max(Lowering.defaults_end, end_of(statement));
            return true;
        }
        if (!may_stand_before(statement, parameter)) return false;
    }
    return false;
}

static bool has_default(const Symbol *symbol, const Node *statement) {
    return symbol->position > 0 && symbol->default_in == statement;
}

bool has_given_values(const Node *statement) {
    if (statement->offset >= Lowering.defaults_end) return false;
    for (const Symbol *symbol = Lowering.scope->first_symbol; symbol; symbol = symbol->next)
        if (has_default(symbol, statement)) return true;
    return false;
}

void put_given_values(const Node *statement) {
    if (!has_given_values(statement)) return;
    bool has_else = false;
    for (Symbol *symbol = Lowering.scope->first_symbol; symbol; symbol = symbol->next) {
        if (!has_default(symbol, statement)) continue;
        if (!has_else) put_line("else", {});
        has_else = true;
        Lowering.level++;
        put_given_value(symbol);
        Lowering.level--;
    }
}

// The given value where the condition is false, which is asked of it.
static void put_where_taken(const Node *condition, Symbol *parameter) {
    int outermost = Lowering.level;
    const char *name = parameter->written;
    parameter->written = head_name(parameter);
    open_branches(BRANCH_IF, condition, false);
    parameter->written = name;
    Lowering.level++;
    put_given_value(parameter);
    for (Lowering.level--; Lowering.level > outermost; Lowering.level--) put_line("end if;", {});
    put_line("end if;", {});
}

bool put_asked_default(const Node *statement) {
    if (!has_given_values(statement)) return false;
    const Node *branch = statement->first_child;
    const Node *block = second_child(branch);
    Symbol *parameter = next_statement(block->first_child)->first_child->symbol;
    if (!is_asked_default_of(statement, parameter)) return false;
    Origin *head = CurrentOrigin;
    lower_block_at(block, Lowering.level);
    Origin *rest = CurrentOrigin;
    CurrentOrigin = head;
    put_where_taken(branch->first_child, parameter);
    CurrentOrigin = rest;
    return true;
}
