// Functions that are applied to each element.
#include "syntax/trace/applied.h"

#include "support/same_text.h"
#include "syntax/scan/spellings.h"
#include "syntax/trace/parameters.h"
#include "syntax/trace/summaries.h"
#include "syntax/trace/taken_parts.h"

namespace {

// What a function is given of an argument.
typedef GivenValue (*Share)(Node *argument);

GivenValue given(Value value, const KnownParts *parts) {
    value &= ANY_VALUE;
    if (!kinds_of(value) || may_be(value, MAY_BE_OTHER)) return {ANY_VALUE, nullptr, false};
    return {value, parts, false};
}

GivenValue whole(Node *argument) {
    return {Value(value_of(argument) & ANY_VALUE), parts_given(argument, 0), false};
}

GivenValue each_of_cell(Node *cell) {
    return given(elements_given(cell), inside_of_cell(parts_given(cell, 0)));
}

// Of a cell that is a cell, of one element.
GivenValue each_of_array(Node *array) {
    Value value = value_of(array) & ANY_VALUE;
    const KnownParts *parts = parts_given(array, 0);
    if (kinds_of(value) == MAY_BE_CELL)
        return given(MAY_BE_CELL | MAY_BE_ARRAY | MAY_BE_FILLED, parts);
    if (may_be(value, MAY_BE_CELL)) return {ANY_VALUE, nullptr, false};
    return given((value & (ANY_KIND | ANY_SIGN)) | ONE, parts);
}

GivenValue each_field(Node *record) {
    KnownPart any = any_field_in(parts_given(record, 0));
    return given(any.value, any.inside);
}

struct Applier {
    const char *name;
    Share share;
};

constexpr Applier Appliers[] = {{"arrayfun", each_of_array},
                                {"cellfun", each_of_cell},
                                {"feval", whole},
                                {"structfun", each_field}};

Share share_of(const Node *name) {
    for (const Applier &applier : Appliers)
        if (is_same_text(name->text, applier.name)) return applier.share;
    return nullptr;
}

// Options stand after the values of all but feval.
bool is_value(const Node *argument, Share share) {
    return (share == whole || argument->kind != NODE_STRING) && !may_be_list(argument);
}

void give_parameters(Node *function, Share share) {
    Node *values = function->next;
    Node *parameter = function->first_child->first_child;
    for (; parameter && values && is_value(values, share);
         parameter = parameter->next, values = values->next)
        if (parameter->kind == NODE_NAME) parameter->value |= share(values).value;
    for (; parameter; parameter = parameter->next)
        if (parameter->kind == NODE_NAME) parameter->value |= ANY_VALUE;
}

}  // namespace

bool applies_to_each(const Node *name) {
    return is_same_text(name->text, "cellfun") || is_same_text(name->text, "arrayfun");
}

bool applies_written(const Node *name) {
    if (!is_known_to(name->text, APPLIES_FUNCTION | CALLS_FUNCTION)) return false;
    const Node *arguments = name->next;
    if (arguments->kind != NODE_ARGUMENTS || arguments->next || !arguments->first_child)
        return false;
    NodeKind kind = arguments->first_child->kind;
    return (kind == NODE_ANONYMOUS || kind == NODE_HANDLE) && share_of(name) && !Finders.has(name);
}

void trace_applied(const Node *name) {
    Node *function = name->next->first_child;
    Share share = share_of(name);
    trace_all(function->next);
    if (function->kind == NODE_ANONYMOUS) {
        give_parameters(function, share);
        trace_expression(function);
        return;
    }
    function->value |= MAY_BE_FUNCTION | ONE;
    GivenValue values[MOST_APPLIED];
    int32_t count = 0;
    Node *argument = function->next;
    for (; argument && count < MOST_APPLIED && is_value(argument, share); argument = argument->next)
        values[count++] = share(argument);
    bool has_more = argument && (share == whole || may_be_list(argument));
    note_applied_call(function, values, count, has_more);
}

void note_applied_cells(const Node *name) {
    Node *function = name->next->first_child;
    Share share = share_of(name);
    const TakenPart *taken = taken_by_held(function);
    int32_t position = 1;
    for (Node *argument = function->next; argument && is_value(argument, share);
         argument = argument->next, position++) {
        bool gives = false;
        if (taken) {
            GivenValue value = share(argument);
            gives = gives_taken_cell(taken, position, value.value, value.parts);
        }
        set_gives_cell(argument, gives);
    }
}
