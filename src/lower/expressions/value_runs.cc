// What lists of values run over.
#include "lower/expressions/value_runs.h"

#include "lower/expressions/paths.h"
#include "lower/expressions/value_lists.h"
#include "lower/library/source_calls.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "syntax/values/values.h"

namespace {

int count_lists(const Node *index) {
    int count = 0;
    for (const Node *child = index->first_child; child; child = child->next)
        count += is_surely_several(child);
    return count;
}

int list_argument(const Node *index) {
    int k = 1;
    for (const Node *child = index->first_child; child; child = child->next, k++)
        if (is_surely_several(child)) return k;
    k = 1;
    for (const Node *child = index->first_child; child; child = child->next, k++)
        if (may_be_several(child)) return k;
    return 1;
}

const char *last_of(const ValueRun *run) {
    return last_position_text(run->base, run->argument, run->count);
}

// Positions in a variable of their own, from which the index picks some: right for masks too.
void run_over_picked(ValueRun *run, const mExpr *picked) {
    const char *some = new_temporary();
    const char *positions = source_call_text("%positions", {last_of(run), picked->text});
    put_line("%s := %s;", {some, positions});
    run->to = form_text("ArrayNumElems(%s,'All')", {some});
    run->positions = some;
}

// Whether it is surely no mask.
bool are_positions(const Node *argument) { return kinds_of(value_of(argument)) == MAY_BE_NUMBER; }

bool is_variable_name(const Node *argument) {
    return argument->kind == NODE_NAME && is_variable(argument->symbol);
}

void run_over_variable(ValueRun *run, const mExpr *variable) {
    run->to = form_text("ArrayNumElems(%s,'All')", {variable->text});
    run->positions = variable->text;
}

void run_over_values(ValueRun *run, const mExpr *values) {
    const char *name = new_temporary();
    put_line("%s := %s;", {name, values->text});
    run->to = form_text("ArrayNumElems(%s,'All')", {name});
    run->positions = name;
}

void run_over_range(ValueRun *run, const Node *range) {
    const mExpr *value = lower_range(range);
    if (!has_unit_step(value->range)) return run_over_values(run, value);
    run->from = value->range->start->text;
    run->to = value->range->stop->text;
}

void set_bounds(ValueRun *run, const Node *argument) {
    argument = without_parens(argument);
    const EndBase *outer = Lowering.end_base;
    EndBase here = {run->base, run->argument, run->count, nullptr};
    Lowering.end_base = &here;
    if (is_colon(argument)) {
        run->to = last_of(run);
    } else if (argument->kind == NODE_RANGE) {
        run_over_range(run, argument);
    } else if (are_positions(argument)) {
        const mExpr *positions = lower_expression(argument);
        is_variable_name(argument) ? run_over_variable(run, positions)
                                   : run_over_values(run, positions);
    } else {
        run_over_picked(run, lower_expression(argument));
    }
    Lowering.end_base = outer;
}

ValueRun run_over_elements(const char *base) {
    return {base, nullptr, 1, 1, "1", form_text("ArrayNumElems(%s,'All')", {base}), nullptr, ""};
}

// Several arguments that give several: what they select gets a name.
ValueRun run_over_selection(Path *path, const Node *index) {
    add_index(path, index);
    path->is_call = true;
    name_path(path);
    return run_over_elements(path->text);
}

// Out of line, as what follows it: the frames of nested lists stay small.
[[gnu::noinline]] ValueRun run_over_index(Path *path, const Node *index) {
    if (count_lists(index) > 1) return run_over_selection(path, index);
    ValueRun run = run_over_elements(path->text);
    run.index = index;
    run.argument = list_argument(index);
    run.count = count_children(index);
    set_bounds(&run, nth_child(index, run.argument));
    return run;
}

[[gnu::noinline]] const char *field_text(const Node *field) {
    Path path = begin_path("", false);
    path.has_field = true;
    add_field(&path, field);
    return path.text;
}

}  // namespace

ValueRun new_run(const Node *node) {
    ListEnd end = list_end(node);
    bool is_field = end.last->kind == NODE_FIELD;
    const Node *index = is_field ? end.index : end.last;
    Path path = value_path(node, index ? index : end.last);
    name_repeated_path(&path);
    ValueRun run = index ? run_over_index(&path, index) : run_over_elements(path.text);
    if (is_field) run.field = field_text(end.last);
    return run;
}

static const char *position_at(const ValueRun *run, const char *number) {
    return run->positions ? form_text("%s(%s)", {run->positions, number}) : number;
}

const char *element_of(const ValueRun *run, const char *number) {
    const char *position = position_at(run, number);
    if (!run->index) return form_text("%s(%s)%s", {run->base, position, run->field});
    ExprList arguments = {};
    EndBase at = {run->base, 0, run->count, nullptr};
    for (const Node *child = run->index->first_child; child; child = child->next) {
        bool is_list = ++at.argument == run->argument;
        append_expr(&arguments, is_list ? new_leaf(position) : lower_position(child, &at));
    }
    Path path = begin_path(run->base, false);
    append_index(&path, arguments.first);
    free_vExpr(arguments.first);
    return form_text("%s%s", {path.text, run->field});
}
