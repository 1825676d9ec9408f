// Lists of values.
#include "lower/expressions/value_lists.h"

#include <assert.h>
#include <stdlib.h>

#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/value_runs.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/targets/shared_parts.h"
#include "syntax/values/values.h"

namespace {

bool any_child(const Node *node, bool (*test)(const Node *)) {
    for (const Node *child = node->first_child; child; child = child->next)
        if (child->kind != NODE_POSTFIX && test(child)) return true;
    return false;
}

bool any_list_argument(const Node *selector) { return any_child(selector, is_surely_several); }

bool is_function_call(const Node *reference, const Node *selector) {
    const Node *base = reference->first_child;
    if (base->next != selector || base->kind != NODE_NAME) return false;
    return !is_variable(base->symbol) || holds_function(base->symbol);
}

// A field of a struct, or a member of a package.
bool is_single_field(const Node *reference) {
    const Node *base = reference->first_child;
    if (base->kind != NODE_NAME) return false;
    return !is_variable(base->symbol) || (!base->next->next && base->symbol == Lowering.single);
}

bool is_field_list(const Node *reference, ListEnd end, bool is_alone) {
    if (end.index && is_function_call(reference, end.index)) return false;
    if (!end.index) return is_alone && !is_single_field(reference);
    if (any_list_argument(end.index)) return true;
    return is_alone && any_child(end.index, may_be_several);
}

}  // namespace

ListEnd list_end(const Node *reference) {
    ListEnd end = {nullptr, reference->first_child->next};
    for (; end.last->next; end.last = end.last->next) end.index = end.last;
    if (end.index && end.index->kind != NODE_ARGUMENTS) end.index = nullptr;
    return end;
}

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

void note_fields(const Node *node) {
    const Node *last = list_end(node).last;
    if (last->kind == NODE_FIELD) report_at(FIELD_VALUES, node, {last->text});
}

namespace {

// Out of line: the frames of nested lists stay small.
[[gnu::noinline]] mExpr *sequence(const ValueRun *run, const char *to, const char *element) {
    return new_call_leaf(form_text("seq(%s,qxrp_i=%s..%s)", {element, run->from, to}));
}

}  // namespace

mExpr *lower_value_list(const Node *node) {
    node = without_parens(node);
    note_fields(node);
    ValueRun run = new_run(node);
    return sequence(&run, run.to, element_of(&run, "qxrp_i"));
}

mExpr *lower_kept_list(const Node *node) {
    node = without_parens(node);
    note_fields(node);
    ValueRun run = new_run(node);
    return sequence(&run, run.to, listed_text(node, element_of(&run, "qxrp_i")));
}

mExpr *lower_first_value(const Node *node) {
    node = without_parens(node);
    ValueRun run = new_run(node);
    return new_call_leaf(element_of(&run, run.from));
}

// The last of the positions that the targets take.
static const char *last_for(const ValueRun *run, int targets) {
    char *after_digits;
    long from = strtol(run->from, &after_digits, 10);
    if (*after_digits == '\0') return number_text(static_cast<int>(from) + targets - 1);
    Operand first = {new_leaf(run->from), HOST_SUM};
    Operand more = {new_node(EXPR_INTEGER, number_text(targets - 1)), HOST_ATOM};
    return new_binary(OPERATOR_PLUS, &first, &more).expr->text;
}

mExpr *lower_values_for(const Node *node, int targets) {
    assert(targets > 1);
    node = without_parens(node);
    note_fields(node);
    ValueRun run = new_run(node);
    const char *last = last_for(&run, targets);
    return sequence(&run, last, held_text(node, element_of(&run, "qxrp_i")));
}
