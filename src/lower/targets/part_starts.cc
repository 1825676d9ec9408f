// What begins where a part of it is set.
#include "lower/targets/part_starts.h"

#include <limits.h>
#include <string.h>

#include "lower/calls/keyword_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/library/source_calls.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "support/allocation.h"
#include "syntax/names/field_uses.h"
#include "syntax/values/flow.h"
#include "syntax/values/values.h"
#include "translate/text_forms.h"

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

const char *stable_text(const char *text) {
    if (*text == '"' || is_identifier(text)) return text;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, text});
    return name;
}

const char *stable_position(const Node *argument, const char *base) {
    EndBase at = {base, 1, 1, nullptr};
    const mExpr *position = plain_value(lower_position(argument, &at));
    return position->kind == EXPR_INTEGER ? position->text : stable_text(position->text);
}

namespace {

bool has_one_position(const Node *selector) {
    const Node *position = selector->first_child;
    return position && !position->next;
}

bool is_at_number(const Node *selector) {
    return has_one_position(selector) && selector->first_child->kind == NODE_NUMBER;
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

// What is set in the field of a field of nothing: each begins like a variable. Answers the first
// selector whose part may not be there all the same, or null.
const Node *start_fields(const char *written, const Node *selector) {
    Path path = begin_path(written, false);
    for (; selector->next; selector = selector->next) {
        if (is_element(selector)) {
            add_index(&path, selector);
            continue;
        }
        bool is_element_held = is_holder_in_cell(selector);
        bool is_field = selector->kind == NODE_FIELD && selector->next->kind != NODE_DYNAMIC_FIELD;
        if (!is_element_held && !is_field) return selector;
        add_selector(&path, selector);
        put_line("%s := %s;", {path.text, start_text(selector->next, false)});
    }
    return nullptr;
}

void put_start(const char *condition, const char *part, const char *start) {
    put_line("if %s then", {condition});
    put_inner_line("%s := %s;", {part, start});
    put_line("end if;", {});
}

// A field of which a part is set begins like a variable, if it is not there yet.
void start_field(PartStarts *starts, const char *holder, const Node *field) {
    bool is_known = field->value != 0;
    if (is_known && !may_be(field->value, MAY_BE_MISSING)) return;
    Path path = begin_path(holder, false);
    path.has_field = true;
    add_field(&path, field);
    const char *start = start_text(field->next, false);
    if (field->value == MAY_BE_MISSING) {
        put_line("%s := %s;", {path.text, start});
        if (field->next->kind == NODE_FIELD) return;
        starts->is_there = true;
        starts->unknown = start_fields(path.text, field->next);
        return;
    }
    mExpr *is_there = new_keyword_call("isfield", {holder, string_text(field->text)});
    put_start(form_text("not %s", {value_condition(is_there->text)}), path.text, start);
}

// A variable whose first use in the text is to have a part set begins in front of all loops.
// Answers what it begins as there.
const char *start_in_front(const Symbol *symbol, const char *written, const Node *selector) {
    for (const StartedName *started = Lowering.started; started; started = started->next)
        if (started->name == symbol->name) return started->start;
    StartedName *started = AllocRecord<StartedName>();
    *started = {symbol->name, start_text(selector, is_always_cell(symbol)), Lowering.started};
    Lowering.started = started;
    add_line(Lowering.in_front, Lowering.front_level,
             form_text("%s := %s;", {written, started->start}));
    return started->start;
}

// What is a number, truth value or text that may have no elements is a cell once an element of it
// is set by braces, whose gaps are no zeros, and a struct once a field of it is set.
void put_empty_holder(const char *path, Value holder, const Node *selector) {
    constexpr Value PLAIN = ARITHMETIC | MAY_BE_TEXT;
    Value becomes = selector->kind == NODE_BRACES ? MAY_BE_CELL : MAY_BE_RECORD;
    bool may_be_plain = may_be(holder, PLAIN) && is_surely(holder, PLAIN | becomes);
    if (!may_be_plain || !may_be(holder, MAY_BE_EMPTY) || grows_in_plane(selector)) return;
    const char *start = start_text(selector, false);
    if (!may_be(holder, MAY_BE_FILLED)) return put_line("%s := %s;", {path, start});
    put_start(form_text("%s = 0", {last_position_text(path, 1, 1)}), path, start);
}

// What of the target's parts the value reads.
struct Reading {
    const Node *base;  // of the target
    int count;         // selectors of the target that it begins with, at most
    bool has_holder;   // it reads all that an index of the target selects from
    bool has_record;   // it reads all of a record in which a part of a field is set
};

// A reference of the target's variable. One that ends, or asks for its end, where the target has an
// index reads what that selects from.
void note_reference(Reading *reading, const Node *selector) {
    const Node *own = reading->base->next;
    int count = 0;
    for (; own && selector && is_same_tree(own, selector); own = own->next, count++)
        selector = selector->next;
    if (count > reading->count) reading->count = count;
    bool is_index = own && (own->kind == NODE_BRACES || own->kind == NODE_ARGUMENTS);
    if (is_index && (!selector || has_end_inside(selector))) reading->has_holder = true;
    if (own && own->kind == NODE_FIELD && own->next && !selector) reading->has_record = true;
}

void note_reading(Reading *reading, const Node *node) {
    for (; node; node = node->next) {
        bool is_lazy = node->joint == OPERATOR_OR_ELSE || node->joint == OPERATOR_AND_THEN;
        if (is_lazy || node->kind == NODE_ANONYMOUS) continue;  // read later, if at all
        const Node *base = node->kind == NODE_REFERENCE ? node->first_child : node;
        bool is_own = base->kind == NODE_NAME && base->symbol == reading->base->symbol;
        if (is_own) note_reference(reading, base == node ? nullptr : base->next);
        note_reading(reading, base == node ? first_child(node) : base->next);
        if (base != node && !is_own) note_reading(reading, first_child(base));
    }
}

Reading reading_of(const Node *base, const Node *value) {
    Reading reading = {base, 0, false, false};
    note_reading(&reading, value);
    return reading;
}

// How many selectors have parts that the value of the assignment reads; all, where x += e does.
int count_read(const Node *base) {
    if (Lowering.is_read_too) return INT_MAX;
    return Lowering.assigned ? reading_of(base, Lowering.assigned).count : 0;
}

// A field of an element of which a part is set: neither has to be there.
void put_element_field(const char *array, const char *position, const Path *element,
                       const Node *field) {
    Path path = *element;
    path.is_own = false;
    add_field(&path, field);
    const char *is_missing =
        source_call_text("%lacks_field", {array, position, string_text(field->text)});
    put_start(is_missing, path.text, start_text(field->next, false));
}

// Whether what an index selects must be there for a cell in it that begins: itself, or the one in a
// field of it. All else that is missing is made by the host where a part of it is set.
bool has_start(const Node *index) {
    const Node *next = index->next;
    if (next->kind == NODE_BRACES) return index->kind == NODE_BRACES && has_one_position(next);
    if (next->kind != NODE_FIELD) return false;
    while (next && next->kind == NODE_FIELD) next = next->next;
    return next && next->kind == NODE_BRACES;
}

// Longer texts, which nobody writes, are not repeated.
constexpr size_t LONGEST_PATH = 200;

// Whether an index selects one element, that such a cell needs.
bool is_holder_of_start(const Path *path, const Node *index) {
    bool is_one = has_one_position(index) && !is_surely_several(index->first_child);
    return is_one && has_start(index) && path->length <= LONGEST_PATH;
}

bool is_read(PartStarts *starts) {
    if (starts->read < 0) starts->read = count_read(starts->base);
    return starts->read >= starts->at;
}

// Adds the index to path.
void start_element(PartStarts *starts, Path *path, const Node *index) {
    starts->array = path->text;
    starts->position = stable_position(index->first_child, path->text);
    const char *element = form_text("%s(%s)", {starts->array, starts->position});
    if (index->next->kind == NODE_BRACES)
        put_start(source_call_text("%lacks_cell", {starts->array, starts->position}), element,
                  EMPTY_CELL);
    *path = begin_path(element, false);
    path->has_index = true;
}

}  // namespace

PartStarts start_variable(const Node *target, const char *written) {
    const Node *base = target->first_child;
    const Symbol *symbol = base->symbol;
    PartStarts starts = {};
    starts.base = base;
    starts.unknown = base->next;
    starts.read = -1;
    if (!may_be(base->value, MAY_BE_MISSING) || !is_traced(symbol) || symbol->start) return starts;
    bool is_in_front = symbol->starts_in_front && Lowering.in_front;
    const char *front = is_in_front ? start_in_front(symbol, written, base->next) : "";
    if (base->value == MAY_BE_MISSING) {
        const char *start = start_text(base->next, is_always_cell(symbol));
        if (strcmp(front, start) != 0) put_line("%s := %s;", {written, start});
        starts.is_there = true;
        starts.unknown = start_fields(written, base->next);
    }
    return starts;
}

bool start_part(PartStarts *starts, Path *path, const Node *holder, const Node *selector) {
    starts->at++;
    if (selector->kind != NODE_ARGUMENTS) put_empty_holder(path->text, value_of(holder), selector);
    if (selector == starts->unknown) starts->is_there = false;
    if (starts->is_there || !selector->next) return false;
    bool is_dynamic = selector->kind == NODE_DYNAMIC_FIELD;
    bool is_field = selector->kind == NODE_FIELD;
    if (is_dynamic || (!is_field && !is_holder_of_start(path, selector))) {
        starts->is_there = true;  // nothing is known of what is in it
        return false;
    }
    const char *array = starts->array;
    starts->array = nullptr;
    if (is_read(starts)) return false;
    if (!is_field) {
        start_element(starts, path, selector);
    } else if (array) {
        put_element_field(array, starts->position, path, selector);
    } else {
        start_field(starts, path->text, selector);
    }
    return !is_field;
}

void start_list(const Path *path, const Node *holder, const Node *selector) {
    if (selector->kind == NODE_BRACES) put_empty_holder(path->text, value_of(holder), selector);
}

static bool may_start(const Node *field) {
    bool is_known = field->value != 0;
    return field->next && (!is_known || may_be(field->value, MAY_BE_MISSING));
}

bool must_be_read_first(const Node *target, const Node *value) {
    if (target->kind != NODE_REFERENCE) return false;
    for (const Node *selector = second_child(target); selector->next; selector = selector->next) {
        if (selector->kind == NODE_BRACES && has_start(selector))
            return reading_of(target->first_child, value).has_holder;
        if (selector->kind == NODE_FIELD && may_start(selector) &&
            reading_of(target->first_child, value).has_record)
            return true;
    }
    return false;
}
