// Targets of assignments.
#include "lower/targets/targets.h"

#include <assert.h>
#include <string.h>

#include "lower/classes/methods.h"
#include "lower/conditions/host_conditions.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/targets/part_starts.h"
#include "support/allocation.h"
#include "syntax/values/flow.h"
#include "syntax/values/values.h"
#include "translate/operators.h"
#include "translate/text_forms.h"

namespace {

const char *field_name_text(const Node *selector) {
    assert(selector->kind == NODE_FIELD || selector->kind == NODE_DYNAMIC_FIELD);
    return lower_expression(selector->first_child)->text;
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
    PendingField *field = new_pending(target, stable_text(target->field));
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

void put_fields(const PendingField *field) {
    for (; field; field = field->outer) {
        const mExpr *changed =
            new_keyword_call("setfield", {field->source, field->name, field->value});
        put_line("%s := %s;", {field->base, changed->text});
    }
}

}  // namespace

Target lower_target(const Node *node, const Node *end) {
    assert(node->kind == NODE_NAME || node->kind == NODE_REFERENCE);
    const Node *base = node->kind == NODE_NAME ? node : node->first_child;
    const char *name = written_name(base->symbol);
    Target target = {begin_path(name, false), nullptr, nullptr, nullptr};
    if (node->kind == NODE_NAME) return target;
    check_object_index(base, "subsasgn", "(...) =");
    PartStarts starts = start_variable(node, name);
    const Node *holder = base;
    for (const Node *selector = base->next; selector != end; selector = selector->next) {
        bool is_added = !target.field && start_part(&starts, &target.path, holder, selector);
        if (needs_element(base, selector, end)) {
            add_element(&target, selector);
        } else if (!is_added) {
            add_target_selector(&target, selector);
        }
        holder = selector;
    }
    if (end && !target.field) start_list(&target.path, holder, end);
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
    } else if (!is_identifier(value) || strcmp(value, target->path.text) != 0) {
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
