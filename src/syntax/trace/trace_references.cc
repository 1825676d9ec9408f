// The values of references: elements, fields, calls.
#include <string.h>

#include "syntax/scan/spellings.h"
#include "syntax/trace/applied.h"
#include "syntax/trace/effects.h"
#include "syntax/trace/handles.h"
#include "syntax/trace/library_parts.h"
#include "syntax/trace/library_values.h"
#include "syntax/trace/parameters.h"
#include "syntax/trace/summaries.h"
#include "syntax/trace/taken_parts.h"
#include "syntax/trace/told_results.h"
#include "syntax/trace/trace.h"
#include "syntax/values/field_values.h"
#include "syntax/values/shapes.h"
#include "syntax/values/values.h"

namespace {

constexpr Value SIZED = MAY_HAVE_ROWS | MAY_HAVE_COLUMNS;

// A truth value selects one element or none; the text ':' all of them.
bool is_one_position(const Node *index) {
    if (is_colon(index)) return false;
    Value value = value_of(index);
    return !may_be(value, MAY_BE_TRUTH | MAY_BE_TEXT) && is_surely_one(value);
}

bool may_be_colon(const Node *index) {
    return is_colon(index) || may_be(value_of(index), MAY_BE_TEXT);
}

// Of a vector the positions decide where they form a matrix, or where it has one element.
Value size_of_part(Value base, const Node *index) {
    if (is_colon(index)) return MAY_HAVE_ROWS;
    Value size = (base | value_of(index)) & SIZED;
    return may_be_colon(index) ? Value(size | MAY_HAVE_ROWS) : size;
}

// In one direction: all that is there, one, or any number.
Value size_along(Value base, const Node *index, Value direction) {
    if (is_colon(index)) return base & direction;
    return is_one_position(index) ? Value(0) : direction;
}

// x(i, j, ...): as many rows as i selects, as many columns as j.
Value size_of_block(Value base, const Node *rows) {
    const Node *columns = rows->next;
    Value size = size_along(base, rows, MAY_HAVE_ROWS);
    if (columns->next) return size | MAY_HAVE_COLUMNS;
    return size | size_along(base, columns, MAY_HAVE_COLUMNS);
}

// x(:) may be x itself.
Value form_of_part(Value base, const Node *arguments) {
    bool is_text = may_be(base, MAY_BE_TEXT);
    bool is_whole = arguments->kind == NODE_COLON && may_be(base, MAY_BE_SINGLE);
    return is_text || is_whole ? MAY_BE_ARRAY | MAY_BE_SINGLE : MAY_BE_ARRAY;
}

}  // namespace

bool selects_one(const Node *arguments) {
    for (; arguments; arguments = arguments->next)
        if (!is_one_position(arguments)) return false;
    return true;
}

Value selected_value(Value base, const Node *arguments) {
    Value kept = base & (ANY_KIND | ANY_SIGN);
    if (!arguments) return base;
    if (selects_one(arguments)) return kept | ONE;
    Value size = arguments->next ? size_of_block(base, arguments) : size_of_part(base, arguments);
    return kept | form_of_part(base, arguments) | size | MAY_BE_EMPTY | MAY_BE_FILLED;
}

