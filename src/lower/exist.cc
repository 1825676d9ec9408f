// Whether a variable exists.
#include "lower/exist.h"

#include <string.h>

#include "lower/context.h"
#include "lower/gaps.h"
#include "lower/host_conditions.h"
#include "syntax/names.h"
#include "syntax/spellings.h"

// The name between the quotes, or null.
static const Node *asked_name(const Node *arguments) {
    const Node *first = arguments->first_child;
    if (!first || first->kind != NODE_STRING || !*first->text) return nullptr;
    const Node *second = first->next;
    if (!second) return first;
    bool is_variable = second->kind == NODE_STRING && strcmp(second->text, "var") == 0;
    return is_variable && !second->next ? first : nullptr;
}

mExpr *lower_exist(const Node *name, const Node *arguments) {
    if (strcmp(name->text, "exist") != 0) return nullptr;
    const Node *asked = asked_name(arguments);
    const Symbol *symbol = asked ? find_symbol(Lowering.scope, intern(asked->text)) : nullptr;
    if (!symbol || !is_variable(symbol)) return nullptr;
    if (symbol->position > 0 && symbol->scope == Lowering.scope)
        return count_comparison("nargs", OP_GE, symbol->position);
    report_at(EXIST_VARIABLE, name, {asked->text});
    return nullptr;
}
