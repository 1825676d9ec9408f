// Calls in the order of the source.
#include "lower/expressions/earlier_calls.h"

#include "lower/expressions/expressions.h"
#include "lower/expressions/fallible.h"
#include "lower/expressions/value_lists.h"
#include "syntax/names/names.h"

bool may_act(const Node *node) {
    if (node->kind == NODE_ANONYMOUS || node->kind == NODE_HANDLE) return false;
    if (node->kind == NODE_NAME) return !is_variable(node->symbol) && is_unknown_function(node);
    for (const Node *child = first_child(node); child; child = child->next)
        if (may_act(child)) return true;
    return false;
}

const char *name_earlier(LinesEnd *end, const char *text) {
    if (is_identifier(text)) return text;
    const char *name = new_temporary();
    Line *first = end->last ? end->last->next : end->lines->first;
    Lines one = {};
    add_line(&one, Lowering.level, form_text("%s := %s;", {name, text}));
    one.first->next = first;
    (end->last ? end->last->next : end->lines->first) = one.first;
    if (!first) end->lines->last = one.first;
    end->last = one.first;
    return name;
}

void name_call(LinesEnd *end, const Node *node, vExpr *value) {
    if (!is_value_list(node, false) && may_act(node))
        value->item = new_leaf(name_earlier(end, plain_value(value->item)->text));
}

void name_calls(LinesEnd *end, const Node *argument, vExpr *values) {
    for (vExpr *cell = values; cell; cell = cell->next, argument = argument->next)
        if (argument->kind != NODE_RANGE) name_call(end, argument, cell);
}