namespace {

// Whether an end is among the arguments that is not one of an index inside of them.
bool has_own_end(const Node *node) {
    if (node->kind == NODE_END) return true;
    bool is_index = node->kind == NODE_REFERENCE && node->first_child->kind == NODE_NAME &&
                    is_variable(node->first_child->symbol);
    if (is_index) return false;
    for (const Node *child = first_child(node); child; child = child->next)
        if (has_own_end(child)) return true;
    return false;
}

// Whether the arguments are those of no call.
bool is_surely_index(const Node *arguments) {
    for (; arguments; arguments = arguments->next)
        if (arguments->kind == NODE_COLON || has_own_end(arguments)) return true;
    return false;
}

// Whether the variable is surely no function: its elements are set, or read as no call is written.
bool is_surely_data(const Symbol *symbol, const Node *arguments) {
    constexpr uint32_t DATA = SYMBOL_CHANGED | SYMBOL_HAS_BRACES | SYMBOL_IS_INDEXED;
    return (symbol->flags & DATA) || is_surely_index(arguments);
}

Value value_of_index(Value base, bool is_data, const Node *arguments) {
    base &= ANY_VALUE;
    if (!kinds_of(base)) return ANY_VALUE;
    if (may_be(base, MAY_BE_FUNCTION)) {
        if (kinds_of(base) != ANY_KIND || !is_data) return ANY_VALUE;
        base &= ~MAY_BE_FUNCTION;
    }
    return selected_value(base, arguments);
}

// A function of a package, p.f(x): others that fields stand after are called without arguments.
Value value_of_member(Node *base) {
    const Node *selector = base->next;
    while (selector && selector->kind == NODE_FIELD) selector = selector->next;
    bool is_call = !selector || (selector->kind == NODE_ARGUMENTS && !selector->next);
    Value told = is_call ? told_value(base, base->next) : Value(0);
    if (!told) value_of_call(base, nullptr, nullptr);
    return told ? told : ANY_VALUE;
}

Value value_after_call(Node *base, bool is_applied) {
    const Node *selector = base->next;
    if (selector->kind == NODE_FIELD) return value_of_member(base);
    bool has_arguments = selector->kind == NODE_ARGUMENTS;
    Node *arguments = has_arguments ? selector->first_child : nullptr;
    note_applied(base->text, arguments);
    if (arguments && is_known_to(base->text, TAKES_FIELD)) note_operand(selector->first_child);
    Value value = value_of_call(base, selector, arguments);
    if (is_applied) {
        note_applied_cells(base);
    } else if (!library_of(base)) {
        note_given_cells(base, arguments);
    }
    return has_arguments && !selector->next ? value : Value(ANY_VALUE);
}

// What the selectors have selected so far.
struct Part {
    Value value;
    Symbol *holder;  // that is this value; null for another one
    bool is_data;    // it is surely no function
    int depth;       // of fields
    bool is_one_of;  // several, as an element of a cell: what is in it need not be in the others
    const KnownParts *parts;  // what is known of it where there is no holder; null for nothing
};

constexpr Part UNKNOWN_PART = {ANY_VALUE, nullptr, false, 0, false, nullptr};

Part known_part(KnownPart part) {
    Value value = part.value & ANY_VALUE;
    return {kinds_of(value) ? value : ANY_VALUE, nullptr, false, 0, true, part.inside};
}

// A cell, or something else without fields. Where it is one of several values of a list, its index
// is taken of one.
bool may_be_plain_cell(Value value) {
    return may_be(value, MAY_BE_CELL) && !may_be(value, MAY_BE_RECORD | MAY_BE_FUNCTION);
}

Part field_part(Part of, const Node *selector, const char *name) {
    Symbol *field = of.holder ? field_of(of.holder, name, of.depth) : nullptr;
    if (!field && !of.parts) return UNKNOWN_PART;
    Part part = field ? Part{value_now(field), field, false, of.depth + 1, of.is_one_of, nullptr}
                      : known_part(part_in(of.parts, name));
    bool is_one = selector->next ? has_fields(of.value) : is_one_record(of.value & ANY_VALUE);
    if (!is_one && !may_be_plain_cell(part.value)) part.value = ANY_VALUE;
    if (field && !of.is_one_of) note_presence(field);
    return part;
}

// s.(n); s.('name') is s.name.
Part dynamic_part(Part of, const Node *selector) {
    const Node *name = without_parens(selector->first_child);
    if (name->kind == NODE_STRING) return field_part(of, selector, intern(name->text));
    if (!has_fields(of.value)) return UNKNOWN_PART;
    if (!of.holder) return known_part(any_field_in(of.parts));
    return known_part(
        {nullptr, any_field(of.holder, of.depth), parts_of_any_field(of.holder), nullptr});
}

// What has elements is a cell there.
bool may_hold_elements(Part part) {
    return (part.holder || part.parts) && may_be(part.value, MAY_BE_CELL);
}

// One element of a cell. Of a list of them nothing is said; one of which a part is taken is none.
Part element_part(Part of, const Node *selector) {
    bool is_one = selects_one(selector->first_child) || selector->next;
    bool is_known = may_hold_elements(of) && is_one;
    if (is_known && !of.holder)
        return known_part({nullptr, elements_of_cell(of.parts), inside_of_cell(of.parts), nullptr});
    Symbol *elements = is_known ? elements_of(of.holder, of.depth) : nullptr;
    if (!elements) return UNKNOWN_PART;
    Value value = value_now(elements) & ANY_VALUE;
    return {
        kinds_of(value) ? value : Value(ANY_VALUE), elements, false, of.depth + 1, true, nullptr};
}

// The result of a function that is held there.
Part called_part(Part of) {
    Symbol *result = of.holder ? result_of(of.holder, of.depth) : nullptr;
    Value value = result ? value_now(result) : UNKNOWN_FIELD;
    bool is_known = kinds_of(value) && value != UNKNOWN_FIELD;
    if (!is_known) return UNKNOWN_PART;
    return {Value(value & ANY_VALUE), result, false, of.depth + 1, true, nullptr};
}

// s(k).f(n): a list of fields has no part.
bool must_be_one(const Node *selector) {
    return selector->next && selector->next->kind == NODE_FIELD && selector->next->next;
}

// What a part of a cell holds, the cell holds, and what a record of several, all of them.
Part index_part(Part of, const Node *selector) {
    if (kinds_of(of.value) == MAY_BE_FUNCTION) return called_part(of);
    bool is_data = of.is_data || is_surely_index(selector->first_child);
    bool are_records = has_fields(of.value);
    bool has_inside = may_hold_elements(of) || are_records;
    Value value = value_of_index(of.value, is_data, selector->first_child);
    if (are_records && must_be_one(selector)) value = MAY_BE_RECORD | ONE;
    return {value,        has_inside ? of.holder : nullptr, false, of.depth,
            of.is_one_of, has_inside ? of.parts : nullptr};
}

Part selected_part(Part of, const Node *selector) {
    switch (selector->kind) {
        case NODE_FIELD: return field_part(of, selector, selector->text);
        case NODE_DYNAMIC_FIELD: return dynamic_part(of, selector);
        case NODE_BRACES: return element_part(of, selector);
        case NODE_ARGUMENTS: return index_part(of, selector);
        default: return UNKNOWN_PART;
    }
}

Part whole_part(Symbol *variable) {
    constexpr uint32_t DATA = SYMBOL_CHANGED | SYMBOL_HAS_BRACES | SYMBOL_IS_INDEXED;
    return {value_now(variable), variable, (variable->flags & DATA) != 0, 0, false, nullptr};
}

// A selector has the value of its part, for who asks what is after it.
Value value_of_part(Symbol *variable, Node *selector) {
    Part part = whole_part(variable);
    for (; selector; selector = selector->next) {
        part = selected_part(part, selector);
        selector->value |= part.value;
    }
    Value value = part.value & ANY_VALUE;
    return kinds_of(value) ? value : ANY_VALUE;
}

}  // namespace

