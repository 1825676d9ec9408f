// What parameters are given.
#include "syntax/values/parameters.h"

#include <string.h>

#include "support/allocation.h"
#include "syntax/scan/spellings.h"
#include "syntax/values/field_values.h"

namespace {

constexpr Value UNKNOWN = ANY_VALUE | MAY_BE_MISSING;
// Those after are unknown.
constexpr int32_t MOST_PARAMETERS = 16;
// What is given after all of them, in varargin.
constexpr int32_t REST = MOST_PARAMETERS;
constexpr int32_t GIVEN_VALUES = MOST_PARAMETERS + 1;
constexpr size_t LONGEST_NAME = 63;

NameMap Named;     // functions of the file by their names, as texts may name them
bool CallsByText;  // some function may be called by a text that nobody knows

int32_t count_followed(const Summary *summary) {
    int32_t count = summary->scope->parameters;
    return count < MOST_PARAMETERS ? count : MOST_PARAMETERS;
}

// Those in one trace of the caller.
TracedCalls *calls_of(Summary *caller, Summary *callee) {
    TracedCalls *calls = callee->callers;
    if (calls && calls->caller == caller && calls->trace == caller->traced) return calls;
    calls = AllocRecord<TracedCalls>();
    *calls = {caller, callee, caller->traced, nullptr, caller->calls, callee->callers};
    caller->calls = callee->callers = calls;
    size_t size = sizeof(Value) * GIVEN_VALUES;
    calls->given = static_cast<Value *>(AllocKept(size));
    memset(calls->given, 0, size);
    return calls;
}

Value value_of_argument(const Node *argument) {
    Value value = value_of(argument) & ANY_VALUE;
    return kinds_of(value) ? value : ANY_VALUE;
}

bool is_last_trace(const TracedCalls *calls) { return calls->trace == calls->caller->traced; }

// What a function does with the others of its file.
bool are_calls_known(const Scope *scope) {
    for (const Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        if (is_variable(symbol)) continue;
        if (is_known_to(symbol->name, FINDS_FUNCTIONS)) return false;
        Summary *summary = symbol->flags & SYMBOL_CALLED ? summary_of(symbol) : nullptr;
        if (summary) summary->is_open = true;
    }
    return true;
}

// What is given may be changed by a block of arguments.
bool has_argument_block(const Scope *scope) {
    const Node *node = child_of_kind(scope->owner, NODE_BLOCK)->first_child;
    while (node && node->kind != NODE_ARGUMENT_BLOCK) node = node->next;
    return node != nullptr;
}

Value joined_value(const Summary *summary, int32_t parameter) {
    Value value = 0;
    for (const TracedCalls *calls = summary->callers; calls; calls = calls->next_of_callee)
        if (is_last_trace(calls)) value |= calls->given[parameter];
    return value;
}

// Whether anything is known. A function that is never called is given anything.
bool join_calls(Summary *summary) {
    int32_t count = count_followed(summary);
    bool has_any = count > 0 || (summary->scope->flags & HAS_VARARGIN);
    if (summary->is_open || !has_any || has_argument_block(summary->scope)) return false;
    Value *given = static_cast<Value *>(AllocKept(sizeof(Value) * GIVEN_VALUES));
    given[REST] = joined_value(summary, REST);
    if (!given[REST]) return false;
    bool is_known = (summary->scope->flags & HAS_VARARGIN) && given[REST] != UNKNOWN;
    for (int32_t k = 0; k < count; k++) {
        Value value = joined_value(summary, k);
        if (!value) return false;
        given[k] = value;
        is_known |= value != UNKNOWN && value != ANY_VALUE;
    }
    summary->given = given;
    return is_known;
}

}  // namespace

void begin_parameters() {
    Named = {};
    CallsByText = false;
}

void follow_calls(Summary *summary) {
    void *other = enter_name(&Named, intern(summary->scope->owner->text), summary);
    if (!other) return;
    static_cast<Summary *>(other)->is_open = true;
    summary->is_open = true;
}

void note_text(const char *text) {
    if (!Named.used || !*text || strlen(text) > LONGEST_NAME) return;
    const char *name = interned(text);
    void *summary = name ? find_name(&Named, name) : nullptr;
    if (summary) static_cast<Summary *>(summary)->is_open = true;
}

void note_applied(const char *name, const Node *function) {
    if (!function || !is_known_to(name, APPLIES_FUNCTION) || function->kind == NODE_STRING) return;
    if (may_be(value_of(function), MAY_BE_TEXT)) CallsByText = true;
}

// MAY_BE_MISSING: nothing.
static Value value_of_rest(const Node *arguments) {
    Value all = MAY_BE_MISSING;
    for (; arguments; arguments = arguments->next) {
        if (may_be_list(arguments)) return UNKNOWN;
        all |= value_of_argument(arguments);
    }
    return all;
}

void note_call(Summary *caller, Summary *callee, const Node *arguments) {
    Value *given = calls_of(caller, callee)->given;
    int32_t count = count_followed(callee);
    int32_t k = 0;
    for (; arguments && k < count && !may_be_list(arguments); arguments = arguments->next)
        given[k++] |= value_of_argument(arguments);
    bool has_list = arguments && k < count;
    while (k < count) given[k++] |= has_list ? UNKNOWN : Value(MAY_BE_MISSING);
    given[REST] |= has_list ? UNKNOWN : value_of_rest(arguments);
}

void trace_parameters(Summary *last) {
    if (!Named.used || CallsByText) return;
    for (const Summary *summary = last; summary; summary = summary->before)
        if (!are_calls_known(summary->scope)) return;
    for (Summary *summary = last; summary; summary = summary->before)
        if (join_calls(summary)) trace_summary(summary);
}

Value value_given(const Scope *scope, const Symbol *parameter) {
    const Value *given = scope->summary ? scope->summary->given : nullptr;
    return given && parameter->position <= MOST_PARAMETERS ? given[parameter->position - 1]
                                                           : UNKNOWN;
}

Value rest_given(const Scope *scope) {
    const Value *given = scope->summary ? scope->summary->given : nullptr;
    return given ? given[REST] : UNKNOWN;
}
