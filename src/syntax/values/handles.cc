// Functions that variables hold.
#include "syntax/values/handles.h"

#include "support/allocation.h"
#include "syntax/names/assigned_values.h"
#include "syntax/values/summaries.h"

namespace {

SymbolCell *GivenParameters;
bool HaveTold;
bool IsAgain;

void join_parameter(Symbol *parameter, Value value) {
    if (!parameter->result) {
        SymbolCell *cell = AllocRecord<SymbolCell>();
        *cell = {parameter, GivenParameters};
        GivenParameters = cell;
    }
    parameter->result |= value;
    HaveTold |= value != ANY_VALUE;
}

void join_arguments(const Node *function, const Node *argument) {
    const Node *parameter = function->first_child->first_child;
    for (; parameter; parameter = parameter->next) {
        Value value = argument ? value_of(argument) & ANY_VALUE : ANY_VALUE;
        if (argument && may_be_list(argument)) {
            value = ANY_VALUE;
            argument = nullptr;
        }
        if (parameter->kind == NODE_NAME) join_parameter(parameter->symbol, value);
        if (argument) argument = argument->next;
    }
}

// Whether the variable is only called, in its own function. What a command leaves behind, later
// ones may call.
bool is_only_called(const Symbol *variable) {
    constexpr uint32_t OTHERS =
        SYMBOL_IS_VALUE | SYMBOL_OUTPUT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT | SYMBOL_CAPTURED;
    return !(variable->flags & OTHERS) && !(variable->scope->flags & IS_LEFT_OPEN);
}

}  // namespace

void begin_handles(bool is_again) {
    IsAgain = is_again;
    if (is_again) {
        for (const SymbolCell *cell = GivenParameters; cell; cell = cell->next)
            cell->symbol->scope->taken = nullptr;
        return;
    }
    GivenParameters = nullptr;
    HaveTold = false;
}

bool have_handles_told() { return HaveTold; }

void end_handles() {
    for (const SymbolCell *cell = GivenParameters; cell; cell = cell->next)
        cell->symbol->result = 0;
    GivenParameters = nullptr;
    IsAgain = false;
}

void note_handle_call(const Symbol *variable, Node *arguments) {
    if (IsAgain || !is_only_called(variable)) return;
    for (const AssignedValue *value = variable->values; value; value = value->next) {
        const Node *function = held_function(value);
        if (function && function->kind == NODE_ANONYMOUS) join_arguments(function, arguments);
    }
}

Value value_given_to(const Symbol *parameter) {
    return IsAgain && parameter->result ? parameter->result : ANY_VALUE;
}

Value value_of_function(const Node *function) {
    if (function->kind == NODE_ANONYMOUS) return value_of(second_child(function)) & ANY_VALUE;
    Value value = function->kind == NODE_HANDLE ? value_of_handled(function) : ANY_VALUE;
    return kinds_of(value) ? value : ANY_VALUE;
}

const KnownParts *parts_of_function(const Node *function) {
    return function->kind == NODE_HANDLE ? parts_of_own(function, 0) : nullptr;
}