namespace {

// Those of the cell that a variable, or selectors after it up to the end, give.
Value elements_in(const Node *base, const Node *end) {
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return UNKNOWN_FIELD;
    Part part = whole_part(base->symbol);
    for (const Node *selector = base->next; selector != end; selector = selector->next)
        part = selected_part(part, selector);
    if (!may_hold_elements(part)) return UNKNOWN_FIELD;
    if (!part.holder) return elements_of_cell(part.parts);
    Symbol *elements = elements_of(part.holder, part.depth);
    return elements ? value_now(elements) : Value(UNKNOWN_FIELD);
}

// What the selectors after a variable select.
Part part_of(const Node *reference) {
    const Node *base = reference->first_child;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return UNKNOWN_PART;
    Part part = whole_part(base->symbol);
    for (const Node *selector = base->next; selector; selector = selector->next)
        part = selected_part(part, selector);
    return part;
}

// Of c{:} all elements of c.
Value elements_of_item(Node *item) {
    if (!may_be_list(item)) return value_of(item) & ANY_VALUE;
    const Node *reference = without_parens(item);
    const Node *last = last_selector(reference);
    return last->kind == NODE_BRACES ? elements_in(reference->first_child, last)
                                     : Value(UNKNOWN_FIELD);
}

Value elements_of_rows(Node *literal, Value (*elements)(Node *item)) {
    Value all = MAY_BE_MISSING;
    for (Node *row = literal->first_child; row; row = row->next) {
        for (Node *item = row->first_child; item; item = item->next) {
            if (item->kind == NODE_POSTFIX) return UNKNOWN_FIELD;
            Value value = elements(item);
            if (value == UNKNOWN_FIELD) return UNKNOWN_FIELD;
            all |= value;
        }
    }
    return all;
}

// What stands in brackets beside cells is an element itself.
Value elements_of_joined(Node *item) {
    if (is_empty_matrix(without_parens(item))) return MAY_BE_MISSING;
    Value value = value_of(item) & ANY_VALUE;
    if (kinds_of(value) == MAY_BE_CELL) return elements_given(item);
    return may_be(value, MAY_BE_CELL) ? Value(UNKNOWN_FIELD) : elements_of_item(item);
}

// Whether another function may give what the applied one fails to: 'ErrorHandler', f.
bool may_handle_errors(const Node *arguments) {
    for (; arguments; arguments = arguments->next)
        if (arguments->kind == NODE_STRING && (*arguments->text | 0x20) == 'e') return true;
    return false;
}

Value elements_of_call(Node *expression) {
    LibraryCall call = library_call(expression);
    if (!call.name) return UNKNOWN_FIELD;
    if (const KnownPart *part = record_part(call.name, call.arguments))
        return elements_of_cell(part->inside);
    if (!call.function) return elements_of_cell(parts_of_own(call.name, 0));
    if (call.function->traits & HOLDS_TEXTS) return ANY_TEXT;
    if (strcmp(call.function->name, "cell") == 0) return NO_ELEMENT;
    if (const KnownPart *moved = moved_elements(call.function, call.arguments)) return moved->value;
    if (applies_to_each(call.name) && call.arguments && !may_handle_errors(call.arguments))
        return value_of_function(call.arguments);
    return UNKNOWN_FIELD;
}

}  // namespace

