// Errors that the translation raises at run time.
#include "lower/statements/raised_errors.h"

#include "lower/calls/calls.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "support/allocation.h"
#include "syntax/library/library_table.h"
#include "syntax/names/names.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/new_nodes.h"

void put_raised_error(const Node *place, const char *message) {
    Symbol *function = AllocRecord<Symbol>();
    *function = {};
    function->name = intern("error");
    Node *name = new_text_node(NODE_NAME, place->offset, end_of(place), function->name);
    name->symbol = function;
    Node *text = new_text_node(NODE_STRING, place->offset, end_of(place), message);
    Lowering.level++;
    put_line("%s;", {lower_call(name, new_parent(NODE_ARGUMENTS, text))->text});
    Lowering.level--;
}

bool raises_error(const Node *statement) {
    const Node *call = statement->kind == NODE_EXPRESSION ? statement->first_child : nullptr;
    const Node *name = call && call->kind == NODE_REFERENCE ? call->first_child : nullptr;
    if (!name || name->kind != NODE_NAME || is_variable(name->symbol) || has_function(name))
        return false;
    return has_trait(name->text, RAISES_ERROR) && name->next->kind == NODE_ARGUMENTS &&
           name->next->first_child;
}
