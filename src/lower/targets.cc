// Targets of assignments.
#include "lower/targets.h"

#include "lexer/brackets.h"
#include "lower/context.h"
#include "lower/host_words.h"
#include "lower/lines.h"
#include "lower/short_circuits.h"
#include "support/allocation.h"
#include "translate/text_forms.h"

namespace {

const char *field_name_text(const Node *selector) {
    int32_t outer = open_bracket(IN_PARENTHESES);
    const char *text = lower_expression(selector->first_child)->text;
    close_bracket(outer);
    return text;
}

// A name that is computed is computed once.
const char *stable_name(const char *text) {
    if (*text == '"' || is_identifier(text)) return text;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, text});
    return name;
}

void put_reading(const PendingField *field) {
    const mExpr *is_field = new_keyword_call("isfield", {field->base, field->name});
    put_line("if %s then", {test_text(is_field->text)});
    Lowering.level++;
    const mExpr *value = new_keyword_call("getfield", {field->base, field->name});
    put_line("%s := %s;", {field->value, value->text});
    Lowering.level--;
    put_line("else", {});
    Lowering.level++;
    put_line("%s := Vector();", {field->value});
    Lowering.level--;
    put_line("end if;", {});
}

PendingField *new_pending(const Target *target, const char *name) {
    PendingField *field = AllocRecord<PendingField>();
    *field = {target->path.text, name, new_temporary(), target->pending};
    return field;
}

// The field goes on: further selectors change what it holds.
void read_field(Target *target) {
    if (!target->field) return;
    PendingField *field = new_pending(target, stable_name(target->field));
    put_reading(field);
    *target = {begin_path(field->value, false), nullptr, field};
}

void add_target_selector(Target *target, const Node *selector) {
    read_field(target);
    if (selector->kind == NODE_DYNAMIC_FIELD) {
        target->field = field_name_text(selector);
    } else {
        add_selector(&target->path, selector);
    }
}

void put_fields(const PendingField *field) {
    for (; field; field = field->outer) {
        const mExpr *changed =
            new_keyword_call("setfield", {field->base, field->name, field->value});
        put_line("%s := %s;", {field->base, changed->text});
    }
}

bool is_started(const char *name) {
    for (const GeneratedName *started = Lowering.started; started; started = started->next)
        if (started->text == name) return true;
    return false;
}

// A variable that has no value yet and is read for the place that the first one goes to: it begins
// without elements, in front of all loops.
void start_empty(const Symbol *symbol, const char *written) {
    if (!(symbol->flags & SYMBOL_STARTS_EMPTY) || is_started(symbol->name)) return;
    GeneratedName *started = AllocRecord<GeneratedName>();
    *started = {symbol->name, Lowering.started};
    Lowering.started = started;
    const char *form = symbol->flags & SYMBOL_HAS_BRACES ? "%s := rtable([],subtype='Vector[row]');"
                                                         : "%s := Vector();";
    if (Lowering.in_front)
        add_line(Lowering.in_front, Lowering.front_level, form_text(form, {written}));
}

}  // namespace

Target lower_target(const Node *node, const Node *end) {
    const Node *base = node->kind == NODE_NAME ? node : node->first_child;
    const char *name = written_name(base->symbol);
    start_empty(base->symbol, name);
    Target target = {begin_path(name, false), nullptr, nullptr};
    if (node->kind == NODE_NAME) return target;
    for (const Node *selector = base->next; selector != end; selector = selector->next)
        add_target_selector(&target, selector);
    return target;
}

const char *target_value(const Target *target) {
    if (!target->field) return target->path.text;
    return new_keyword_call("getfield", {target->path.text, target->field})->text;
}

const char *target_text(Target *target) {
    if (target->field) {
        PendingField *field = new_pending(target, target->field);
        *target = {begin_path(field->value, false), nullptr, field};
    }
    return target->path.text;
}

void put_value(const Target *target, const char *value) {
    if (target->field) {
        const mExpr *changed =
            new_keyword_call("setfield", {target->path.text, target->field, value});
        put_line("%s := %s;", {target->path.text, changed->text});
    } else {
        const char *form = is_identifier(value) ? "%s := copy(%s);" : "%s := %s;";
        put_line(form, {target->path.text, value});
    }
    put_fields(target->pending);
}

void finish_target(const Target *target) { put_fields(target->pending); }
