// Elements that are taken of what may be a cell.
#include "syntax/trace/taken_parts.h"

#include "support/allocation.h"
#include "support/same_text.h"
#include "syntax/names/assigned_values.h"
#include "syntax/scan/spellings.h"
#include "syntax/trace/calls_traced.h"
#include "syntax/values/values.h"

namespace {

// How far back what a variable holds is followed, and through how many assignments.
constexpr int DEEPEST_ORIGIN = 4;
constexpr int MOST_ORIGINS = 16;
constexpr int MOST_TAKEN = 32;

bool is_same_path(const PartPath *one, const PartPath *other) {
    while (one && other && one->name == other->name) {
        one = one->inner;
        other = other->inner;
    }
    return !one && !other;
}

void add_taken(Scope *scope, int32_t position, const PartPath *path) {
    int count = 0;
    for (const TakenPart *taken = scope->taken; taken; taken = taken->next, count++)
        if (taken->position == position && is_same_path(taken->path, path)) return;
    if (count == MOST_TAKEN) return;
    TakenPart *taken = AllocRecord<TakenPart>();
    *taken = {position, path, scope->taken};
    scope->taken = taken;
}

// An element of varargin is a parameter.
void take_of_variable(const Symbol *variable, const PartPath *path) {
    Scope *scope = variable->scope;
    if (variable->position > 0) return add_taken(scope, variable->position, path);
    bool is_rest = (scope->flags & HAS_VARARGIN) && is_same_text(variable->name, "varargin");
    if (is_rest && path && path->name == part_name("{}"))
        add_taken(scope, -scope->parameters - 1, path->inner);
}

struct Way {
    const PartPath *path;
    bool is_known;
};

Way way_inside(const char *name, Way way) {
    PartPath *path = AllocRecord<PartPath>();
    *path = {name, way.path};
    return {path, way.is_known};
}

// Through selectors to what lies at the path behind them. All records of an array are one.
Way way_through(const Node *selector, const Node *end, const PartPath *path) {
    if (selector == end) return {path, true};
    Way way = way_through(selector->next, end, path);
    const Node *name = selector->first_child;
    switch (selector->kind) {
        case NODE_FIELD: return way_inside(selector->text, way);
        case NODE_BRACES: return way_inside(part_name("{}"), way);
        case NODE_DYNAMIC_FIELD:
            if (name->kind == NODE_STRING) return way_inside(intern(name->text), way);
            return {nullptr, false};
        default:
            return {way.path,
                    way.is_known && selector->next != end && selector->next->kind == NODE_FIELD};
    }
}

// The variable that a value is taken from; null for another one.
const Node *source_of(const Node *value) {
    const Node *base = value->kind == NODE_REFERENCE ? value->first_child : value;
    return base->kind == NODE_NAME && is_variable(base->symbol) ? base : nullptr;
}

void take_from(const Symbol *variable, const PartPath *path, int depth, int *steps) {
    take_of_variable(variable, path);
    if (depth == DEEPEST_ORIGIN) return;
    for (const AssignedValue *value = variable->values; value; value = value->next) {
        if (++*steps > MOST_ORIGINS) return;
        const Node *node = value->kind == VALUE_WHOLE ? without_parens(value->node) : nullptr;
        const Node *source = node ? source_of(node) : nullptr;
        if (!source) continue;
        Way way = way_through(source == node ? nullptr : source->next, nullptr, path);
        if (way.is_known) take_from(source->symbol, way.path, depth + 1, steps);
    }
}

bool selects_several(const Node *positions) {
    for (; positions; positions = positions->next)
        if (is_surely_several(positions)) return true;
    return false;
}

bool is_at(const TakenPart *taken, int32_t position) {
    return taken->position < 0 ? position >= -taken->position : position == taken->position;
}

// At the end of a path: among several elements that are known, one may be a cell.
bool has_cell_at(const PartPath *path, const KnownParts *parts) {
    KnownPart part = part_in(parts, path->name);
    if (path->inner) return part.inside && has_cell_at(path->inner, part.inside);
    Value kinds = kinds_of(part.value);
    bool is_element = path->name == part_name("{}");
    return is_element ? kinds != ANY_KIND && may_be(kinds, MAY_BE_CELL) : kinds == MAY_BE_CELL;
}

bool is_cell_given(const Node *argument) { return kinds_of(value_of(argument)) == MAY_BE_CELL; }

bool gives_taken(const TakenPart *taken, int32_t position, Node *argument) {
    Value value = value_of(argument);
    return may_be(value, MAY_BE_CELL | MAY_BE_RECORD) &&
           gives_taken_cell(taken, position, value, parts_given(argument, 0));
}

// What a function that a call is given calls it with is not known: any of the cells beside it.
void note_passed_on(const Node *function, Node *arguments) {
    bool takes_whole = false;
    for (const TakenPart *taken = taken_by_held(function); taken; taken = taken->next)
        takes_whole |= !taken->path;
    for (Node *argument = arguments; argument && takes_whole; argument = argument->next)
        if (is_cell_given(argument)) set_gives_cell(argument, true);
}

const TakenPart *taken_by_named(const Node *name) {
    if (const Summary *summary = summary_of(name->symbol)) return summary->scope->taken;
    const FunctionResults *known = Finders.outside ? Finders.outside(name->text) : nullptr;
    return known ? known->taken : nullptr;
}

}  // namespace

