// What variables hold after an assignment.
#include "syntax/values/shapes.h"
#include "syntax/values/trace.h"

namespace {

constexpr Value SIZED = MAY_HAVE_ROWS | MAY_HAVE_COLUMNS;

bool is_empty(Value value) { return !may_be(value, MAY_BE_FILLED); }

// x(k) = [] deletes.
bool is_deletion(const Node *selector, const Node *expression) {
    if (selector->kind != NODE_ARGUMENTS || selector->next || !expression) return false;
    while (expression->kind == NODE_PARENS) expression = expression->first_child;
    return expression->kind == NODE_MATRIX && !expression->first_child;
}

Value after_deletion(Value before) { return before | MAY_BE_EMPTY; }

// The variable grows along itself where one index is given; what is empty becomes a row.
Value size_after(Value before, const Node *arguments) {
    bool is_new = is_empty(before);
    if (arguments && !arguments->next) {
        Value size = is_new ? Value(0) : before & SIZED;
        bool is_column = (before & SIZED) == MAY_HAVE_ROWS && !is_new;
        return size | (is_column ? MAY_HAVE_ROWS : MAY_HAVE_COLUMNS);
    }
    return SIZED;
}

Value kinds_after(Value before, Value value) {
    Value had = is_empty(before) ? Value(kinds_of(before) & MAY_BE_CELL) : kinds_of(before);
    if (had == MAY_BE_CELL) return MAY_BE_CELL;
    return had | kinds_of(value);
}

// x(...) = value.
Value after_element(Value before, const Node *arguments, Value value) {
    before &= ANY_VALUE;
    Value form = may_be(before, MAY_BE_FILLED) ? before & MAY_BE_SINGLE : 0;
    return kinds_after(before, value) | MAY_BE_ARRAY | form | MAY_BE_FILLED |
           size_after(before, arguments) | ((before | value) & ANY_SIGN) |
           (before & MAY_BE_EMPTY & (value & MAY_BE_EMPTY ? ANY_VALUE : 0));
}

Value after_change(Value before, const Node *target, Value value, const Node *expression) {
    const Node *selector = second_child(target);
    Value other = before & MAY_BE_OTHER;
    switch (selector->kind) {
        case NODE_BRACES:
            return MAY_BE_CELL | other | MAY_BE_ARRAY | MAY_BE_FILLED |
                   size_after(before, selector->first_child);
        case NODE_ARGUMENTS:
            if (is_deletion(selector, expression)) return after_deletion(before);
            if (selector->next) {
                bool is_cell = kinds_of(before) == MAY_BE_CELL && !is_empty(before);
                Value kind = is_cell                               ? MAY_BE_CELL
                             : selector->next->kind == NODE_BRACES ? MAY_BE_CELL
                                                                   : MAY_BE_RECORD;
                return kind | other | (ANY_SHAPE & ~MAY_BE_EMPTY);
            }
            return after_element(before, selector->first_child, value);
        default: return MAY_BE_RECORD | other | ONE | (before & (MAY_BE_ARRAY | SIZED));
    }
}

// A variable that has a value on some of the ways to here only must have one from the beginning: of
// the function, or of the outermost statement that has all its uses so far.
void note_start(Symbol *symbol, Value before, const Node *selector) {
    if (!may_be(before, MAY_BE_MISSING) || !is_traced(symbol) || symbol->start) return;
    bool is_first = symbol->flags & SYMBOL_STARTS_AS_PART;
    if (is_first && !symbol->starts_in) symbol->starts_in = OutermostStatement;
    bool is_same = is_first && symbol->starts_in == OutermostStatement;
    if (kinds_of(before) && !is_same) symbol->start = selector;
}

}  // namespace

void trace_target(Node *target, Value value, const Node *expression) {
    if (target->kind == NODE_NAME) {
        target->value |= value_now(target->symbol);
        return set_value(target->symbol, value & ANY_VALUE);
    }
    if (target->kind != NODE_REFERENCE) return;
    Node *base = target->first_child;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return;
    Value before = value_now(base->symbol);
    base->value |= before;
    note_start(base->symbol, before, base->next);
    set_value(base->symbol, after_change(before, target, value, expression));
}
