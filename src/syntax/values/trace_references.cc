// The values of references: elements, fields, calls.
#include "syntax/scan/spellings.h"
#include "syntax/values/effects.h"
#include "syntax/values/field_values.h"
#include "syntax/values/library_values.h"
#include "syntax/values/parameters.h"
#include "syntax/values/shapes.h"
#include "syntax/values/summaries.h"
#include "syntax/values/told_results.h"
#include "syntax/values/trace.h"
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

Value value_after_call(Node *base) {
    const Node *selector = base->next;
    if (selector->kind == NODE_FIELD) return value_of_member(base);
    bool has_arguments = selector->kind == NODE_ARGUMENTS;
    const Node *arguments = has_arguments ? selector->first_child : nullptr;
    note_applied(base->text, arguments);
    Value value = value_of_call(base, selector, arguments);
    return has_arguments && !selector->next ? value : Value(ANY_VALUE);
}

// What the selectors have selected so far.
struct Part {
    Value value;
    Symbol *holder;  // that is this value; null for another one
    bool is_data;    // it is surely no function
    int depth;       // of fields
};

Part field_part(Part of, const char *name) {
    Symbol *field = of.holder ? field_of(of.holder, name, of.depth) : nullptr;
    if (!field) return {ANY_VALUE, nullptr, false, of.depth + 1};
    bool is_one = is_one_record(of.value & ANY_VALUE);
    Value value = is_one ? value_now(field) : Value(ANY_VALUE);
    note_presence(field);
    return {value, field, false, of.depth + 1};
}

Part selected_part(Part of, const Node *selector) {
    const Node *arguments = selector->first_child;
    if (selector->kind == NODE_FIELD) return field_part(of, selector->text);
    if (selector->kind != NODE_ARGUMENTS) return {ANY_VALUE, nullptr, false, 0};
    bool is_data = of.is_data || is_surely_index(arguments);
    return {value_of_index(of.value, is_data, arguments), nullptr, false, 0};
}

// A selector has the value of its part, for who asks what is after it.
Value value_of_part(Symbol *variable, Node *selector) {
    constexpr uint32_t DATA = SYMBOL_CHANGED | SYMBOL_HAS_BRACES | SYMBOL_IS_INDEXED;
    Part part = {value_now(variable), variable, (variable->flags & DATA) != 0, 0};
    for (; selector; selector = selector->next) {
        part = selected_part(part, selector);
        selector->value |= part.value;
    }
    Value value = part.value & ANY_VALUE;
    return kinds_of(value) ? value : ANY_VALUE;
}

}  // namespace

bool may_be_list(const Node *element) {
    while (element->kind == NODE_PARENS) element = element->first_child;
    if (element->kind != NODE_REFERENCE) return false;
    const Node *holder = element->first_child;
    for (const Node *selector = holder->next; selector;
         holder = selector, selector = selector->next) {
        bool is_field = selector->kind == NODE_FIELD && is_one_record(value_of(holder));
        if (selector->kind != NODE_ARGUMENTS && !is_field) return true;
    }
    return false;
}

bool may_be_called(const Node *before) {
    const Node *selector = before->next;
    if (selector->kind != NODE_ARGUMENTS || is_surely_index(selector->first_child)) return false;
    if (!may_be(value_of(before), MAY_BE_FUNCTION)) return false;
    if (before->kind == NODE_FIELD) return true;
    return before->kind == NODE_NAME && is_variable(before->symbol) &&
           !is_surely_data(before->symbol, nullptr);
}

void trace_selectors(Node *reference) {
    for (Node *selector = second_child(reference); selector; selector = selector->next)
        if (selector->kind != NODE_FIELD) trace_all(selector->first_child);
}

// A row without elements has a row: who is asked for its sides begins without any.
static void note_sides(const Node *base) {
    const Node *variable = base->next->kind == NODE_ARGUMENTS ? base->next->first_child : nullptr;
    if (!variable || variable->kind != NODE_NAME || !is_variable(variable->symbol)) return;
    if (is_known_to(base->text, ASKS_SIDES)) variable->symbol->flags |= SYMBOL_SIDES_ASKED;
}

Value trace_reference(Node *reference) {
    Node *base = reference->first_child;
    bool is_call = base->kind == NODE_NAME && !is_variable(base->symbol);
    if (is_call) note_sides(base);
    if (!is_call) trace_expression(base);
    trace_selectors(reference);
    if (is_call && is_known_to(base->text, RUNS_TEXT)) forget_all(0);
    if (is_call) return value_after_call(base);
    return base->kind == NODE_NAME ? value_of_part(base->symbol, base->next) : Value(ANY_VALUE);
}

LibraryCall library_call(Node *node) {
    Node *base = node->kind == NODE_REFERENCE ? node->first_child : node;
    if (base->kind != NODE_NAME || is_variable(base->symbol)) return {};
    if (base == node) return {library_of(base), nullptr, base};
    bool is_call = base->next->kind == NODE_ARGUMENTS && !base->next->next;
    if (!is_call) return {};
    return {library_of(base), base->next->first_child, base};
}
