// What variables hold after an assignment.
#include <string.h>

#include "syntax/scan/spellings.h"
#include "syntax/values/field_values.h"
#include "syntax/values/library_values.h"
#include "syntax/values/shapes.h"
#include "syntax/values/summaries.h"
#include "syntax/values/trace.h"

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

// f, a variable that holds a function.
void copy_result(Symbol *holder, int depth, Symbol *from) {
    const Symbol *result = is_variable(from) ? result_of(from, 0) : nullptr;
    Value value = result ? value_now(result) : UNKNOWN_FIELD;
    if (!kinds_of(value) || value == UNKNOWN_FIELD) return;
    const Symbol *elements = elements_of(result_of(from, 0), 1);
    begin_result(holder, depth, value & ANY_VALUE, elements ? value_now(elements) : UNKNOWN_FIELD);
}

// @name, and @() whose value depends on nothing that it is given.
void set_result(Symbol *holder, int depth, Node *function) {
    if (function->kind == NODE_NAME) return copy_result(holder, depth, function->symbol);
    bool is_named = function->kind == NODE_HANDLE;
    if (!is_named && function->kind != NODE_ANONYMOUS) return;
    Node *body = is_named ? nullptr : second_child(function);
    if (body && may_be_list(body)) return;
    Value value = is_named ? value_of_handled(function) : Value(value_of(body) & ANY_VALUE);
    Value elements = is_named ? elements_of_own(function) : elements_given(body);
    if (kinds_of(value)) begin_result(holder, depth, value, elements);
}

// Fields of which nothing is said may be there, too.
void set_given_fields(Symbol *holder, int depth, const Node *name) {
    for (const FieldResult *given = fields_of_own(name); given; given = given->next) {
        Symbol *field = field_of(holder, given->name, depth);
        if (!field) continue;
        assign(field, given->value);
        if (kinds_of(given->value) == MAY_BE_CELL)
            begin_elements(field, depth + 1, given->elements);
    }
}

// struct('a', 1, 'b', {{2}}) makes one record, where no value is a cell, or one of one element.
void set_fields(Symbol *holder, int depth, Node *expression) {
    bool is_name = depth == 0 && expression && expression->kind == NODE_NAME;
    if (is_name && is_variable(expression->symbol)) return copy_fields(holder, expression->symbol);
    bool is_function = expression && kinds_of(value_of(expression) & ANY_VALUE) == MAY_BE_FUNCTION;
    if (is_function)
        return set_result(holder, depth, const_cast<Node *>(without_parens(expression)));
    LibraryCall call = expression ? library_call(expression) : LibraryCall{};
    if (!call.name || !is_one_record(value_of(expression))) return;
    if (!call.function) return set_given_fields(holder, depth, call.name);
    if (strcmp(call.function->name, "struct") != 0) return;
    begin_fields(holder);
    for (const Node *name = call.arguments; name; name = name->next->next) {
        Symbol *field = *name->text ? field_of(holder, intern(name->text), depth) : nullptr;
        if (!field) continue;
        const Node *value = without_parens(name->next);
        const Node *element = value->kind == NODE_CELL ? single_element(value) : nullptr;
        assign(field, value_of(element ? element : value) & ANY_VALUE);
    }
}

// The cells among the elements of a literal: what is in them.
void set_inner_elements(Symbol *holder, int depth, const Node *literal) {
    Symbol *inner = elements_of(holder, depth);
    if (!inner || kinds_of(value_now(inner)) == 0) return;
    Value all = MAY_BE_MISSING;
    for (const Node *row = literal->first_child; row; row = row->next) {
        for (Node *item = row->first_child; item; item = item->next) {
            if (!may_be(value_of(item), MAY_BE_CELL)) continue;
            Value elements = elements_given(item);
            if (elements == UNKNOWN_FIELD) return;
            all |= elements;
        }
    }
    begin_elements(inner, depth + 1, all);
}