Value elements_given(Node *expression) {
    while (expression->kind == NODE_PARENS) expression = expression->first_child;
    if (kinds_of(value_of(expression) & ANY_VALUE) != MAY_BE_CELL) return UNKNOWN_FIELD;
    switch (expression->kind) {
        case NODE_CELL: return elements_of_rows(expression, elements_of_item);
        case NODE_MATRIX: return elements_of_rows(expression, elements_of_joined);
        case NODE_NAME:
            if (is_variable(expression->symbol)) {
                const Symbol *elements = elements_of(expression->symbol, 0);
                return elements ? value_now(elements) : Value(UNKNOWN_FIELD);
            }
            return elements_of_call(expression);
        case NODE_REFERENCE: {
            const Node *base = expression->first_child;
            if (base->kind != NODE_NAME) return UNKNOWN_FIELD;
            return is_variable(base->symbol) ? elements_in(base, nullptr)
                                             : elements_of_call(expression);
        }
        default: return UNKNOWN_FIELD;
    }
}

namespace {

bool may_have_inside(const Node *node) {
    return may_be(value_of(node), MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_FUNCTION);
}

// What the items of a literal are, joined.
struct JoinedParts {
    const KnownParts *parts;
    bool is_unknown;
    bool has_any;
};

void join_item(JoinedParts *joined, const KnownParts *parts) {
    joined->parts = joined->has_any ? joined_parts(joined->parts, parts) : parts;
    joined->has_any = true;
}

const KnownParts *parts_of_items(const Node *literal, int depth) {
    JoinedParts joined = {};
    for (const Node *row = literal->first_child; row; row = row->next)
        for (Node *item = row->first_child; item; item = item->next) {
            if (item->kind == NODE_POSTFIX || may_be_list(item)) return nullptr;
            if (may_have_inside(item)) join_item(&joined, parts_given(item, depth));
        }
    return joined.parts;
}

// Cells beside each other, or records. What stands beside cells is an element.
const KnownParts *parts_of_matrix(Node *matrix, int depth) {
    Value value = value_of(matrix);
    if (are_records(value)) return parts_of_items(matrix, depth);
    if (!is_surely(value, MAY_BE_CELL)) return nullptr;
    bool are_all_cells = true;
    for (const Node *row = matrix->first_child; row; row = row->next)
        for (const Node *item = row->first_child; item; item = item->next)
            are_all_cells &= is_surely(value_of(item), MAY_BE_CELL) || !may_have_inside(item);
    const KnownParts *inside = are_all_cells ? parts_of_items(matrix, depth) : nullptr;
    return parts_of_cell(elements_given(matrix), inside_of_cell(inside));
}

struct FieldGiven {
    Value value;
    const KnownParts *inside;
};

// struct('a', {1, 2}): an element for each record.
FieldGiven field_given(Node *value, int depth) {
    Node *literal = const_cast<Node *>(without_parens(value));
    Node *single =
        literal->kind == NODE_CELL ? const_cast<Node *>(single_element(literal)) : nullptr;
    if (single) literal = single;
    if (single || !may_be(value_of(literal), MAY_BE_CELL))
        return {Value(value_of(literal) & ANY_VALUE), parts_given(literal, depth)};
    Value elements = elements_given(literal);
    if (elements == MAY_BE_MISSING) elements = NO_ELEMENT;
    return {elements, inside_of_cell(parts_given(literal, depth - 1))};
}

const KnownParts *parts_of_struct(Node *name, int depth) {
    const KnownPart *first = nullptr;
    for (; name; name = name->next->next) {
        bool is_pair = name->kind == NODE_STRING && *name->text && name->next;
        if (!is_pair || may_be_list(name->next)) return nullptr;
        FieldGiven field = field_given(name->next, depth + 1);
        first = new_known_part(intern(name->text), field.value, field.inside, first);
    }
    return new_known_parts(false, first);
}

const KnownParts *parts_of_call(Node *expression, int depth) {
    LibraryCall call = library_call(expression);
    if (!call.name) return nullptr;
    if (is_feval(call.name, call.arguments)) return parts_of_function(call.arguments);
    if (const KnownPart *part = record_part(call.name, call.arguments)) return part->inside;
    if (!call.function) return parts_of_own(call.name, 0);
    if (const KnownPart *moved = moved_elements(call.function, call.arguments))
        return parts_of_cell(moved->value, moved->inside);
    if (strcmp(call.function->name, "struct") == 0) return parts_of_struct(call.arguments, depth);
    return is_surely(value_of(expression), MAY_BE_CELL)
               ? parts_of_cell(elements_of_call(expression), nullptr)
               : nullptr;
}

// f(x) of a variable that holds a function, whatever is taken of the result.
bool is_handle_call(const Node *reference) {
    const Node *base = reference->first_child;
    bool is_call = base->kind == NODE_NAME && base->next->kind == NODE_ARGUMENTS;
    return is_call && is_variable(base->symbol) && holds_function(base->symbol);
}

const KnownParts *parts_of_reference(Node *reference, int depth) {
    const Node *base = reference->first_child;
    if (base->kind == NODE_NAME && !is_variable(base->symbol))
        return parts_of_call(reference, depth);
    Part part = part_of(reference);
    return part.holder ? parts_now(part.holder) : part.parts;
}

}  // namespace

