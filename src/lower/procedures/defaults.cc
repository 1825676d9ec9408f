// Defaults and given values.
#include "lower/procedures/defaults.h"

#include <stdlib.h>
#include <string.h>

#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/procedures/preludes.h"
#include "lower/program/context.h"

namespace {

// Further down a default is not looked for: functions begin with theirs.
constexpr int32_t MOST_STATEMENTS = 40;

// Names of captured variables are other symbols.
bool mentions(const Node *node, const Symbol *symbol) {
    if (is_named(node) && node->text == symbol->name) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (mentions(child, symbol)) return true;
    return false;
}

bool has_kind(const Node *node, NodeKind kind) {
    if (node->kind == kind) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (has_kind(child, kind)) return true;
    return false;
}

// How many arguments make the condition false: 2 for nargin < 2; 0 for any other condition.
int32_t arguments_needed(const Node *condition) {
    const Node *chain = without_parens(condition);
    if (chain->kind != NODE_CHAIN || second_child(chain)->next) return 0;
    const Node *name = without_parens(chain->first_child);
    const Node *count = without_parens(second_child(chain));
    bool is_nargin =
        name->kind == NODE_NAME && strcmp(name->text, "nargin") == 0 && !is_variable(name->symbol);
    bool is_count =
        count->kind == NODE_NUMBER && has_flag(count, NUMBER_INTEGER) && strlen(count->text) < 6;
    if (!is_nargin || !is_count) return 0;
    int32_t number = static_cast<int32_t>(atol(count->text));
    if (chain->op == OPERATOR_LESS) return number;
    return chain->op == OPERATOR_LESS_EQUAL ? number + 1 : 0;
}

bool is_plain_assignment(const Node *statement) {
    return statement->kind == NODE_ASSIGN && statement->first_child->kind == NODE_NAME &&
           !may_act(second_child(statement));
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
    return arguments_needed(condition) >= parameter->position && sets(condition->next, parameter);
}

bool may_stand_before(const Node *statement, const Symbol *parameter) {
    switch (statement->kind) {
        case NODE_COMMENT: return true;
        case NODE_ASSIGN:
        case NODE_EXPRESSION:
        case NODE_IF: return !mentions(statement, parameter) && !has_kind(statement, NODE_RETURN);
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
        if (is_default_of(statement, parameter)) {
            parameter->default_in = statement;
            return true;
        }
        if (!may_stand_before(statement, parameter)) return false;
    }
    return false;
}

void put_given_values(const Node *statement) {
    bool has_else = false;
    for (Symbol *symbol = Lowering.scope->first_symbol; symbol; symbol = symbol->next) {
        if (symbol->position == 0 || symbol->default_in != statement) continue;
        if (!has_else) put_line("else", {});
        has_else = true;
        Lowering.level++;
        put_given_value(symbol);
        Lowering.level--;
    }
}
