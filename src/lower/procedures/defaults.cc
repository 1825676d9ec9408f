// Defaults and given values.
#include "lower/procedures/defaults.h"

#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/procedures/given_parameters.h"
#include "lower/procedures/preludes.h"
#include "lower/program/context.h"
#include "syntax/values/given_counts.h"

namespace {

// Further down a default is not looked for: functions begin with theirs.
constexpr int32_t MOST_STATEMENTS = 40;

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
