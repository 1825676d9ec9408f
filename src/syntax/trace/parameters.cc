// What parameters are given.
#include "syntax/trace/parameters.h"

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
constexpr uint32_t CALLS = APPLIES_FUNCTION | CALLS_FUNCTION | TAKES_FUNCTION;

NameMap Named;     // functions of the file by their names, as texts may name them
bool CallsByText;  // some function may be called by a text that nobody knows

int32_t count_followed(const Summary *summary) {
    int32_t count = summary->scope->parameters;
    return count < MOST_PARAMETERS ? count : MOST_PARAMETERS;
}

GivenValue *new_given_values() {
    GivenValue *given = static_cast<GivenValue *>(AllocKept(sizeof(GivenValue) * GIVEN_VALUES));
    for (int32_t k = 0; k < GIVEN_VALUES; k++) given[k] = {};
    return given;
}

void join_given(GivenValue *given, Value value, const KnownParts *parts) {
    given->value |= value;
    if (!may_be(value, MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_FUNCTION)) return;
    given->parts = given->has_parts ? joined_parts(given->parts, parts) : parts;
    given->has_parts = true;
}

// Those in one trace of the caller.
TracedCalls *calls_of(Summary *caller, Summary *callee) {
    TracedCalls *calls = callee->callers;
    if (calls && calls->caller == caller && calls->trace == caller->traced) return calls;
    calls = AllocRecord<TracedCalls>();
    *calls = {caller, callee, caller->traced, nullptr, caller->calls, callee->callers};
    caller->calls = callee->callers = calls;
    calls->given = new_given_values();
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
    }
    return true;
}

// What is given may be changed by a block of arguments.
bool has_argument_block(const Scope *scope) {
    const Node *node = child_of_kind(scope->owner, NODE_BLOCK)->first_child;
    while (node && node->kind != NODE_ARGUMENT_BLOCK) node = node->next;
    return node != nullptr;
}

GivenValue joined_given(const Summary *summary, int32_t parameter, bool by_itself) {
    GivenValue all = {};
    for (const TracedCalls *calls = summary->callers; calls; calls = calls->next_of_callee)
        if (is_last_trace(calls) && (by_itself || calls->caller != summary))
            join_given(&all, calls->given[parameter].value, calls->given[parameter].parts);
    return all;
}

bool tells_something(const GivenValue *given) {
    return (given->value != UNKNOWN && given->value != ANY_VALUE) || given->parts;
}

// Null where nothing is known. A function that is never called is given anything.
GivenValue *join_calls(const Summary *summary, bool by_itself) {
    int32_t count = count_followed(summary);
    bool has_rest = summary->scope->flags & HAS_VARARGIN;
    bool has_any = count > 0 || has_rest;
    if (summary->is_open || !has_any || has_argument_block(summary->scope)) return nullptr;
    GivenValue *given = new_given_values();
    given[REST] = joined_given(summary, REST, by_itself);
    if (!given[REST].value) return nullptr;
    bool is_known = has_rest && tells_something(&given[REST]);
    for (int32_t k = 0; k < count; k++) {
        given[k] = joined_given(summary, k, by_itself);
        if (!given[k].value) return nullptr;
        is_known |= tells_something(&given[k]);
    }
    return is_known ? given : nullptr;
}

// Whether the other tells no more.
bool is_given_within(const Summary *summary, const GivenValue *given, const GivenValue *other) {
    if (!given || !other) return !other;
    for (int32_t k = 0; k < GIVEN_VALUES; k++) {
        if (k == count_followed(summary)) k = REST;
        if (!is_within(given[k].value, other[k].value)) return false;
        if (given[k].has_parts && !is_part_of(given[k].parts, other[k].parts)) return false;
    }
    return true;
}

constexpr int MOST_ROUNDS = 4;

