// Cells and records that MATLAB's own functions take apart.
#include "syntax/trace/library_parts.h"

#include "support/same_text.h"
#include "syntax/scan/spellings.h"
#include "syntax/trace/trace.h"
#include "syntax/values/numbered_targets.h"

namespace {

const KnownPart *new_given(Value value, const KnownParts *inside) {
    return new_known_part(nullptr, value, inside, nullptr);
}

// What is taken of a record has a value, or is an error.
Value taken_value(Value value) {
    value &= ANY_VALUE;
    return kinds_of(value) ? value : ANY_VALUE;
}

// getfield(s, 'a', n, ...); an index among the names, {k}, makes nothing known.
const KnownPart *part_got(Node *record, Node *names) {
    const KnownParts *parts = parts_given(record, 0);
    KnownPart got = {nullptr, ANY_VALUE, nullptr, nullptr};
    for (Node *name = names; name && parts; name = name->next, parts = got.inside) {
        if (may_be_list(name) || may_be(value_of(name), MAY_BE_CELL)) return nullptr;
        got = name->kind == NODE_STRING ? part_in(parts, intern(name->text)) : any_field_in(parts);
        if (name->next && !got.inside) return nullptr;
    }
    return names && parts ? new_given(taken_value(got.value), got.inside) : nullptr;
}

// setfield(s, 'a', value).
const KnownPart *part_set(Node *record, Node *name) {
    Node *value = name ? name->next : nullptr;
    bool is_plain = value && !value->next && name->kind == NODE_STRING && !may_be_list(value);
    Value before = value_of(record);
    if (!is_plain || !is_within(kinds_of(before), MAY_BE_RECORD | MAY_BE_NUMBER)) return nullptr;
    Value shape = may_be(before, MAY_BE_ARRAY) ? ANY_SHAPE : ONE;
    const KnownParts *parts = parts_given(record, 0);
    if (!may_be(before, MAY_BE_RECORD)) parts = new_known_parts(false, nullptr);
    return new_given(
        MAY_BE_RECORD | shape,
        with_part(parts, intern(name->text), value_of(value) & ANY_VALUE, parts_given(value, 1)));
}

// rmfield(s, 'a').
const KnownPart *part_left(Node *record, Node *name) {
    if (!name || name->next || !is_surely(value_of(record), MAY_BE_RECORD)) return nullptr;
    const KnownParts *parts = parts_given(record, 0);
    if (name->kind != NODE_STRING) return nullptr;
    return new_given(value_of(record) & ANY_VALUE,
                     with_part(parts, intern(name->text), MAY_BE_MISSING, nullptr));
}

// orderfields(s).
const KnownPart *part_ordered(Node *record, Node *next) {
    if (next || !is_surely(value_of(record), MAY_BE_RECORD)) return nullptr;
    return new_given(value_of(record) & ANY_VALUE, parts_given(record, 0));
}

// struct2cell(s).
const KnownPart *part_listed(Node *record, Node *next) {
    const KnownParts *parts = next ? nullptr : parts_given(record, 0);
    if (!parts) return nullptr;
    KnownPart any = any_field_in(parts);
    return new_given(MAY_BE_CELL | (ANY_SHAPE & ~MAY_BE_SINGLE),
                     parts_of_cell(any.value, any.inside));
}

// The literal that the value is, or a variable always is; null for none.
const Node *literal_cell(const Node *value) {
    value = without_parens(value);
    bool is_variable_name = value->kind == NODE_NAME && is_variable(value->symbol);
    const Node *literal = is_variable_name ? only_value(value) : value;
    literal = literal ? without_parens(literal) : nullptr;
    return literal && literal->kind == NODE_CELL ? literal : nullptr;
}

// The item after one of the row, null for none, or the first of the next row.
const Node *item_after(const Node **row, const Node *item) {
    if (item && item->next) return item->next;
    if (item) *row = (*row)->next;
    return *row ? (*row)->first_child : nullptr;
}

// Fields that each hold one of the values of a cell, all of which are joined where it is no
// literal. Null where names or values are not told.
const KnownParts *fields_named(Node *cell, const Node *names) {
    const Node *literal = without_parens(cell);
    bool is_literal = literal->kind == NODE_CELL;
    const Node *value_row = is_literal ? literal->first_child : nullptr;
    const Node *value = nullptr;
    KnownPart any = {nullptr, elements_given(cell), inside_of_cell(parts_given(cell, 0)), nullptr};
    const KnownPart *first = nullptr;
    const Node *row = names->first_child;
    for (const Node *name = item_after(&row, nullptr); name; name = item_after(&row, name)) {
        if (name->kind != NODE_STRING || !*name->text) return nullptr;
        if (is_literal) {
            value = item_after(&value_row, value);
            if (!value || value->kind == NODE_POSTFIX || may_be_list(value)) return nullptr;
            any = {nullptr, value_of(value), parts_given(const_cast<Node *>(value), 1), nullptr};
        }
        first = new_known_part(intern(name->text), taken_value(any.value), any.inside, first);
    }
    return first ? new_known_parts(false, first) : nullptr;
}

// cell2struct(c, names, d) of a vector along the dimension, the first one if none is given: one
// record.
const KnownPart *part_named(Node *cell, Node *names) {
    const Node *literal = names && !may_be_list(names) ? literal_cell(names) : nullptr;
    if (!literal || !is_surely(value_of(cell), MAY_BE_CELL)) return nullptr;
    const Node *dimension = names->next;
    if (dimension && (dimension->next || dimension->kind != NODE_NUMBER)) return nullptr;
    bool is_down = !dimension || is_same_text(dimension->text, "1");
    if (!is_down && !is_same_text(dimension->text, "2")) return nullptr;
    if (may_be(value_of(cell), is_down ? MAY_HAVE_COLUMNS : MAY_HAVE_ROWS)) return nullptr;
    const KnownParts *fields = fields_named(cell, literal);
    return fields ? new_given(MAY_BE_RECORD | ONE, fields) : nullptr;
}

// horzcat(c, d), vertcat(c, d): a cell beside anything makes a cell.
const KnownPart *part_joined(Node *first, Node *) {
    const KnownParts *inside = nullptr;
    bool has_cell = false;
    bool are_cells = true;
    for (Node *next = first; next; next = next->next) {
        if (may_be_list(next) || may_be(value_of(next), MAY_BE_OTHER)) return nullptr;
        bool is_cell = is_surely(value_of(next), MAY_BE_CELL);
        const KnownParts *parts = is_cell ? parts_given(next, 0) : nullptr;
        inside = has_cell ? joined_parts(inside, parts) : parts;
        has_cell |= is_cell;
        are_cells &= is_cell;
    }
    constexpr Value CELL = MAY_BE_CELL | (ANY_SHAPE & ~MAY_BE_SINGLE);
    return has_cell ? new_given(CELL, are_cells ? inside : nullptr) : nullptr;
}

struct RecordCall {
    const char *name;
    const KnownPart *(*give)(Node *record, Node *next);
};

constexpr RecordCall Calls[] = {
    {"cell2struct", part_named},   {"getfield", part_got},   {"horzcat", part_joined},
    {"orderfields", part_ordered}, {"rmfield", part_left},   {"setfield", part_set},
    {"struct2cell", part_listed},  {"vertcat", part_joined},
};

}  // namespace

const KnownPart *record_part(const Node *name, Node *arguments) {
    if (!arguments || !is_known_to(name->text, KEEPS_INSIDE)) return nullptr;
    if (may_be_list(arguments)) return nullptr;
    for (const RecordCall &call : Calls)
        if (is_same_text(name->text, call.name))
            return Finders.has(name) ? nullptr : call.give(arguments, arguments->next);
    return nullptr;
}

const KnownPart *moved_elements(const LibraryFunction *function, Node *arguments) {
    if (kinds_of(function->taken) != ANY_KIND) return nullptr;
    Value elements = NO_ELEMENT;
    const KnownParts *inside = nullptr;
    bool has_inside = false;
    for (; arguments; arguments = arguments->next) {
        if (may_be_list(arguments)) return nullptr;
        if (!may_be(value_of(arguments), MAY_BE_CELL)) continue;
        if (!is_surely(value_of(arguments), MAY_BE_CELL)) return nullptr;
        elements |= elements_given(arguments);
        const KnownParts *next = inside_of_cell(parts_given(arguments, 0));
        inside = has_inside ? joined_parts(inside, next) : next;
        has_inside = true;
    }
    return has_inside ? new_given(elements, inside) : nullptr;
}
