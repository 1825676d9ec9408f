// Errors that the translation raises at run time.
#include "lower/raised_errors.h"

#include "lower/calls.h"
#include "lower/context.h"
#include "support/allocation.h"
#include "syntax/names/names.h"
#include "syntax/spellings.h"

void put_raised_error(const Node *place, const char *message) {
    Node text = {};
    text.kind = NODE_STRING;
    text.text = message;
    Node arguments = {};
    arguments.kind = NODE_ARGUMENTS;
    arguments.first_child = &text;
    Symbol *function = AllocRecord<Symbol>();
    *function = {};
    Node *name = AllocRecord<Node>();
    *name = *place;
    name->kind = NODE_NAME;
    name->text = function->name = intern("error");
    name->symbol = function;
    Lowering.level++;
    put_line("%s;", {lower_call(name, &arguments)->text});
    Lowering.level--;
}