// What a function gives itself depends on what others give it.
void trace_given(Summary *summary, const GivenValue *given) {
    for (int round = 0; given && round < MOST_ROUNDS; round++) {
        summary->given = given;
        retrace(summary);
        const GivenValue *all = join_calls(summary, true);
        if (is_given_within(summary, all, given)) return;
        given = all;
    }
    summary->given = nullptr;
    retrace(summary);
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
    if (!function || !is_known_to(name, CALLS) || function->kind == NODE_STRING) return;
    if (may_be(value_of(function), MAY_BE_TEXT)) CallsByText = true;
}

void note_handle(const Node *name) {
    if (Summary *summary = summary_of(name->symbol)) {
        summary->is_open = true;
        summary->scope->flags |= IS_HANDLED;
    }
    if (is_known_to(name->text, CALLS)) CallsByText = true;
}

static void join_argument(GivenValue *given, Node *argument) {
    join_given(given, value_of_argument(argument), parts_given(argument, 0));
}

// MAY_BE_MISSING: nothing.
static void join_rest(GivenValue *given, Node *arguments) {
    join_given(given, MAY_BE_MISSING, nullptr);
    for (; arguments; arguments = arguments->next) {
        if (may_be_list(arguments)) return join_given(given, UNKNOWN, nullptr);
        join_argument(given, arguments);
    }
}

void note_call(Summary *caller, Summary *callee, Node *arguments) {
    GivenValue *given = calls_of(caller, callee)->given;
    int32_t count = count_followed(callee);
    int32_t k = 0;
    for (; arguments && k < count && !may_be_list(arguments); arguments = arguments->next)
        join_argument(&given[k++], arguments);
    bool has_list = arguments && k < count;
    while (k < count) join_given(&given[k++], has_list ? UNKNOWN : Value(MAY_BE_MISSING), nullptr);
    if (has_list) return join_given(&given[REST], UNKNOWN, nullptr);
    join_rest(&given[REST], arguments);
}

void note_handled(Summary *caller, Summary *callee) { calls_of(caller, callee); }

void note_values_given(Summary *caller, Summary *callee, const GivenValue *values, int32_t number,
                       bool has_more) {
    GivenValue *given = calls_of(caller, callee)->given;
    int32_t count = count_followed(callee);
    for (int32_t k = 0; k < count; k++) {
        if (k < number) {
            join_given(&given[k], values[k].value, values[k].parts);
        } else {
            join_given(&given[k], has_more ? UNKNOWN : Value(MAY_BE_MISSING), nullptr);
        }
    }
    join_given(&given[REST], has_more ? UNKNOWN : Value(MAY_BE_MISSING), nullptr);
    for (int32_t k = count; k < number; k++)
        join_given(&given[REST], values[k].value, values[k].parts);
}

void trace_parameters(Summary *last) {
    if (!Named.used || CallsByText) return;
    for (const Summary *summary = last; summary; summary = summary->before)
        if (!are_calls_known(summary->scope)) return;
    for (Summary *summary = last; summary; summary = summary->before) {
        const GivenValue *given = join_calls(summary, false);
        if (!is_given_within(summary, summary->given, given)) trace_given(summary, given);
    }
}

static const GivenValue *given_of(const Scope *scope, const Symbol *parameter) {
    const GivenValue *given = scope->summary ? scope->summary->given : nullptr;
    bool is_followed = parameter->position > 0 && parameter->position <= MOST_PARAMETERS;
    return given && is_followed ? &given[parameter->position - 1] : nullptr;
}

Value value_given(const Scope *scope, const Symbol *parameter) {
    const GivenValue *given = given_of(scope, parameter);
    return given ? given->value : UNKNOWN;
}

const KnownParts *parts_of_parameter(const Scope *scope, const Symbol *parameter) {
    const GivenValue *given = given_of(scope, parameter);
    return given ? given->parts : nullptr;
}

const KnownParts *parts_of_rest(const Scope *scope) {
    const GivenValue *given = scope->summary ? scope->summary->given : nullptr;
    return given ? parts_of_cell(given[REST].value, given[REST].parts) : nullptr;
}
