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
#include "lower/procedures/taken_parameters.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/statements/branches.h"
#include "lower/statements/raised_errors.h"
#include "lower/statements/statements.h"
#include "lower/targets/shared_parts.h"
#include "syntax/values/given_counts.h"

namespace {

// Further down a default is not looked for: functions begin with theirs.
constexpr int32_t MOST_STATEMENTS = 40;
// Longer loops and switches are not looked through.
constexpr uint32_t LONGEST_BLOCK = 2000;
// A longer if stays as it is rather than to stand inside of an else.
constexpr uint32_t LONGEST_INSIDE = 1000;

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

// A field or an element of a parameter that may be missing is set: it begins with a value.
bool must_begin(const Scope *scope, const Symbol *parameter) {
    bool is_asked = scope->flags & READS_NARGIN;
    return parameter->start && (!is_asked || (parameter->flags & SYMBOL_MAY_BE_MISSING));
}

const Node *first_condition(const Node *statement) { return statement->first_child->first_child; }

// Where the first branch is not taken the parameter has been given; where it is, the given value is
// not used.
bool is_in_else(const Node *statement, const Symbol *parameter, bool must_begin) {
    const Node *condition = first_condition(statement);
    if (given_where(condition, false).least < parameter->position) return false;
    bool is_missing = given_where(condition, true).most < parameter->position;
    return (is_missing && !must_begin) || sets(condition->next, parameter);
}

// The first branch is taken where the parameter has been given, and nowhere else.
bool is_in_branch(const Node *statement, const Symbol *parameter) {
    const Node *condition = first_condition(statement);
    return given_where(condition, true).least >= parameter->position &&
           given_where(condition, false).most < parameter->position;
}

// Comments at the end of the head stay there.
bool begins_with_comment(const Node *block) {
    return block->first_child && has_flag(block->first_child, TRAILING);
}

// Whether the function ends where the first branch is taken.
bool leaves(const Node *statement) {
    const Node *last = nullptr;
    for (const Node *node = second_child(statement->first_child)->first_child; node;
         node = node->next)
        if (node->kind != NODE_COMMENT) last = node;
    return last && (last->kind == NODE_RETURN || raises_error(last));
}

// Whether the first branch may have an else with the given values and the rest of the if in it, or
// the values and the rest after it.
bool may_be_parted(const Node *statement) {
    const Node *next = statement->first_child->next;
    if (!next) return true;
    if (next->kind == NODE_ELSE) return !begins_with_comment(next->first_child);
    return leaves(statement) || statement->length <= LONGEST_INSIDE;
}

// Where a statement, the first one that names a parameter, takes the given value.
enum Taking : uint8_t { NOWHERE, IN_FRONT, IN_BRANCH, IN_ELSE };

Taking taking_in(const Node *statement, const Symbol *parameter, bool must_begin) {
    bool asks = statement->kind == NODE_IF && !mentions(first_condition(statement), parameter);
    if (!asks) return is_read_first(statement, parameter) ? IN_FRONT : NOWHERE;
    if (may_be_parted(statement) && is_in_else(statement, parameter, must_begin)) return IN_ELSE;
    bool has_place = !begins_with_comment(second_child(statement->first_child));
    bool is_branch = has_place && !must_begin && is_in_branch(statement, parameter);
    return is_branch ? IN_BRANCH : NOWHERE;
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

// Whether the given value is returned, as an output's is.
bool may_return(const Node *statement, const Symbol *parameter) {
    return (parameter->flags & SYMBOL_OUTPUT) && has_kind(statement, NODE_RETURN);
}

// What the if sets is not copied.
bool sets_alone(const Node *statement, const Symbol *parameter) {
    return statement->kind == NODE_IF && !statement->first_child->next &&
           sets(second_child(statement->first_child), parameter);
}

bool may_stand_before(const Node *statement, const Symbol *parameter) {
    if (may_return(statement, parameter)) return false;
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

void note_default(Symbol *parameter, const Node *statement) {
    parameter->default_in = statement;
    Lowering.defaults_end = std::max(Lowering.defaults_end, end_of(statement));
    Symbol *last = Lowering.last_default;
    (last ? last->also_taken : Lowering.first_default) = parameter;
    Lowering.last_default = parameter;
}

}  // namespace

// In an arguments block.
static const Node *find_argument(const Node *block, const Symbol *parameter) {
    if (has_flag(block, FOR_OUTPUTS)) return nullptr;
    for (const Node *argument = block->first_child; argument; argument = argument->next) {
        if (argument->kind != NODE_ARGUMENT) continue;
        const Node *target = argument->first_child;
        bool is_meant = target->kind == NODE_NAME && target->symbol == parameter;
        if (is_meant && target->next) return argument;
    }
    return nullptr;
}

bool find_default(const Scope *scope, Symbol *parameter) {
    constexpr uint32_t ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    bool is_alone = scope->owner->kind == NODE_FUNCTION && !scope->creator &&
                    parameter->last_asked == 0 && !(parameter->flags & ELSEWHERE);
    if (!is_alone || is_in_defaults(scope, parameter)) return false;
    bool begins = must_begin(scope, parameter);
    bool acts = false;  // so that what is copied later may have changed
    int32_t count = 0;
    const Node *statement = child_of_kind(scope->owner, NODE_BLOCK)->first_child;
    for (; statement && ++count < MOST_STATEMENTS; statement = statement->next) {
        if (statement->kind == NODE_ARGUMENT_BLOCK) {
            parameter->default_in = find_argument(statement, parameter);
            if (parameter->default_in) return true;
            if (mentions(statement, parameter)) return false;
            continue;
        }
        Taking taking = taking_in(statement, parameter, begins);
        bool is_asked = taking == NOWHERE && is_asked_default_of(statement, parameter);
        if (taking != NOWHERE || is_asked) {
            if (acts && !is_asked && !sets_alone(statement, parameter)) return false;
            if (taking == IN_FRONT && find_taking(scope, parameter)) return true;
            note_default(parameter, statement);
            return true;
        }
        if (!may_stand_before(statement, parameter)) return false;
        acts |= must_own(parameter) && may_act(statement);
    }
    return false;
}

// The next one after symbol, null for the first one, of the parameters that have their values from
// the statement.
static Symbol *next_default(const Node *statement, const Symbol *symbol) {
    if (statement->offset >= Lowering.defaults_end) return nullptr;
    Symbol *next = symbol ? symbol->also_taken : Lowering.first_default;
    while (next && next->default_in != statement) next = next->also_taken;
    return next;
}

bool has_given_values(const Node *statement) { return next_default(statement, nullptr); }

// The next one that takes its value at that place.
static Symbol *next_taken(const Node *statement, const Symbol *symbol, Taking taking) {
    for (;;) {
        Symbol *next = next_default(statement, symbol);
        if (!next) return nullptr;
        if (taking_in(statement, next, must_begin(Lowering.scope, next)) == taking) return next;
        symbol = next;
    }
}

static void put_taken(const Node *statement, Taking taking) {
    Symbol *symbol = nullptr;
    while ((symbol = next_taken(statement, symbol, taking))) put_given_value(symbol);
}

void put_values_before(const Node *statement) { put_taken(statement, IN_FRONT); }

bool takes_in_branch(const Node *statement) { return next_taken(statement, nullptr, IN_BRANCH); }

void put_values_in_branch(const Node *statement) {
    Lowering.level++;
    put_taken(statement, IN_BRANCH);
    Lowering.level--;
}

bool takes_in_else(const Node *statement) { return next_taken(statement, nullptr, IN_ELSE); }

bool are_after_branch(const Node *statement) {
    const Node *next = statement->first_child->next;
    bool has_comment = statement->next && has_flag(statement->next, TRAILING);
    return leaves(statement) && (next ? next->kind != NODE_ELSE : !has_comment);
}

void put_values_in_else(const Node *statement) {
    put_line("else", {});
    Lowering.level++;
    put_taken(statement, IN_ELSE);
    Lowering.level--;
}

void put_values_after_branch(const Node *statement) { put_taken(statement, IN_ELSE); }

void put_untaken_values(const Node *statement) {
    Symbol *symbol = nullptr;
    while ((symbol = next_default(statement, symbol))) put_value_if_given(symbol);
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
    const Node *first = next_statement(block->first_child);
    if (!first || !is_plain_assignment(first)) return false;
    Symbol *parameter = first->first_child->symbol;
    if (parameter->default_in != statement || !is_asked_default_of(statement, parameter))
        return false;
    Origin *head = CurrentOrigin;
    lower_block_at(block, Lowering.level);
    Origin *rest = CurrentOrigin;
    CurrentOrigin = head;
    put_where_taken(branch->first_child, parameter);
    CurrentOrigin = rest;
    return true;
}
