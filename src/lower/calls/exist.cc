// Whether a variable exists.
#include "lower/calls/exist.h"

#include "lower/calls/keyword_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/operands.h"
#include "lower/lines/gaps.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "support/same_text.h"
#include "syntax/names/names.h"
#include "syntax/scan/spellings.h"
#include "translate/text_forms.h"

// The name between the quotes, or null.
static const Node *asked_name(const Node *arguments) {
    const Node *first = arguments->first_child;
    if (!first || first->kind != NODE_STRING || !*first->text) return nullptr;
    const Node *second = first->next;
    if (!second) return first;
    bool is_variable = second->kind == NODE_STRING && is_same_text(second->text, "var");
    return is_variable && !second->next ? first : nullptr;
}

static mExpr *lower_asked(const Symbol *symbol) {
    bool is_parameter = symbol->position > 0 && symbol->scope == Lowering.scope;
    if (symbol->presence)
        return symbol->position > 0 ? new_leaf(symbol->presence) : new_flag(symbol->presence);
    return is_parameter ? count_comparison("nargs", OP_GE, symbol->position) : nullptr;
}

// The host's form for a variable, whose name it gets as a name.
static mExpr *ask_variable(const char *written) {
    vExpr *name = alloc_vExpr(new_leaf(written));
    mExpr *answer = ask_host("exist_variable", name);
    free_vExpr(name);
    return answer;
}

mExpr *lower_exist(const Node *name, const Node *arguments) {
    if (!is_same_text(name->text, "exist")) return nullptr;
    const Node *asked = asked_name(arguments);
    if (!asked) return nullptr;
    Symbol *symbol = find_symbol(Lowering.scope, intern(asked->text));
    bool is_known = symbol && is_variable(symbol);
    mExpr *test = is_known ? lower_asked(symbol) : nullptr;
    if (test) return test;
    bool is_any = asked->next && is_identifier(asked->text);
    if (is_known || is_any) test = ask_variable(is_known ? written_name(symbol) : asked->text);
    if (!test && is_known) report_at(EXIST_VARIABLE, name, {asked->text});
    return test;
}

void put_presence_variable(Symbol *symbol, const char *value) {
    symbol->presence = form_text("qxrp_%s_is_set", {symbol->name});
    declare_generated(symbol->presence);
    put_line("%s := %s;", {symbol->presence, value});
}

void put_absences(const Scope *scope) {
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        if (symbol->last_asked == 0 || symbol->position > 0) continue;
        put_presence_variable(symbol, "0");
    }
}

void put_presence(const Node *target) {
    const Node *base = target->kind == NODE_REFERENCE ? target->first_child : target;
    if (base->kind != NODE_NAME || target->offset > base->symbol->last_asked) return;
    if (base->symbol->presence) put_line("%s := 1;", {base->symbol->presence});
}
