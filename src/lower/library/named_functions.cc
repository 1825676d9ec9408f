// Functions that the source names by a text.
#include "lower/library/named_functions.h"

#include "support/allocation.h"
#include "syntax/names/names.h"
#include "syntax/scan/spellings.h"
#include "translate/text_forms.h"

bool is_identifier_text(const Node *node) {
    return node->kind == NODE_STRING && is_identifier(node->text);
}

const Node *named_function(const Node *text, NodeKind kind) {
    Symbol *symbol = AllocRecord<Symbol>();
    *symbol = {};
    symbol->name = intern(text->text);
    Node *name = AllocRecord<Node>();
    *name = *text;
    name->kind = kind;
    name->text = symbol->name;
    name->symbol = symbol;
    return name;
}
