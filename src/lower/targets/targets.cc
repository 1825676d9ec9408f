// Targets of assignments.
#include "lower/targets/targets.h"

#include <assert.h>

#include "lower/classes/methods.h"
#include "lower/conditions/host_conditions.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "support/allocation.h"
#include "syntax/values/flow.h"
#include "syntax/values/values.h"
#include "translate/operators.h"
#include "translate/text_forms.h"

namespace {

constexpr const char *EMPTY_CELL = "rtable([],subtype='Vector[row]')";

const char *field_name_text(const Node *selector) {
    assert(selector->kind == NODE_FIELD || selector->kind == NODE_DYNAMIC_FIELD);
    return lower_expression(selector->first_child)->text;
}

// A name that is computed is computed once.
const char *stable_name(const char *text) {
    if (*text == '"' || is_identifier(text)) return text;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, text});
    return name;
}

// The field, or what it begins as in front of selector.
void put_reading(const PendingField *field, const Node *selector) {
    const mExpr *is_field = new_keyword_call("isfield", {field->source, field->name});
    put_line("if %s then", {value_condition(is_field->text)});
    Lowering.level++;
    const mExpr *value = new_keyword_call("getfield", {field->source, field->name});
    put_line("%s := %s;", {field->value, value->text});
    Lowering.level--;
    put_line("else", {});
    bool is_cell = selector->kind == NODE_BRACES;
    put_inner_line("%s := %s;", {field->value, is_cell ? EMPTY_CELL : "Vector()"});
    put_line("end if;", {});
}

const char *structure_of(const Target *target) {
    return target->source ? target->source : target->path.text;
}

PendingField *new_pending(const Target *target, const char *name) {
    PendingField *field = AllocRecord<PendingField>();
    *field = {target->path.text, structure_of(target), name, new_temporary(), target->pending};
    return field;
}

// The field goes on: further selectors change what it holds.
void read_field(Target *target, const Node *selector) {
    if (!target->field) return;
    PendingField *field = new_pending(target, stable_name(target->field));
    put_reading(field, selector);
    *target = {begin_path(field->value, false), nullptr, nullptr, field};
}

void add_target_selector(Target *target, const Node *selector) {
    read_field(target, selector);
    if (selector->kind == NODE_DYNAMIC_FIELD) {
        target->field = field_name_text(selector);
    } else {
        add_selector(&target->path, selector);
    }
}

// NAME(k) in front of a field .(e): one position.
bool needs_element(const Node *base, const Node *selector, const Node *end) {
    if (selector != base->next || selector->kind != NODE_ARGUMENTS || selector->next == end)
        return false;
    const Node *position = selector->first_child;
    return selector->next->kind == NODE_DYNAMIC_FIELD && position && !position->next &&
           !is_colon(position) && position->kind != NODE_RANGE;
}

// A number, or a name for a longer text.
const char *stable_position(const Node *argument, const char *base) {
    EndBase at = {base, 1, 1, nullptr};
    const mExpr *position = plain_value(lower_position(argument, &at));
    return position->kind == EXPR_INTEGER ? position->text : stable_name(position->text);
}

// The element is read before its field is set: one that is not there yet begins empty.
void add_element(Target *target, const Node *selector) {
    const char *base = target->path.text;
    const char *position = stable_position(selector->first_child, base);
    const char *element = form_text("%s(%s)", {base, position});
    target->source = new_temporary();
    mExpr *count = new_leaf(last_position_text(base, 1, 1));
    const mExpr *is_missing = new_operator2(OP_LT, count, new_leaf(position));
    put_line("if %s then", {value_condition(is_missing->text)});
    put_inner_line("%s := Vector();", {target->source});
    put_line("else", {});
    put_inner_line("%s := %s;", {target->source, element});
    put_line("end if;", {});
    target->path = begin_path(element, false);
    target->path.has_index = true;
}

}  // namespace

const char *start_text(const Node *selector, bool is_cell) {
    bool is_plane = grows_in_plane(selector);  // an empty row has a row
    switch (selector->kind) {
        case NODE_BRACES: return is_plane ? "Vector()" : EMPTY_CELL;
        case NODE_ARGUMENTS: {
            bool is_struct = selector->next && selector->next->kind == NODE_FIELD;
            return is_cell && !is_plane && !is_struct ? EMPTY_CELL : "Vector()";
        }
        default: return new_keyword_call("struct", {})->text;
    }
}

void put_starts(const Scope *scope) {
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (symbol->start && symbol->position == 0)
            put_line("%s := %s;",
                     {written_name(symbol), start_text(symbol->start, is_always_cell(symbol))});
}

