// The results of the program's own functions.
//
// At first a call of a function that has not been traced is taken not to return, so that what a
// function gives without calling itself is found first. Once a round has found nothing new, what it
// took for the results is right for any number of calls inside each other.
#include "syntax/trace/summaries.h"

#include <algorithm>

#include "support/allocation.h"
#include "syntax/trace/calls_traced.h"
#include "syntax/trace/effects.h"
#include "syntax/trace/held_values.h"
#include "syntax/trace/parameters.h"
#include "syntax/trace/trace_function.h"
#include "syntax/values/field_values.h"

namespace {

constexpr int MOST_ROUNDS = 5;

struct Order {
    Summary *first;
    Summary *last;
};

Summary *FirstAdded;
Summary *LastAdded;
Summary *Traced;  // null: somebody else
uint32_t Moment;

void append(Order *order, Summary *summary) {
    (order->last ? order->last->next : order->first) = summary;
    summary->before = order->last;
    order->last = summary;
}

const Node *outputs_of(const Scope *scope) {
    return scope->owner->kind == NODE_FUNCTION ? scope->owner->first_child->first_child : nullptr;
}

}  // namespace

Summary *summary_of(const Symbol *symbol) {
    const Node *definition = is_variable(symbol) ? nullptr : Finders.definition(symbol);
    const Scope *scope = definition ? scope_of(definition) : nullptr;
    return scope ? scope->summary : nullptr;
}

static void trace_summary(Summary *summary) {
    if (summary->traced) forget_trace(summary->scope);
    summary->traced = ++Moment;
    summary->calls = nullptr;
    Traced = summary;
    trace_alone(summary->scope);
    Traced = nullptr;
}

