// Functions that variables hold.
#include "syntax/trace/handles.h"

#include <algorithm>

#include "support/allocation.h"
#include "syntax/names/assigned_values.h"
#include "syntax/trace/summaries.h"
#include "syntax/values/findings.h"

/* What calls of a variable have given, one after the other. */
struct GivenArgument {
    Value value;
    bool is_told; /* by a call of which something is known */
    GivenArgument *next;
};
struct GivenArguments {
    const Symbol *variable;
    GivenArgument *first;
    int32_t fewest; /* given by a call; after them there may be anything */
    GivenArguments *before;
};

namespace {

GivenArguments *LastGiven;
SymbolCell *GivenParameters;
bool HaveTold;
bool IsAgain;

GivenArguments *given_to(Symbol *variable) {
    GivenArguments *given = findings_of(variable)->given;
    if (given) return given;
    given = AllocRecord<GivenArguments>();
    *given = {variable, nullptr, INT32_MAX, LastGiven};
    return findings_of(variable)->given = LastGiven = given;
}

void join_arguments(GivenArguments *given, const Node *argument) {
    int32_t count = 0;
    GivenArgument **at = &given->first;
    for (; argument && !may_be_list(argument); argument = argument->next, count++) {
        if (!*at) {
            *at = AllocRecord<GivenArgument>();
            **at = {};
        }
        Value value = value_of(argument) & ANY_VALUE;
        (*at)->value |= value;
        (*at)->is_told |= value != ANY_VALUE;
        at = &(*at)->next;
    }
    given->fewest = std::min(given->fewest, count);
}

void join_parameter(Symbol *parameter, Value value) {
    if (!parameter->result) {
        SymbolCell *cell = AllocRecord<SymbolCell>();
        *cell = {parameter, GivenParameters};
        GivenParameters = cell;
    }
    parameter->result |= value;
}

void join_parameters(const GivenArguments *given, const Node *function) {
    int32_t number = 0;
    const GivenArgument *argument = given->first;
    const Node *parameter = function->first_child->first_child;
    for (; parameter; parameter = parameter->next) {
        bool is_any = number++ >= given->fewest;
        if (parameter->kind == NODE_NAME) {
            join_parameter(parameter->symbol, is_any ? ANY_VALUE : argument->value);
            HaveTold |= argument && argument->is_told;
        }
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
    LastGiven = nullptr;
    GivenParameters = nullptr;
    HaveTold = false;
}

bool tell_handles() {
    for (const GivenArguments *given = LastGiven; given; given = given->before) {
        for (const AssignedValue *value = given->variable->values; value; value = value->next) {
            const Node *function = held_function(value);
            if (function && function->kind == NODE_ANONYMOUS) join_parameters(given, function);
        }
    }
    return HaveTold;
}

void end_handles() {
    for (const SymbolCell *cell = GivenParameters; cell; cell = cell->next)
        cell->symbol->result = 0;
    for (const GivenArguments *given = LastGiven; given; given = given->before)
        given->variable->findings->given = nullptr;
    GivenParameters = nullptr;
    LastGiven = nullptr;
    IsAgain = false;
}

void note_handle_call(Symbol *variable, const Node *arguments) {
    if (!IsAgain && is_only_called(variable)) join_arguments(given_to(variable), arguments);
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