namespace {

void put_fields(const PendingField *field) {
    for (; field; field = field->outer) {
        const mExpr *changed =
            new_keyword_call("setfield", {field->source, field->name, field->value});
        put_line("%s := %s;", {field->base, changed->text});
    }
}

bool is_at_number(const Node *selector) {
    const Node *position = selector->first_child;
    return position && !position->next && position->kind == NODE_NUMBER;
}

// Whether one element is selected of which a field is set.
bool is_element(const Node *selector) {
    return selector->kind == NODE_ARGUMENTS && is_at_number(selector) && selector->next &&
           selector->next->kind == NODE_FIELD;
}

// Whether an element of a cell is selected that is itself a cell or a struct.
bool is_holder_in_cell(const Node *selector) {
    return selector->kind == NODE_BRACES && is_at_number(selector) &&
           (selector->next->kind == NODE_BRACES || selector->next->kind == NODE_FIELD);
}

// What is set in the field of a field of nothing: each begins like a variable.
void start_fields(const char *written, const Node *selector) {
    Path path = begin_path(written, false);
    for (; selector->next; selector = selector->next) {
        if (is_element(selector)) {
            add_index(&path, selector);
            continue;
        }
        bool is_element_held = is_holder_in_cell(selector);
        bool is_field = selector->kind == NODE_FIELD && selector->next->kind != NODE_DYNAMIC_FIELD;
        if (!is_element_held && !is_field) return;
        add_selector(&path, selector);
        put_line("%s := %s;", {path.text, start_text(selector->next, false)});
    }
}

// A field of which a part is set begins like a variable, if it is not there yet.
void start_field(const char *holder, const Node *field) {
    bool is_known = field->value != 0;
    if (is_known && !may_be(field->value, MAY_BE_MISSING)) return;
    Path path = begin_path(holder, false);
    path.has_field = true;
    add_field(&path, field);
    const char *start = start_text(field->next, false);
    if (field->value == MAY_BE_MISSING) {
        put_line("%s := %s;", {path.text, start});
        if (field->next->kind != NODE_FIELD) start_fields(path.text, field->next);
        return;
    }
    mExpr *is_there = new_keyword_call("isfield", {holder, string_text(field->text)});
    put_line("if not %s then", {value_condition(is_there->text)});
    put_inner_line("%s := %s;", {path.text, start});
    put_line("end if;", {});
}

bool is_started(const char *name) {
    for (const GeneratedName *started = Lowering.started; started; started = started->next)
        if (started->text == name) return true;
    return false;
}

// What is a number, truth value or text that may have no elements is a cell once an element of it
// is set by braces; the gaps of a cell are no zeros.
void put_empty_cell(const Target *target, Value holder, const Node *braces) {
    constexpr Value PLAIN = ARITHMETIC | MAY_BE_TEXT;
    bool may_be_plain = may_be(holder, PLAIN) && is_surely(holder, PLAIN | MAY_BE_CELL);
    if (!may_be_plain || !may_be(holder, MAY_BE_EMPTY) || grows_in_plane(braces)) return;
    const char *path = target->path.text;
    if (!may_be(holder, MAY_BE_FILLED)) {
        put_line("%s := %s;", {path, EMPTY_CELL});
        return;
    }
    put_line("if %s = 0 then", {last_position_text(path, 1, 1)});
    put_inner_line("%s := %s;", {path, EMPTY_CELL});
    put_line("end if;", {});
}

// A variable whose first use in the text is to have a part set begins in front of all loops.
void start_in_front(const Symbol *symbol, const char *written, const Node *selector) {
    if (is_started(symbol->name)) return;
    GeneratedName *started = AllocRecord<GeneratedName>();
    *started = {symbol->name, Lowering.started};
    Lowering.started = started;
    if (!Lowering.in_front) return;
    const char *line =
        form_text("%s := %s;", {written, start_text(selector, is_always_cell(symbol))});
    add_line(Lowering.in_front, Lowering.front_level, line);
}

// A variable that has no value when a part of it is set begins without any; whether its fields
// begin with it.
bool start_target(const Node *base, const char *written) {
    const Symbol *symbol = base->symbol;
    if (!may_be(base->value, MAY_BE_MISSING) || !is_traced(symbol) || symbol->start) return false;
    if (base->value == MAY_BE_MISSING) {
        put_line("%s := %s;", {written, start_text(base->next, is_always_cell(symbol))});
        start_fields(written, base->next);
        return true;
    }
    if (symbol->starts_in) start_in_front(symbol, written, base->next);
    return false;
}

}  // namespace

Target lower_target(const Node *node, const Node *end) {
    assert(node->kind == NODE_NAME || node->kind == NODE_REFERENCE);
    const Node *base = node->kind == NODE_NAME ? node : node->first_child;
    const char *name = written_name(base->symbol);
    Target target = {begin_path(name, false), nullptr, nullptr, nullptr};
    if (node->kind == NODE_NAME) return target;
    check_object_index(base, "subsasgn", "(...) =");
    bool are_fields_there = start_target(base, name);
    const Node *holder = base;
    for (const Node *selector = base->next; selector != end; selector = selector->next) {
        if (selector->kind == NODE_BRACES && !target.field)
            put_empty_cell(&target, value_of(holder), selector);
        holder = selector;
        if (selector->kind != NODE_FIELD) are_fields_there = true;  // after it nothing is known
        if (needs_element(base, selector, end)) {
            add_element(&target, selector);
        } else {
            if (!are_fields_there && selector->next) start_field(target.path.text, selector);
            add_target_selector(&target, selector);
        }
    }
    return target;
}

const char *target_value(const Target *target) {
    if (!target->field) return target->path.text;
    return new_keyword_call("getfield", {structure_of(target), target->field})->text;
}

const char *target_text(Target *target) {
    if (target->field) {
        PendingField *field = new_pending(target, target->field);
        *target = {begin_path(field->value, false), nullptr, nullptr, field};
    }
    return target->path.text;
}

void put_value(const Target *target, const char *value) {
    if (target->field) {
        const mExpr *changed =
            new_keyword_call("setfield", {structure_of(target), target->field, value});
        put_line("%s := %s;", {target->path.text, changed->text});
    } else {
        put_line("%s := %s;", {target->path.text, value});
    }
    put_fields(target->pending);
}

void put_inner_value(const Target *target, const char *value) {
    Lowering.level++;
    put_value(target, value);
    Lowering.level--;
}

void finish_target(const Target *target) { put_fields(target->pending); }
