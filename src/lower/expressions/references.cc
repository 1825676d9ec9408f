// References.
#include "lower/expressions/references.h"

#include <assert.h>

#include "lower/calls/calls.h"
#include "lower/classes/methods.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/paths.h"
#include "lower/expressions/value_lists.h"
#include "lower/targets/cell_parts.h"
#include "syntax/names/names.h"
#include "translate/indices.h"

namespace {

bool is_column(const Node *selector) {
    const Node *argument = selector->kind == NODE_ARGUMENTS ? selector->first_child : nullptr;
    return argument && !argument->next && is_colon(argument);
}

// x(:), whose shape is a column whatever x is; null for a call.
mExpr *lower_column(const Node *reference, const Node *selector) {
    Path path = value_path(reference, selector);
    name_path(&path);
    vExpr *colon = alloc_vExpr(new_node(EXPR_RANGE, nullptr));
    mExpr *column = new_index_node(path.text, VARIABLE_INDEX, colon);
    free_vExpr(colon);
    return column;
}

bool is_called(const Node *base) {
    return base->kind == NODE_NAME && (!is_variable(base->symbol) || holds_function(base->symbol));
}

// f(arguments) of a function, and nothing more.
bool is_plain_call(const Node *base) {
    const Node *arguments = base->next;
    bool is_function = base->kind == NODE_NAME && !is_variable(base->symbol);
    return is_function && arguments->kind == NODE_ARGUMENTS && !arguments->next;
}

// Out of line: the frames of nested calls stay small.
[[gnu::noinline]] mExpr *lower_selectors(const Node *node) {
    const Node *last = last_selector(node);
    bool is_call = is_called(node->first_child) && last == node->first_child->next;
    if (is_column(last) && !is_call) return lower_column(node, last);
    if (!is_call && (is_cell_part(node) || is_listed_part(node))) return lower_cell_part(node);
    Path path = value_path(node, nullptr);
    return path.is_call || path.has_index ? new_call_leaf(path.text) : new_leaf(path.text);
}

const char *shown_selector(const Node *selector) {
    if (selector->kind == NODE_ARGUMENTS) return "(...)";
    return selector->kind == NODE_BRACES ? "{...}" : ".";
}

}  // namespace

mExpr *lower_reference(const Node *node) {
    assert(node->kind == NODE_REFERENCE && second_child(node));
    const Node *base = node->first_child;
    if (is_plain_call(base)) {
        mExpr *call = lower_call(base, base->next);
        bool is_operator = relation_of(call) || without_parentheses(call).level != HOST_ATOM;
        return is_operator ? call : new_call_leaf(call->text);
    }
    check_held_call(node);
    check_object_index(base, "subsref", shown_selector(base->next));
    return is_value_list(node, false) ? lower_first_value(node) : lower_selectors(node);
}