namespace {

// The next function that it calls and that has no place in the order.
Summary *next_callee(Summary *summary) {
    while (summary->symbol) {
        Summary *callee = summary_of(summary->symbol);
        summary->symbol = summary->symbol->next;
        if (callee && !callee->has_place) return callee;
    }
    return nullptr;
}

// After all that it calls.
void place(Order *order, Summary *summary) {
    while (summary) {
        summary->has_place = true;
        if (Summary *callee = next_callee(summary)) {
            callee->below = summary;
            summary = callee;
        } else {
            append(order, summary);
            summary = summary->below;
        }
    }
}

Order in_order() {
    Order order = {};
    for (Summary *summary = FirstAdded; summary; summary = summary->added)
        if (!summary->has_place) place(&order, summary);
    return order;
}

// Whether more is known of what it calls than when it was traced.
bool is_outdated(const Summary *summary) {
    if (!summary->traced) return true;
    for (const TracedCalls *call = summary->calls; call; call = call->next)
        if (call->callee->grown > summary->traced) return true;
    return false;
}

// Answers whether there were any.
bool trace_outdated(Summary *first) {
    bool is_any = false;
    for (Summary *summary = first; summary; summary = summary->next) {
        if (!is_outdated(summary)) continue;
        trace_summary(summary);
        is_any = true;
    }
    return is_any;
}

// Whether nothing new comes within a few rounds.
bool settles(Summary *first) {
    for (int round = 0; round < MOST_ROUNDS; round++)
        if (!trace_outdated(first)) return true;
    return false;
}

void add_result(Summary *summary, Symbol *output, Value value) {
    if (is_within(value, output->result)) return;
    output->result |= value;
    summary->grown = ++Moment;
}

// Also of an output that may have been given a value elsewhere, what is inside must be known.
void add_inside(Summary *summary, Symbol *output, Value value, const KnownParts *parts) {
    if (!may_be(value, MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_FUNCTION)) return;
    if (!output->has_parts_result) {
        output->has_parts_result = true;
        output->parts_result = parts;
    } else if (is_part_of(parts, output->parts_result)) {
        return;
    } else {
        output->parts_result = joined_parts(output->parts_result, parts);
    }
    summary->grown = ++Moment;
}

void give_up(Summary *summary) {
    for (const Node *output = outputs_of(summary->scope); output; output = output->next) {
        add_result(summary, output->symbol, ANY_VALUE | MAY_BE_MISSING);
        add_inside(summary, output->symbol, ANY_VALUE, nullptr);
    }
}

bool has_end(const Summary *summary) {
    const Node *output = outputs_of(summary->scope);
    return !output || output->symbol->result;
}

void find_results(Summary *first) {
    bool is_settled = settles(first);
    for (Summary *summary = first; summary; summary = summary->next)
        if (!is_settled || !has_end(summary)) give_up(summary);
    if (settles(first)) return;
    for (Summary *summary = first; summary; summary = summary->next) give_up(summary);
    trace_outdated(first);
}

// What an output may be where the function ends.
struct Ending {
    Value value;
    bool has_parts;
    const KnownParts *parts;
};

Ending ending_of(const Symbol *output) {
    return {output->result, output->has_parts_result, output->parts_result};
}

void set_ending(Symbol *output, Ending ending) {
    output->result = ending.value;
    output->has_parts_result = ending.has_parts;
    output->parts_result = ending.parts;
}

bool is_as_before(const Symbol *output, Ending before) {
    return output->result == before.value && output->has_parts_result == before.has_parts &&
           is_part_of(before.parts, output->parts_result);
}

bool calls_itself(const Summary *summary) {
    for (const TracedCalls *calls = summary->calls; calls; calls = calls->next)
        if (calls->callee == summary) return true;
    return false;
}

int32_t count_outputs(const Scope *scope) {
    int32_t count = 0;
    for (const Node *output = outputs_of(scope); output; output = output->next) count++;
    return count;
}

void make_callers_stale(const Summary *summary) {
    for (const TracedCalls *calls = summary->callers; calls; calls = calls->next_of_callee)
        if (calls->trace == calls->caller->traced) calls->caller->is_stale = true;
}

// Callees come first.
void trace_stale(Summary *first) {
    for (Summary *summary = first; summary; summary = summary->next)
        if (summary->is_stale) retrace(summary);
}

// What one function gives a global, others have.
void trace_globals(Summary *first) {
    for (Summary *summary = first; summary; summary = summary->next)
        summary->is_stale |= summary->scope->globals && knows_more_globals(summary->scope);
    trace_stale(first);
}

// The first function is everybody's.
void follow_all_calls(bool may_know_calls) {
    if (!may_know_calls || !FirstAdded || !FirstAdded->added) return;
    FirstAdded->is_open = true;
    for (Summary *summary = FirstAdded; summary; summary = summary->added) follow_calls(summary);
}

Symbol *output_of(const Scope *scope, int index) {
    const Node *output = outputs_of(scope);
    while (output && index-- > 0) output = output->next;
    bool is_list = output && !output->next && (scope->flags & HAS_VARARGOUT);
    return output && !is_list ? output->symbol : nullptr;
}

// Null for none.
const Symbol *varargout_of(const Scope *scope) {
    const Node *output = scope->flags & HAS_VARARGOUT ? outputs_of(scope) : nullptr;
    while (output && output->next) output = output->next;
    return output ? output->symbol : nullptr;
}

// What all results after the named ones may be.
Value value_of_rest(const Scope *scope) {
    const Symbol *list = varargout_of(scope);
    Value value = list ? elements_of_cell(list->parts_result) & ANY_VALUE : 0;
    return kinds_of(value) ? value : ANY_VALUE;
}

}  // namespace

void retrace(Summary *summary) {
    summary->is_stale = false;
    if (calls_itself(summary)) return trace_summary(summary);
    size_t size = sizeof(Ending) * static_cast<size_t>(count_outputs(summary->scope) + 1);
    Ending *before = static_cast<Ending *>(AllocKept(size));
    Ending *next = before;
    for (const Node *output = outputs_of(summary->scope); output; output = output->next) {
        *next++ = ending_of(output->symbol);
        set_ending(output->symbol, {});
    }
    trace_summary(summary);
    bool is_same = true;
    bool ends = has_end(summary);
    next = before;
    for (const Node *output = outputs_of(summary->scope); output; output = output->next, next++) {
        if (!ends) set_ending(output->symbol, *next);
        is_same &= is_as_before(output->symbol, *next);
    }
    if (!is_same) make_callers_stale(summary);
}

void begin_summaries() {
    FirstAdded = LastAdded = nullptr;
    begin_parameters();
}