// The holder has been set to the value of the expression, null for another one: what is in it.
void set_inside(Symbol *holder, int depth, Node *expression, Value elements) {
    if (elements == UNKNOWN_FIELD) return set_fields(holder, depth, expression);
    begin_elements(holder, depth, elements);
    expression = const_cast<Node *>(without_parens(expression));
    if (expression->kind == NODE_CELL) set_inner_elements(holder, depth, expression);
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

// What a selector of a cell sets its element to. Of several targets it may be a list of values, of
// which only the first is known.
Value element_after(const Symbol *elements, const Node *braces, Value value,
                    const Node *expression) {
    bool takes_it = expression || selects_one(braces->first_child);
    if (!takes_it) return UNKNOWN_FIELD;
    if (!braces->next) return value & ANY_VALUE;
    return after_change(value_now(elements) | MAY_BE_MISSING, braces->next, value, expression) &
           ANY_VALUE;
}

// c{...} = value.
void set_element(Symbol *holder, int depth, const Node *braces, Value value,
                 const Node *expression) {
    const Symbol *elements = elements_of(holder, depth);
    if (!elements) return;
    Value free = leaves_none_free(braces->first_child) ? Value(0) : NO_ELEMENT;
    add_elements(holder, depth, element_after(elements, braces, value, expression) | free);
}

// c(...) = value.
void set_elements(Symbol *holder, int depth, const Node *selector, Value value, Node *expression) {
    if (may_delete(selector, expression)) return;
    bool is_cell = kinds_of(value & ANY_VALUE) == MAY_BE_CELL;
    bool is_known =
        !selector->next && (is_cell ? expression != nullptr : !may_be(value, MAY_BE_CELL));
    Value elements = is_known && is_cell ? elements_given(expression) : Value(value & ANY_VALUE);
    add_elements(holder, depth, is_known ? elements | NO_ELEMENT : UNKNOWN_FIELD);
}

// A part of the holder is set that is no field: what it has inside now.
void change_inside(Symbol *holder, int depth, Value before, const Node *selector, Value value,
                   Node *expression) {
    bool is_cell = (kinds_of(before) & ~MAY_BE_MISSING) == MAY_BE_CELL;
    if (selector->kind == NODE_BRACES && (is_cell || before == MAY_BE_MISSING))
        return set_element(holder, depth, selector, value, expression);
    if (selector->kind == NODE_ARGUMENTS && is_cell)
        return set_elements(holder, depth, selector, value, expression);
    forget_fields(holder);
}

// The part of the holder after a selector is set. A selector has the value of its part before
// that.
void set_part(Symbol *holder, int depth, Node *selector, Value value, Node *expression) {
    Value before = value_now(holder);
    bool is_element = depth == 0 && selector->kind == NODE_ARGUMENTS && !selector->next;
    if (is_element && counts_as_number(before, value) && !may_delete(selector, expression))
        value = (value & ~ANY_KIND) | MAY_BE_NUMBER;
    Value after = after_change(before, selector, value, expression);
    Symbol *field = nullptr;
    if (before == MAY_BE_MISSING) begin_fields(holder);
    if (selector->kind == NODE_FIELD) {
        field = field_of(holder, selector->text, depth);
    } else {
        change_inside(holder, depth, before, selector, value, expression);
    }
    set_value(holder, after);
    if (!field) return;
    if (selector->next && reads_what_is_there(selector->next, expression)) note_presence(field);
    selector->value |= value_now(field);
    if (selector->next) return set_part(field, depth + 1, selector->next, value, expression);
    Value elements = expression ? elements_given(expression) : UNKNOWN_FIELD;
    assign(field, value & ANY_VALUE);
    set_inside(field, depth + 1, expression, elements);
}

}  // namespace

void trace_target(Node *target, Value value, Node *expression) {
    if (target->kind == NODE_NAME) {
        target->value |= value_now(target->symbol);
        Value elements = expression ? elements_given(expression) : UNKNOWN_FIELD;
        assign(target->symbol, value & ANY_VALUE);
        return set_inside(target->symbol, 0, expression, elements);
    }
    if (target->kind != NODE_REFERENCE) return;
    Node *base = target->first_child;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return;
    Value before = value_now(base->symbol);
    base->value |= before;
    note_start(base->symbol, before, base->next);
    set_part(base->symbol, 0, base->next, value, expression);
}