bool gives_taken_cell(const TakenPart *taken, int32_t position, Value value,
                      const KnownParts *parts) {
    for (; taken; taken = taken->next) {
        if (!is_at(taken, position)) continue;
        bool gives = taken->path ? has_cell_at(taken->path, parts) : kinds_of(value) == MAY_BE_CELL;
        if (gives) return true;
    }
    return false;
}

void note_taken(const Node *value) {
    if (value->kind != NODE_REFERENCE || has_flag(value, IS_OPERAND)) return;
    const Node *source = source_of(value);
    if (!source) return;
    const Node *holder = source;
    while (holder->next->next) holder = holder->next;
    const Node *last = holder->next;
    constexpr uint32_t AS_CELL = SYMBOL_HAS_BRACES | SYMBOL_CELL_ASKED;
    if (last->kind != NODE_ARGUMENTS || kinds_of(value_of(holder)) != ANY_KIND) return;
    if (holder == source && (source->symbol->flags & AS_CELL)) return;
    if (may_give_cell(value) || selects_several(last->first_child)) return;
    Way way = way_through(source->next, last, nullptr);
    int steps = 0;
    if (way.is_known) take_from(source->symbol, way.path, 0, &steps);
}

const TakenPart *taken_so_far() { return TracedScope->taken; }

void forget_taken(const TakenPart *since) { TracedScope->taken = since; }

const TakenPart *taken_by_held(const Node *function) {
    if (function->kind == NODE_ANONYMOUS) return function->first_child->scope->taken;
    return function->kind == NODE_HANDLE ? taken_by_named(function) : nullptr;
}

// Whether an argument is a function, or is known to have cells.
static bool may_matter(const Node *argument) {
    if (argument->kind == NODE_HANDLE || argument->kind == NODE_ANONYMOUS) return true;
    Value kinds = kinds_of(value_of(argument));
    return kinds != ANY_KIND && may_be(kinds, MAY_BE_CELL | MAY_BE_RECORD);
}

// A function of MATLAB takes none.
void note_given_cells(Node *name, Node *arguments) {
    const Node *first = arguments;
    while (first && !may_matter(first)) first = first->next;
    if (!first) return;
    const TakenPart *taken = library_of(name) ? nullptr : taken_by_named(name);
    int32_t position = 1;
    bool is_list = false;
    for (Node *argument = arguments; argument; argument = argument->next, position++) {
        if (taken) is_list |= may_be_list(argument);
        set_gives_cell(argument, taken && !is_list && gives_taken(taken, position, argument));
    }
    for (const Node *argument = arguments; argument; argument = argument->next)
        if (argument->kind == NODE_HANDLE || argument->kind == NODE_ANONYMOUS)
            note_passed_on(argument, arguments);
}
