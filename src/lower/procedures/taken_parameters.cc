// Parameters whose first use is to be replaced.
#include "lower/procedures/taken_parameters.h"

#include "lower/procedures/given_parameters.h"
#include "lower/procedures/preludes.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/targets/shared_parts.h"
#include "support/allocation.h"

namespace {

// Functions that begin with something else are not looked through.
constexpr int32_t MOST_STATEMENTS = 40;
// Each assignment asks for all of them.
constexpr int MOST_TAKEN = 16;
// Longer statements, and functions of more parameters, are not looked through.
constexpr uint32_t LONGEST_STATEMENT = 2000;
constexpr int32_t MOST_PARAMETERS = 64;

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

}  // namespace

bool find_taking(const Scope *scope, Symbol *parameter) {
    constexpr uint32_t ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT | SYMBOL_OUTPUT;
    bool is_alone = scope->owner->kind == NODE_FUNCTION && !scope->creator &&
                    parameter->last_asked == 0 && !(parameter->flags & ELSEWHERE);
    if (!is_alone || must_own(parameter) || Lowering.taken_count == MOST_TAKEN ||
        scope->parameters > MOST_PARAMETERS || is_in_defaults(scope, parameter))
        return false;
    int32_t count = 0;
    const Node *node = child_of_kind(scope->owner, NODE_BLOCK)->first_child;
    for (; node && ++count < MOST_STATEMENTS; node = node->next) {
        if (node->kind == NODE_COMMENT || node->kind == NODE_FUNCTION) continue;
        if (node->length > LONGEST_STATEMENT) return false;
        if (!mentions(node, parameter)) continue;
        if (!replaces(node, parameter)) return false;
        parameter->taken_in = node;
        parameter->also_taken = Lowering.taken;
        Lowering.taken = parameter;
        Lowering.taken_count++;
        return true;
    }
    return false;
}

TakenName *begin_taking(const Node *assignment) {
    TakenName *taken = nullptr;
    for (Symbol *symbol = Lowering.taken; symbol; symbol = symbol->also_taken) {
        if (symbol->taken_in != assignment) continue;
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
    for (Symbol *symbol = Lowering.taken; symbol; symbol = symbol->also_taken)
        if (symbol->taken_in == statement) put_given_value(symbol);
}
