// Parameters whose first use is to be replaced.
#include "lower/procedures/taken_parameters.h"

#include <algorithm>

#include "lower/procedures/given_parameters.h"
#include "lower/procedures/preludes.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/targets/shared_parts.h"
#include "support/allocation.h"

namespace {

// Functions that begin with something else are not looked through.
constexpr int32_t MOST_STATEMENTS = 40;

// An anonymous function would read the variable later.
bool has_anonymous(const Node *node) {
    if (node->kind == NODE_ANONYMOUS) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (has_anonymous(child)) return true;
    return false;
}

bool is_plain_target(const Node *target) {
    return target->kind == NODE_NAME || target->kind == NODE_TILDE;
}

bool is_among(const Node *targets, const Symbol *parameter) {
    bool is_found = false;
    for (const Node *target = targets->first_child; target; target = target->next) {
        if (!is_plain_target(target)) return false;
        is_found |= target->kind == NODE_NAME && target->symbol == parameter;
    }
    return is_found;
}

bool replaces(const Node *statement, const Symbol *parameter) {
    const Node *target = statement->first_child;
    bool is_one = statement->kind == NODE_ASSIGN && statement->op == OPERATOR_NONE &&
                  target->kind == NODE_NAME && target->symbol == parameter;
    bool is_set = is_one || (statement->kind == NODE_MULTI_ASSIGN && is_among(target, parameter));
    return is_set && mentions(target->next, parameter) && !has_anonymous(target->next);
}

bool is_taken_in(const Symbol *symbol, const Node *statement) {
    return symbol->position > 0 && symbol->taken_in == statement;
}

}  // namespace

bool find_taking(const Scope *scope, Symbol *parameter) {
    constexpr uint32_t ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT | SYMBOL_OUTPUT;
    bool is_alone = scope->owner->kind == NODE_FUNCTION && !scope->creator &&
                    parameter->last_asked == 0 && !(parameter->flags & ELSEWHERE);
    if (!is_alone || must_own(parameter)) return false;
    int32_t count = 0;
    const Node *node = child_of_kind(scope->owner, NODE_BLOCK)->first_child;
    for (; node && ++count < MOST_STATEMENTS; node = node->next) {
        if (node->kind == NODE_COMMENT || node->kind == NODE_FUNCTION) continue;
        if (!mentions(node, parameter)) continue;
        if (!replaces(node, parameter)) return false;
        parameter->taken_in = node;
        Lowering.taken_end = std::max(Lowering.taken_end, end_of(node));
        return true;
    }
    return false;
}

TakenName *begin_taking(const Node *assignment) {
    TakenName *taken = nullptr;
    if (assignment->offset >= Lowering.taken_end) return taken;
    for (Symbol *symbol = Lowering.scope->first_symbol; symbol; symbol = symbol->next) {
        if (!is_taken_in(symbol, assignment)) continue;
        TakenName *name = AllocRecord<TakenName>();
        *name = {symbol, written_name(symbol), taken};
        taken = name;
        symbol->written = head_name(symbol);
    }
    return taken;
}

void end_taking(const TakenName *taken) {
    for (; taken; taken = taken->next) taken->symbol->written = taken->written;
}

void put_untaken(const Node *statement) {
    if (statement->offset >= Lowering.taken_end) return;
    for (Symbol *symbol = Lowering.scope->first_symbol; symbol; symbol = symbol->next)
        if (is_taken_in(symbol, statement)) put_given_value(symbol);
}