// @name and @(x) body, which has just been traced.
static const KnownParts *parts_of_held(Node *function, int depth) {
    bool is_named = function->kind == NODE_HANDLE;
    Node *body = is_named ? nullptr : second_child(function);
    if (body && may_be_list(body)) return nullptr;
    Value value = is_named ? value_of_handled(function) : Value(value_of(body) & ANY_VALUE);
    if (!kinds_of(value)) return nullptr;
    return parts_of_called(value,
                           is_named ? parts_of_own(function, 0) : parts_given(body, depth + 1));
}

const KnownParts *parts_given(Node *expression, int depth) {
    while (expression->kind == NODE_PARENS) expression = expression->first_child;
    if (!may_have_inside(expression) || depth > DEEPEST_HOLDER) return nullptr;
    switch (expression->kind) {
        case NODE_CELL:
            return parts_of_cell(elements_given(expression), parts_of_items(expression, depth + 1));
        case NODE_MATRIX: return parts_of_matrix(expression, depth);
        case NODE_HANDLE:
        case NODE_ANONYMOUS: return parts_of_held(expression, depth);
        case NODE_REFERENCE: return parts_of_reference(expression, depth);
        case NODE_NAME:
            return is_variable(expression->symbol) ? parts_now(expression->symbol)
                                                   : parts_of_call(expression, depth);
        default: return nullptr;
    }
}

