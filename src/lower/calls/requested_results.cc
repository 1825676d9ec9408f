// Numbers of results.
#include "lower/calls/requested_results.h"

#include "lower/expressions/expressions.h"
#include "lower/program/context.h"

static const Node *last_part(const Node *value) {
    if (value->kind != NODE_REFERENCE) return value;
    const Node *selector = second_child(value);
    while (selector->next) selector = selector->next;
    return selector;
}

void request_results(const Node *value, int32_t results) {
    Lowering.asked_call = last_part(without_parens(value));
    Lowering.asked_results = results;
}

int32_t requested_results(const Node *call) {
    return call == Lowering.asked_call ? Lowering.asked_results : 1;
}
