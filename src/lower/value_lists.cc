// Lists of values.
#include "lower/value_lists.h"

#include <stdlib.h>

#include "lexer/brackets.h"
#include "lower/context.h"
#include "lower/gaps.h"
#include "lower/host_conditions.h"
#include "lower/lines.h"
#include "lower/paths.h"
#include "syntax/values.h"

namespace {

bool any_child(const Node *node, bool (*test)(const Node *)) {
    for (const Node *child = node->first_child; child; child = child->next)
        if (child->kind != NODE_POSTFIX && test(child)) return true;
    return false;
}

bool any_list_argument(const Node *selector) { return any_child(selector, is_surely_several); }

// The selectors that make a list of a reference: the last one, and the index in front of a field.
struct ListEnd {
    const Node *index;  // null: the whole array
    const Node *last;
};

ListEnd list_end(const Node *reference) {
    ListEnd end = {nullptr, reference->first_child->next};
    for (; end.last->next; end.last = end.last->next) end.index = end.last;
    if (end.index && end.index->kind != NODE_ARGUMENTS) end.index = nullptr;
    return end;
}

bool is_function_call(const Node *reference, const Node *selector) {
    const Node *base = reference->first_child;
    if (base->next != selector || base->kind != NODE_NAME) return false;
    return !is_variable(base->symbol) || holds_function(base->symbol);
}

bool is_package(const Node *reference) {
    const Node *base = reference->first_child;
    return base->kind == NODE_NAME && !is_variable(base->symbol);
}

bool is_field_list(const Node *reference, ListEnd end, bool is_alone) {
    if (end.index && is_function_call(reference, end.index)) return false;
    if (!end.index) return is_alone && !is_package(reference);
    if (any_list_argument(end.index)) return true;
    return is_alone && any_child(end.index, may_be_several);
}

}  // namespace

bool may_be_several(const Node *argument) {
    argument = without_parens(argument);
    bool is_loop_variable = argument->kind == NODE_NAME && argument->symbol->loops;
    return argument->kind != NODE_STRING && !is_loop_variable && !is_surely_single(argument);
}

bool is_value_list(const Node *node, bool is_alone) {
    node = without_parens(node);
    if (node->kind != NODE_REFERENCE) return false;
    ListEnd end = list_end(node);
    if (end.last->kind == NODE_FIELD) return is_field_list(node, end, is_alone);
    if (end.last->kind != NODE_BRACES) return false;
    return any_list_argument(end.last) || (is_alone && any_child(end.last, may_be_several));
}

