// What variables hold after an assignment.
#include <string.h>

#include "syntax/scan/spellings.h"
#include "syntax/trace/library_values.h"
#include "syntax/trace/summaries.h"
#include "syntax/trace/trace.h"
#include "syntax/values/field_values.h"
#include "syntax/values/shapes.h"
#include "syntax/values/values.h"

namespace {

constexpr Value SIZED = MAY_HAVE_ROWS | MAY_HAVE_COLUMNS;

bool is_empty(Value value) { return !may_be(value, MAY_BE_FILLED); }

// x(k) = [] and x(k) = ''. Also what is translated as an assignment (is_deletion in lower/targets),
// "" and
// ([]): a size must not be taken for known that one of MATLAB and Octave changes.
bool may_delete(const Node *selector, const Node *expression) {
    if (selector->kind != NODE_ARGUMENTS || selector->next || !expression) return false;
    expression = without_parens(expression);
    bool is_text = expression->kind == NODE_STRING && !*expression->text;
    return is_text || is_empty_matrix(expression);
}

// Of what is not there only nothing can be deleted, by x([]) = [].
bool reads_what_is_there(const Node *selector, const Node *expression) {
    return may_delete(selector, expression) && selector->first_child &&
           may_be(value_of(selector->first_child), MAY_BE_FILLED);
}

// A vector keeps its direction; whole rows or columns leave 0 by n.
Value after_deletion(Value before, const Node *arguments) {
    bool is_block = arguments && arguments->next;
    Value kind = may_be(before, MAY_BE_MISSING) ? MAY_BE_NUMBER : 0;
    Value size = is_block ? SIZED : before & SIZED ? Value(0) : Value(MAY_HAVE_COLUMNS);
    return (before & ANY_VALUE) | kind | size | MAY_BE_ARRAY | MAY_BE_EMPTY;
}

// Where one index is given, a vector of several elements grows along itself, and all else becomes a
// row; a column may have one element.
Value size_after(Value before, const Node *arguments) {
    if (!arguments || arguments->next) return SIZED;
    if (is_colon(arguments)) return before & SIZED;
    return (before & SIZED) | MAY_HAVE_COLUMNS;
}

// What has no elements takes the kind of what comes, unless it is a text or has a kind otherwise.
// A number among characters becomes one.
Value kinds_after(Value before, const Node *arguments, Value value) {
    constexpr Value KEPT = MAY_BE_CELL | MAY_BE_TEXT | MAY_BE_TRUTH | MAY_BE_OTHER;
    bool is_plain = is_empty(before) && !may_be(before, SIZED) && selects_one(arguments);
    Value had = kinds_of(is_plain ? Value(before & KEPT) : before);
    if (had == MAY_BE_CELL) return MAY_BE_CELL;
    if (had == MAY_BE_TEXT && is_surely(value, ARITHMETIC)) return MAY_BE_TEXT;
    return had | kinds_of(value);
}

// Nothing is set where no position is given; x(:) sets what is there.
Value filling_after(Value before, const Node *arguments) {
    bool may_stay = !selects_one(arguments) && may_be(before, MAY_BE_EMPTY | MAY_BE_MISSING);
    return may_stay ? MAY_BE_FILLED | MAY_BE_EMPTY : MAY_BE_FILLED;
}

// x(...) = value.
Value after_element(Value before, const Node *arguments, Value value) {
    Value filling = filling_after(before, arguments);
    before &= ANY_VALUE;
    bool is_text = may_be(before | value, MAY_BE_TEXT);
    Value form = may_be(before, MAY_BE_FILLED) || is_text ? before & MAY_BE_SINGLE : 0;
    return kinds_after(before, arguments, value) | MAY_BE_ARRAY | form | filling |
           size_after(before, arguments) | ((before | value) & ANY_SIGN);
}

// x{...} = value.
Value after_brace(Value before, const Node *arguments) {
    return MAY_BE_CELL | (before & MAY_BE_OTHER) | MAY_BE_ARRAY | filling_after(before, arguments) |
           size_after(before, arguments);
}

// x(...).f = value, x(...){k} = value.
Value after_part(Value before, const Node *next) {
    bool is_cell = kinds_of(before) == MAY_BE_CELL && !is_empty(before);
    bool may_be_record = next->kind != NODE_BRACES && !(is_cell && !may_be(before, MAY_BE_EMPTY));
    Value kind = (may_be_record ? MAY_BE_RECORD : MAY_BE_CELL) | (is_cell ? MAY_BE_CELL : 0);
    return kind | (before & MAY_BE_OTHER) | (ANY_SHAPE & ~MAY_BE_EMPTY);
}

Value after_change(Value before, const Node *selector, Value value, const Node *expression) {
    const Node *arguments = selector->first_child;
    switch (selector->kind) {
        case NODE_BRACES: return after_brace(before, arguments);
        case NODE_ARGUMENTS:
            if (selector->next) return after_part(before, selector->next);
            if (!may_delete(selector, expression)) return after_element(before, arguments, value);
            return after_deletion(before, arguments) |
                   (expression->kind == NODE_STRING ? after_element(before, arguments, value) : 0);
        default: return MAY_BE_RECORD | ONE | (before & (MAY_BE_OTHER | MAY_BE_ARRAY | SIZED));
    }
}

// Whether nested functions share a variable that nobody sets as a whole: it begins with its
// function.
bool is_shared_in_parts(const Symbol *symbol) {
    constexpr uint32_t SET_OTHERWISE = SYMBOL_VARIABLE & ~(SYMBOL_CHANGED | SYMBOL_OUTPUT);
    uint32_t flags = symbol->flags;
    return (flags & SYMBOL_SHARED) && !(flags & (SET_OTHERWISE | SYMBOL_IN_SCRIPT));
}

// A variable that has a value on some of the ways to here only must have one from the beginning: of
// the function, or of the outermost statement that has all its uses so far.
void note_start(Symbol *symbol, Value before, const Node *selector) {
    if (!symbol->start && is_shared_in_parts(symbol)) symbol->start = selector;
    if (!may_be(before, MAY_BE_MISSING) || !is_traced(symbol) || symbol->start) return;
    bool is_first = symbol->flags & SYMBOL_STARTS_AS_PART;
    if (is_first && !symbol->starts_in) {
        symbol->starts_in = OutermostStatement;
        symbol->first_part = selector;
    }
    bool is_same = is_first && symbol->starts_in == OutermostStatement;
    if (!kinds_of(before)) return;
    symbol->starts_in_front = is_same;
    if (!is_same) symbol->start = is_first ? symbol->first_part : selector;
}

// x{1} = value and x{end+1} = value leave no place free.
bool leaves_none_free(const Node *arguments) {
    if (!arguments || arguments->next) return false;
    if (arguments->kind == NODE_END) return true;
    if (arguments->kind == NODE_NUMBER) return strcmp(arguments->text, "1") == 0;
    const Node *end = arguments->kind == NODE_CHAIN ? arguments->first_child : nullptr;
    const Node *one = end && end->kind == NODE_END ? end->next : nullptr;
    return one && !one->next && one->joint == OPERATOR_PLUS && one->kind == NODE_NUMBER &&
           strcmp(one->text, "1") == 0;
}

// What is set.
struct Given {
    Value value;
    const KnownParts *parts;
    const Node *expression;  // null for none
    bool is_each;            // each element of a list is given one of such values
};

void change(Symbol *holder, int depth, Node *selector, const Given *given);

// Its value after a change of a part, which may be one of several values.
void add_changed(Symbol *holder, const Node *selector, const Given *given) {
    Value before = value_now(holder);
    Value after = after_change(before | MAY_BE_MISSING, selector, given->value, given->expression);
    set_value(holder, before | (after & ANY_VALUE));
}

// A part is set of what may be without elements, or missing: it has no fields then. A parameter of
// which nothing is known is what its fields have been read from.
void begin_holder(Symbol *holder, Value before) {
    if (is_empty(before)) return begin_fields(holder);
    bool may_begin = may_be(before, MAY_BE_EMPTY | MAY_BE_MISSING) && kinds_of(before) != ANY_KIND;
    if (!may_begin) return;
    for (Symbol *part = first_field(holder); part; part = next_field(part))
        set_value(part, value_now(part) | MAY_BE_MISSING);
}

// One of the values that a holder may have is set, or a part of one.
void add_change(Symbol *holder, int depth, Node *selector, const Given *given) {
    if (!selector) return add_value(holder, depth, given->value & ANY_VALUE, given->parts);
    begin_holder(holder, value_now(holder));
    change(holder, depth, selector, given);
    add_changed(holder, selector, given);
}

// c{...} = value, c{...}.f = value. Of several targets it may be a list of values, of which only
// the first is known.
void change_elements(Symbol *holder, int depth, Node *braces, const Given *given) {
    Symbol *elements = elements_of(holder, depth);
    if (!elements) return;
    bool takes_it = given->expression || given->is_each || selects_one(braces->first_child);
    if (!takes_it) return assign(elements, UNKNOWN_FIELD);
    add_change(elements, depth + 1, braces->next, given);
    if (!leaves_none_free(braces->first_child))
        set_value(elements, value_now(elements) | NO_ELEMENT);
}

// What is in others of the records that have come into being.
void add_free_fields(Symbol *holder) {
    for (Symbol *part = holder->parts ? holder->parts->next : nullptr; part; part = part->next)
        set_value(part, value_now(part) | NO_ELEMENT);
}

void change_any_field(Symbol *holder, int depth, Node *selector, const Given *given) {
    for (Symbol *part = rest_of(holder); part; part = part->next) {
        if (part->name && depth + 1 <= DEEPEST_HOLDER) {
            add_change(part, depth + 1, selector->next, given);
        } else if (selector->next) {
            add_changed(part, selector->next, given);
        } else {
            set_value(part, value_now(part) | (given->value & ANY_VALUE));
        }
    }
}

// The kinds of what it holds; none where that is without elements.
Value kinds_inside(const Symbol *holder) {
    Value value = value_now(holder);
    return is_empty(value) ? Value(0) : kinds_of(value);
}

// Of what has no elements only, fields and cells are made.
bool may_only_be(const Symbol *holder, Value kind) {
    constexpr Value WITHOUT = MAY_BE_NUMBER | MAY_BE_TRUTH | MAY_BE_TEXT;
    return is_within(kinds_inside(holder), kind | WITHOUT);
}

// The parts of a holder are joined by others.
void join_parts(Symbol *holder, int depth, const KnownParts *parts) {
    if (kinds_inside(holder)) parts = joined_parts(parts_now(holder), parts);
    give_parts(holder, depth, parts);
}

// x(k) = record.
void change_records(Symbol *holder, int depth, const Node *selector, const Given *given) {
    join_parts(holder, depth, given->expression ? given->parts : nullptr);
    if (!leaves_none_free(selector->first_child)) add_free_fields(holder);
}

// c(k) = cell, or what stands for its elements.
void change_positions(Symbol *holder, int depth, const Given *given) {
    Value value = given->value & ANY_VALUE;
    if (is_surely(value, MAY_BE_CELL)) {
        join_parts(holder, depth, given->expression ? given->parts : nullptr);
    } else if (may_be(value, MAY_BE_CELL)) {
        return forget_fields(holder);
    }
    Symbol *elements = elements_of(holder, depth);
    if (!elements) return;
    if (!may_be(value, MAY_BE_CELL)) add_value(elements, depth + 1, value, given->parts);
    set_value(elements, value_now(elements) | NO_ELEMENT);
}

// A part of the holder is set that is no field of one record: what it has inside now.
void change_inside(Symbol *holder, int depth, Node *selector, const Given *given) {
    switch (selector->kind) {
        case NODE_BRACES:
            if (may_only_be(holder, MAY_BE_CELL))
                return change_elements(holder, depth, selector, given);
            break;
        case NODE_ARGUMENTS:
            if (may_delete(selector, given->expression)) return;
            if (!selector->next && kinds_inside(holder) == MAY_BE_CELL)
                return change_positions(holder, depth, given);
            if (!may_only_be(holder, MAY_BE_RECORD)) break;
            if (!selector->next && are_records(given->value))
                return change_records(holder, depth, selector, given);
            if (selector->next && selector->next->kind == NODE_FIELD) {
                change(holder, depth, selector->next, given);
                return add_free_fields(holder);
            }
            break;
        case NODE_DYNAMIC_FIELD:
            if (may_only_be(holder, MAY_BE_RECORD))
                return change_any_field(holder, depth, selector, given);
            break;
        default: break;
    }
    forget_fields(holder);
}

// What one of several values that the holder may have, has inside after a change.
void change(Symbol *holder, int depth, Node *selector, const Given *given) {
    if (selector->kind != NODE_FIELD) return change_inside(holder, depth, selector, given);
    Symbol *field = field_of(holder, selector->text, depth);
    if (field) add_change(field, depth + 1, selector->next, given);
}

// The part of the holder after a selector is set. A selector has the value of its part before
// that.
void set_part(Symbol *holder, int depth, Node *selector, const Given *given) {
    Value before = value_now(holder);
    Value value = given->value;
    bool is_element = depth == 0 && selector->kind == NODE_ARGUMENTS && !selector->next;
    if (is_element && counts_as_number(before, value) && !may_delete(selector, given->expression))
        value = (value & ~ANY_KIND) | MAY_BE_NUMBER;
    Value after = after_change(before, selector, value, given->expression);
    Symbol *field = nullptr;
    begin_holder(holder, before);
    if (selector->kind == NODE_FIELD) {
        field = field_of(holder, selector->text, depth);
    } else {
        change_inside(holder, depth, selector, given);
    }
    set_value(holder, after);
    if (!field) return;
    if (selector->next && reads_what_is_there(selector->next, given->expression))
        note_presence(field);
    selector->value |= value_now(field);
    if (selector->next) return set_part(field, depth + 1, selector->next, given);
    assign_known(field, depth + 1, given->value & ANY_VALUE, given->parts);
}

// Whether a list of values is set at the target: by its positions, and by the holder of which a
// field is set.
bool sets_list(const Node *target, bool (*are_several)(const Node *positions),
               bool (*is_several)(Value holder)) {
    const Node *base = target->kind == NODE_REFERENCE ? target->first_child : nullptr;
    if (!base || base->kind != NODE_NAME) return false;
    Symbol *holder = base->symbol;
    int depth = 0;
    for (const Node *selector = base->next; selector; selector = selector->next) {
        bool is_field = selector->kind == NODE_FIELD;
        bool takes_all =
            selector->kind == NODE_BRACES || (selector->kind == NODE_ARGUMENTS && selector->next);
        if (takes_all && are_several(selector->first_child)) return true;
        if (is_field && holder && is_several(value_now(holder))) return true;
        holder = is_field && holder ? field_of(holder, selector->text, depth++) : nullptr;
    }
    return false;
}

bool may_select_several(const Node *positions) { return !selects_one(positions); }

bool surely_selects_several(const Node *positions) {
    for (; positions; positions = positions->next)
        if (is_surely_several(positions)) return true;
    return false;
}

bool may_be_several(Value holder) { return may_be(holder, MAY_BE_ARRAY); }

bool are_several_records(Value holder) {
    return are_records(holder & ANY_VALUE) && may_be(holder, MAY_BE_ARRAY);
}

}  // namespace

bool is_list_target(const Node *target) {
    return sets_list(target, surely_selects_several, are_several_records);
}

// What is given to a part of a variable.
static void trace_part_target(Node *target, const Given *given) {
    Node *base = target->first_child;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return;
    Value before = value_now(base->symbol);
    base->value |= before;
    note_start(base->symbol, before, base->next);
    set_part(base->symbol, 0, base->next, given);
}

void trace_target(Node *target, Value value, const KnownParts *parts, const Node *expression) {
    if (target->kind == NODE_NAME) {
        target->value |= value_now(target->symbol);
        return assign_known(target->symbol, 0, value & ANY_VALUE, parts);
    }
    if (target->kind != NODE_REFERENCE) return;
    bool is_any = !expression && sets_list(target, may_select_several, may_be_several);
    Given given = {is_any ? ANY_VALUE : value, is_any ? nullptr : parts, expression, false};
    trace_part_target(target, &given);
}

void trace_list_target(Node *target, Value value, const KnownParts *parts) {
    Given given = {value, parts, nullptr, true};
    trace_part_target(target, &given);
}