void add_function(Scope *scope) {
    Summary *summary = AllocRecord<Summary>();
    *summary = {};
    summary->scope = scope;
    summary->symbol = scope->first_symbol;
    scope->summary = summary;
    (LastAdded ? LastAdded->added : FirstAdded) = summary;
    LastAdded = summary;
    for (const NodeCell *nested = scope->nested; nested; nested = nested->next)
        add_function(scope_of(nested->node));
}

void trace_functions(FunctionFinders finders, bool may_know_calls) {
    Finders = finders;
    follow_all_calls(may_know_calls);
    Order order = in_order();
    find_results(order.first);
    trace_globals(order.first);
    trace_parameters(order.last);
    trace_stale(order.first);
    trace_parameters(order.last);
    trace_globals(order.first);
}

// Those up to the last one that may have a value.
static size_t count_set(const Node *first) {
    size_t count = 0;
    size_t number = 0;
    for (const Node *output = first; output; output = output->next) {
        number++;
        if (value_now(output->symbol) != MAY_BE_MISSING) count = number;
    }
    return count;
}

void note_function_end(const Scope *scope, Node *end) {
    if (is_dead()) return;
    const Node *first = outputs_of(scope);
    if (first && end) {
        end->results = std::max(end->value ? end->results : 0, count_set(first));
        end->value = value_now(first->symbol);
    }
    if (!scope->summary) return;
    for (const Node *output = first; output; output = output->next) {
        Symbol *symbol = output->symbol;
        add_result(scope->summary, symbol, value_now(symbol));
        add_inside(scope->summary, symbol, value_now(symbol), parts_now(symbol));
    }
}

static const OutputValue *outside_output(const Node *name, int index) {
    const FunctionResults *results = Finders.outside ? Finders.outside(name->text) : nullptr;
    if (!results) return nullptr;
    return index < results->count ? &results->outputs[index] : &results->rest;
}

static Value value_of_outside(const Node *name, int index) {
    const OutputValue *output = outside_output(name, index);
    Value result = output ? output->value & ANY_VALUE : ANY_VALUE;
    return kinds_of(result) ? result : ANY_VALUE;
}

Value value_of_own(const Node *name, Node *arguments, int index) {
    if (is_in_called_script()) return ANY_VALUE;
    Summary *summary = summary_of(name->symbol);
    if (!summary) return value_of_outside(name, index);
    if (Traced) note_call(Traced, summary, arguments);
    const Symbol *output = output_of(summary->scope, index);
    if (!output) return value_of_rest(summary->scope);
    if (!output->result) end_here();
    Value result = output->result & ANY_VALUE;
    return kinds_of(result) ? result : ANY_VALUE;
}

Value value_of_handled(const Node *handle) {
    if (is_in_called_script()) return ANY_VALUE;
    Summary *summary = summary_of(handle->symbol);
    if (!summary) return value_of_outside(handle, 0);
    if (Traced) note_handled(Traced, summary);
    const Symbol *output = output_of(summary->scope, 0);
    return output ? Value(output->result & ANY_VALUE) : value_of_rest(summary->scope);
}

void note_applied_call(const Node *handle, const GivenValue *values, int32_t number,
                       bool has_more) {
    Summary *summary = is_in_called_script() ? nullptr : summary_of(handle->symbol);
    if (summary && Traced) note_values_given(Traced, summary, values, number, has_more);
}

FunctionResults results_of(const Scope *scope) {
    int32_t count = 0;
    while (output_of(scope, count)) count++;
    OutputValue *outputs =
        static_cast<OutputValue *>(AllocKept(sizeof(OutputValue) * static_cast<size_t>(count + 1)));
    for (int32_t k = 0; k < count; k++) {
        const Symbol *output = output_of(scope, k);
        outputs[k] = {output->result, output->parts_result};
    }
    return {count,
            outputs,
            {value_of_rest(scope), nullptr},
            scope->taken,
            Finders.globals ? known_globals(Finders.globals) : nullptr};
}

const KnownParts *parts_of_own(const Node *name, int index) {
    if (is_in_called_script()) return nullptr;
    const Summary *summary = summary_of(name->symbol);
    if (!summary) {
        const OutputValue *outside = outside_output(name, index);
        return outside ? outside->parts : nullptr;
    }
    const Symbol *output = output_of(summary->scope, index);
    return output ? output->parts_result : nullptr;
}