namespace {

// The elements that a list runs over: those of one argument of an index.
struct Run {
    const char *base;
    const Node *index;  // the selector; null: the base itself, element by element
    int argument;       // number of the argument that gives several, from 1
    int count;          // of the arguments
    const char *from;
    const char *to;
    const char *positions;  // variable with the positions; null: qxrp_i is the position itself
    const char *field;      // behind the element: ":-f", or nothing
};

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

const char *last_of(const Run *run) {
    return last_position_text(run->base, run->argument, run->count);
}

// Positions in a variable of their own, from which the index picks some: right for masks too.
void run_over_picked(Run *run, const mExpr *picked) {
    const char *all = new_temporary();
    const char *some = new_temporary();
    put_line("%s := Vector[row]([seq(1..%s)]);", {all, last_of(run)});
    put_line("%s := %s(%s);", {some, all, picked->text});
    run->to = form_text("ArrayNumElems(%s,'All')", {some});
    run->positions = some;
}

void run_over_values(Run *run, const mExpr *values) {
    const char *name = new_temporary();
    put_line("%s := %s;", {name, values->text});
    run->to = form_text("ArrayNumElems(%s,'All')", {name});
    run->positions = name;
}

void run_over_range(Run *run, const Node *range) {
    const mExpr *value = lower_range(range);
    if (!has_unit_step(value->range)) return run_over_values(run, value);
    run->from = value->range->start->text;
    run->to = value->range->stop->text;
}

void set_bounds(Run *run, const Node *argument) {
    argument = without_parens(argument);
    const EndBase *outer = Lowering.end_base;
    EndBase here = {run->base, run->argument, run->count, nullptr};
    Lowering.end_base = &here;
    if (argument->kind == NODE_COLON) {
        run->to = last_of(run);
    } else if (argument->kind == NODE_RANGE) {
        run_over_range(run, argument);
    } else {
        run_over_picked(run, lower_expression(argument));
    }
    Lowering.end_base = outer;
}

const Node *nth_child(const Node *node, int n) {
    const Node *child = node->first_child;
    while (--n > 0) child = child->next;
    return child;
}

Run run_over_elements(const char *base) {
    return {base, nullptr, 1, 1, "1", form_text("ArrayNumElems(%s,'All')", {base}), nullptr, ""};
}

// Several arguments that give several: what they select gets a name.
Run run_over_selection(Path *path, const Node *index) {
    add_index(path, index);
    path->is_call = true;
    name_path(path);
    return run_over_elements(path->text);
}

Run run_over_index(Path *path, const Node *index) {
    if (count_lists(index) > 1) return run_over_selection(path, index);
    Run run = run_over_elements(path->text);
    run.index = index;
    run.argument = list_argument(index);
    run.count = count_children(index);
    int32_t outer = open_bracket(IN_BRACES);
    set_bounds(&run, nth_child(index, run.argument));
    close_bracket(outer);
    return run;
}

Run new_run(const Node *node) {
    ListEnd end = list_end(node);
    bool is_field = end.last->kind == NODE_FIELD;
    const Node *index = is_field ? end.index : end.last;
    Path path = value_path(node, index ? index : end.last);
    name_path(&path);
    Run run = index ? run_over_index(&path, index) : run_over_elements(path.text);
    if (!is_field) return run;
    Path field = begin_path("", false);
    field.has_field = true;
    add_field(&field, end.last);
    run.field = field.text;
    return run;
}

// The element at a position, which stands for the argument that gives several.
const char *element_text(const Run *run, const char *position) {
    if (!run->index) return form_text("%s(%s)%s", {run->base, position, run->field});
    ExprList arguments = {};
    EndBase at = {run->base, 0, run->count, nullptr};
    int32_t outer = open_bracket(IN_BRACES);
    for (const Node *child = run->index->first_child; child; child = child->next) {
        bool is_list = ++at.argument == run->argument;
        append_expr(&arguments, is_list ? new_leaf(position) : lower_position(child, &at));
    }
    close_bracket(outer);
    Path path = begin_path(run->base, false);
    append_index(&path, arguments.first);
    free_vExpr(arguments.first);
    return form_text("%s%s", {path.text, run->field});
}

const char *position_at(const Run *run, const char *number) {
    return run->positions ? form_text("%s(%s)", {run->positions, number}) : number;
}

mExpr *sequence(const Run *run, const char *to) {
    const char *element = element_text(run, position_at(run, "qxrp_i"));
    return new_call_leaf(form_text("seq(%s,qxrp_i=%s..%s)", {element, run->from, to}));
}

void note_fields(const Node *node) {
    const Node *last = list_end(node).last;
    if (last->kind == NODE_FIELD) report_at(FIELD_VALUES, node, {last->text});
}

}  // namespace

mExpr *lower_value_list(const Node *node) {
    node = without_parens(node);
    note_fields(node);
    Run run = new_run(node);
    return sequence(&run, run.to);
}

mExpr *lower_first_value(const Node *node) {
    node = without_parens(node);
    Run run = new_run(node);
    return new_call_leaf(element_text(&run, position_at(&run, run.from)));
}

// The last of the positions that the targets take.
static const char *last_for(const Run *run, int targets) {
    char *behind_digits;
    long from = strtol(run->from, &behind_digits, 10);
    if (*behind_digits == '\0') return number_text(static_cast<int>(from) + targets - 1);
    Operand first = {new_leaf(run->from), HOST_SUM};
    Operand more = {new_node(EXPR_INTEGER, number_text(targets - 1)), HOST_ATOM};
    return new_binary(OPERATOR_PLUS, &first, &more).expr->text;
}

mExpr *lower_values_for(const Node *node, int targets) {
    node = without_parens(node);
    note_fields(node);
    Run run = new_run(node);
    return sequence(&run, last_for(&run, targets));
}
