// Calls of a function for each element.
#include "lower/library/element_calls.h"

#include <string.h>
#include <strings.h>

#include "lower/calls/keyword_calls.h"
#include "lower/expressions/anonymous.h"
#include "lower/expressions/expressions.h"
#include "lower/library/named_functions.h"
#include "lower/library/source_calls.h"
#include "support/same_text.h"
#include "syntax/tree/value.h"

namespace {

// Names of options are spelled in letters of either kind.
bool is_option(const Node *node) {
    return node->kind == NODE_STRING && strcasecmp(node->text, "UniformOutput") == 0;
}

bool is_one_of(const Node *node, const char *word, const char *digit) {
    node = without_parens(node);
    bool is_spelled = node->kind == NODE_NAME || node->kind == NODE_NUMBER;
    return is_spelled && (is_same_text(node->text, word) || is_same_text(node->text, digit));
}

// What the arguments are without 'UniformOutput', and which function they belong to.
struct Application {
    const char *row; /* null: not known */
    int count;
};

Application application_of(const OfferedCall *call) {
    int count = 0;
    const Node *argument = call->first;
    for (; argument && !is_option(argument); argument = argument->next) count++;
    if (!argument) return {"apply", count};
    const Node *value = argument->next;
    if (!value || value->next) return {};
    if (is_one_of(value, "false", "0")) return {"apply in cells", count};
    return {is_one_of(value, "true", "1") ? "apply" : nullptr, count};
}

// The first so many values; a function that is named by a text is a handle of it.
ExprList arguments_of(const OfferedCall *call, int count) {
    ExprList list = {};
    const vExpr *cell = call->values;
    for (int k = 0; k < count; k++, cell = cell->next) append_expr(&list, cell->item);
    if (is_identifier_text(call->first))
        list.first->item = lower_handle(named_function(call->first, NODE_HANDLE));
    return list;
}

// Some names are not those of functions, and 'size' has an argument for all elements.
bool is_plain_function(const Node *function) {
    if (function->kind != NODE_STRING) return true;
    return is_identifier_text(function) && !is_same_text(function->text, "size") &&
           !is_same_text(function->text, "prodofsize") && !is_same_text(function->text, "isclass");
}

// The element of a cell that arrayfun gives to its function is a cell.
bool takes_cells(const OfferedCall *call) {
    if (!is_same_text(call->name->text, "arrayfun")) return false;
    for (const Node *argument = call->first->next; argument; argument = argument->next)
        if (is_surely(value_of(argument), MAY_BE_CELL)) return true;
    return false;
}

}  // namespace

mExpr *new_element_call(const OfferedCall *call) {
    const char *name = call->name->text;
    bool is_application = is_same_text(name, "cellfun") || is_same_text(name, "arrayfun");
    if (!is_application || call->count < 2 || !is_plain_function(call->first)) return nullptr;
    if (takes_cells(call)) return nullptr;
    Application application = application_of(call);
    if (!application.row || application.count < 2) return nullptr;
    ExprList values = arguments_of(call, application.count);
    OfferedCall plain = {call->name,        call->first->next, values.first,
                         application.count, call->results,     false};
    mExpr *applied = new_source_call(application.row, &plain);
    free_vExpr(values.first);
    return applied;
}