bool may_be_list(const Node *element) {
    while (element->kind == NODE_PARENS) element = element->first_child;
    if (element->kind != NODE_REFERENCE) return false;
    const Node *holder = element->first_child;
    for (const Node *selector = holder->next; selector;
         holder = selector, selector = selector->next) {
        bool is_field = selector->kind == NODE_FIELD || selector->kind == NODE_DYNAMIC_FIELD;
        bool is_one = is_field                        ? is_one_record(value_of(holder))
                      : selector->kind == NODE_BRACES ? selects_one(selector->first_child)
                                                      : selector->kind == NODE_ARGUMENTS;
        if (!is_one) return true;
    }
    return false;
}

bool may_be_called(const Node *before) {
    const Node *selector = before->next;
    if (selector->kind != NODE_ARGUMENTS || is_surely_index(selector->first_child)) return false;
    bool is_missing = kinds_of(value_of(before)) == 0;  // sum = sum(1:3)
    if (!is_missing && !may_be(value_of(before), MAY_BE_FUNCTION)) return false;
    if (before->kind == NODE_FIELD) return !is_missing;
    if (before->kind != NODE_NAME || !is_variable(before->symbol)) return false;
    bool is_known = !is_missing && kinds_of(value_of(before)) != ANY_KIND;
    return is_known || !is_surely_data(before->symbol, nullptr);
}

void trace_selectors(Node *reference) {
    const Node *base = reference->first_child;
    bool is_index = base->kind == NODE_NAME && is_variable(base->symbol);
    for (Node *selector = second_child(reference); selector; selector = selector->next) {
        if (selector->kind == NODE_FIELD) continue;
        if (is_index) {
            trace_positions(selector->first_child);
        } else {
            trace_all(selector->first_child);
        }
    }
}

// A row without elements has a row: who is asked for its sides begins without any.
// iscell(c(k))
static void note_cell_question(const Node *base) {
    if (!is_known_to(base->text, TELLS_CELLS) || base->next->kind != NODE_ARGUMENTS) return;
    Node *asked = base->next->first_child;
    if (asked && asked->kind == NODE_REFERENCE) asked->flags |= IS_USED_AS_CELL;
}

static void note_sides(const Node *base) {
    const Node *variable = base->next->kind == NODE_ARGUMENTS ? base->next->first_child : nullptr;
    if (!variable || variable->kind != NODE_NAME || !is_variable(variable->symbol)) return;
    if (is_known_to(base->text, ASKS_SIDES)) variable->symbol->flags |= SYMBOL_SIDES_ASKED;
}

Value trace_reference(Node *reference) {
    Node *base = reference->first_child;
    bool is_call = base->kind == NODE_NAME && !is_variable(base->symbol);
    if (is_call) note_sides(base);
    if (is_call) note_cell_question(base);
    if (!is_call) trace_expression(base);
    bool is_applied = is_call && applies_written(base);
    if (is_applied) {
        trace_applied(base);
    } else {
        trace_selectors(reference);
    }
    if (is_call && is_known_to(base->text, RUNS_TEXT)) forget_all(0);
    if (is_call) return value_after_call(base, is_applied);
    bool is_cell_part = base->kind == NODE_CELL && is_cell_base(reference);
    if (is_cell_part && base->next->kind == NODE_ARGUMENTS)
        return MAY_BE_CELL | (ANY_SHAPE & ~MAY_BE_SINGLE);
    if (base->kind != NODE_NAME) return ANY_VALUE;
    if (is_handle_call(reference)) note_handle_call(base->symbol, base->next->first_child);
    Value value = value_of_part(base->symbol, base->next);
    if (reference != PutAsElement) note_taken(reference);
    if (!may_give_cell(reference)) return value;
    return (value & ~MAY_BE_SINGLE) | MAY_BE_ARRAY |
           (may_be(value, MAY_BE_TEXT) ? MAY_BE_SINGLE : 0);
}

LibraryCall library_call(Node *node) {
    Node *base = node->kind == NODE_REFERENCE ? node->first_child : node;
    if (base->kind != NODE_NAME || is_variable(base->symbol)) return {};
    if (base == node) return {library_of(base), nullptr, base};
    bool is_call = base->next->kind == NODE_ARGUMENTS && !base->next->next;
    if (!is_call) return {};
    return {library_of(base), base->next->first_child, base};
}
