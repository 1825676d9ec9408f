// The values of calls of MATLAB's own functions.
#include "syntax/trace/library_values.h"

#include <string.h>
#include <strings.h>

#include "support/same_text.h"
#include "syntax/trace/trace.h"
#include "syntax/values/shapes.h"

namespace {

int count_of(const Node *arguments) {
    int count = 0;
    for (; arguments; arguments = arguments->next) count++;
    return count;
}

Value joined(const Node *arguments) {
    Value value = 0;
    for (; arguments; arguments = arguments->next) value |= value_of(arguments);
    return value;
}

Value shape_of_all(const Node *arguments) {
    Value shape = arguments ? numeric_shape(value_of(arguments)) : ONE;
    for (; arguments; arguments = arguments->next)
        shape = elementwise_shape(shape, value_of(arguments));
    return shape;
}

bool is_one(const Node *node) { return node->kind == NODE_NUMBER && is_same_text(node->text, "1"); }

// zeros(n), zeros(1, n), zeros(n, 1): a literal 1 is one row or one column.
Value shape_of_sizes(const Node *arguments) {
    if (!arguments) return ONE;
    const Node *columns = arguments->next;
    if (!columns || columns->next || !is_single(value_of(arguments)))
        return is_one(arguments) && !columns ? ONE : ANY_SHAPE & ~MAY_BE_SINGLE;
    Value shape = MAY_BE_ARRAY | MAY_BE_EMPTY | MAY_BE_FILLED;
    if (!is_one(arguments)) shape |= MAY_HAVE_ROWS;
    if (!is_one(columns)) shape |= MAY_HAVE_COLUMNS;
    return may_be(shape, MAY_HAVE_ROWS | MAY_HAVE_COLUMNS) ? shape : ONE;
}

bool is_vector(Value shape) {
    return (shape & (MAY_HAVE_ROWS | MAY_HAVE_COLUMNS)) != (MAY_HAVE_ROWS | MAY_HAVE_COLUMNS);
}

Value shape_reduced(const Node *arguments) {
    if (!arguments || arguments->next) return ANY_SHAPE;
    Value shape = numeric_shape(value_of(arguments));
    return is_vector(shape) ? ONE : ONE | ROW;
}

// Of what is empty, the greatest is empty.
Value shape_of_extreme(const Node *arguments) {
    if (!arguments) return ANY_SHAPE;
    if (arguments->next) return arguments->next->next ? ANY_SHAPE : shape_of_all(arguments);
    Value shape = numeric_shape(value_of(arguments));
    if (!is_vector(shape)) return ANY_SHAPE;
    return may_be(shape, MAY_BE_EMPTY) ? ANY_SHAPE & ~(MAY_HAVE_ROWS | MAY_HAVE_COLUMNS) : ONE;
}

// The positions in a row are a row, those in anything else a column.
Value shape_of_positions(const Node *arguments) {
    if (!arguments) return ANY_SHAPE;
    Value shape = value_of(arguments) & (MAY_HAVE_ROWS | MAY_HAVE_COLUMNS);
    bool is_first = arguments->next && is_one(arguments->next);
    Value one = is_first ? MAY_BE_SINGLE : MAY_BE_ARRAY;
    return one | shape | MAY_BE_EMPTY | MAY_BE_FILLED;
}

Value shape_of_text(const Node *arguments) {
    constexpr Value SHAPE = ANY_TEXT & ANY_SHAPE;
    bool may_be_cell = may_be(joined(arguments), MAY_BE_CELL);
    return may_be_cell ? SHAPE | ANY_SHAPE : SHAPE;
}

Value shape_of_texts(const Node *arguments) {
    bool has_rows = may_be(joined(arguments), MAY_HAVE_ROWS);
    return shape_of_text(arguments) | (has_rows ? ANY_SHAPE : 0);
}

// A text keeps its form where the result is of its kind.
Value shape_of_first(const LibraryFunction *function, const Node *arguments) {
    if (!arguments) return ANY_SHAPE;
    Value value = value_of(arguments);
    bool is_number = !may_be(function->taken, MAY_BE_TEXT);
    return is_number ? numeric_shape(value) : value & ANY_SHAPE;
}

Value shape_of_test(const Node *arguments) {
    return may_be(joined(arguments), MAY_BE_CELL) ? ANY_SHAPE : ONE;
}

// A cell of one element stands for that.
bool may_be_several(const Node *value) {
    value = without_parens(value);
    bool is_one = value->kind == NODE_CELL && single_element(value);
    return !is_one && may_be(value_of(value), MAY_BE_CELL);
}

// Names and values; struct of anything else may give several. Of [] there is none.
Value shape_of_struct(const Node *arguments) {
    if (arguments && is_empty_matrix(arguments)) return MAY_BE_ARRAY | MAY_BE_EMPTY;
    for (const Node *name = arguments; name; name = name->next->next) {
        const Node *value = name->kind == NODE_STRING ? name->next : nullptr;
        if (!value || may_be_several(value)) return ANY_SHAPE;
    }
    return ONE;
}

Value shape_of(const LibraryFunction *function, const Node *arguments) {
    switch (function->shape) {
        case SHAPE_ONE: return ONE;
        case SHAPE_TEST: return shape_of_test(arguments);
        case SHAPE_NAMED: return shape_of_test(arguments ? arguments->next : nullptr);
        case SHAPE_ALL: return shape_of_all(arguments);
        case SHAPE_FIRST: return shape_of_first(function, arguments);
        case SHAPE_TEXT: return shape_of_text(arguments);
        case SHAPE_TEXTS: return shape_of_texts(arguments);
        case SHAPE_ROW: return ROW;
        case SHAPE_COLUMN: return COLUMN;
        case SHAPE_ARRAY: return ANY_SHAPE & ~MAY_BE_SINGLE;
        case SHAPE_SIZES: return shape_of_sizes(arguments);
        case SHAPE_REDUCED: return shape_reduced(arguments);
        case SHAPE_EXTREME: return shape_of_extreme(arguments);
        case SHAPE_POSITIONS: return shape_of_positions(arguments);
        case SHAPE_STRUCT: return shape_of_struct(arguments);
        case SHAPE_SIZE:
            return count_of(arguments) == 2 && is_single(value_of(arguments->next))
                       ? ONE
                       : ROW & ~MAY_BE_EMPTY;
        default: return ANY_SHAPE;
    }
}

// What rearranges its first argument gives what that holds; of two, a cell if one is a cell.
Value taken_from(const LibraryFunction *function, const Node *arguments) {
    bool is_of_first = kinds_of(function->taken) == ANY_KIND && function->shape != SHAPE_JOINT;
    if (!arguments || !is_of_first) return joined(arguments);
    return value_of(arguments) | (joined(arguments) & MAY_BE_CELL);
}

// zeros(2, 'like', x)
bool is_like_another(const Node *arguments) {
    for (; arguments; arguments = arguments->next)
        if (arguments->kind == NODE_STRING && is_same_text(arguments->text, "like")) return true;
    return false;
}

// fopen(name) and fopen(name, mode) open a file; fopen(number) and fopen('all') ask about open
// ones.
bool opens_file(const Node *arguments) {
    if (!arguments || arguments->next) return true;
    bool is_all = arguments->kind == NODE_STRING && is_same_text(arguments->text, "all");
    return !is_all && kinds_of(value_of(arguments)) == MAY_BE_TEXT;
}

// exist(name) and exist(name, kind), of anything but a variable: a number. Of a variable whether it
// is there.
bool asks_for_variable(const Node *arguments) {
    if (!arguments || arguments->kind != NODE_STRING) return !arguments;
    const Node *kind = arguments->next;
    return !kind || (kind->kind == NODE_STRING && is_same_text(kind->text, "var"));
}

// What a function may give beyond its row in the table.
Value value_of_options(const LibraryFunction *function, const Node *arguments) {
    if (function->shape == SHAPE_SIZES && is_like_another(arguments)) return ANY_KIND | ANY_SIGN;
    if (arguments && is_same_text(function->name, "eps")) return ANY_SHAPE;
    if (is_same_text(function->name, "exist") && asks_for_variable(arguments)) return MAY_BE_TRUTH;
    bool makes_object = arguments && arguments->next && is_same_text(function->name, "class");
    if (makes_object) return ANY_VALUE;
    if (function->shape == SHAPE_FILE) return opens_file(arguments) ? ONE : ANY_VALUE;
    bool has_digits = arguments && arguments->next && is_same_text(function->name, "round");
    return has_digits ? joined(arguments) & MAY_BE_BROKEN : 0;
}

// An option may be abbreviated, in letters of either kind.
bool asks_for_output(const Node *option) {
    return *option->text && strncasecmp(option->text, "UniformOutput", strlen(option->text)) == 0;
}

bool is_one_of(const Node *value, const char *word, const char *digit) {
    value = without_parens(value);
    bool is_spelled = value->kind == NODE_NAME || value->kind == NODE_NUMBER;
    return is_spelled && (is_same_text(value->text, word) || is_same_text(value->text, digit));
}

Value kinds_of_output(const Node *value, Value uniform) {
    if (!value || value->next) return ANY_KIND;
    if (is_one_of(value, "false", "0")) return MAY_BE_CELL;
    return is_one_of(value, "true", "1") ? uniform : ANY_KIND;
}

// Those of each value of a function that is known: numbers, truth values or characters.
Value kinds_of_each(const Node *function) {
    constexpr Value UNIFORM = ARITHMETIC | MAY_BE_TEXT;
    bool is_anonymous = function->kind == NODE_ANONYMOUS;
    Value kinds = is_anonymous ? kinds_of(value_of(second_child(function))) : ANY_KIND;
    return kinds == ANY_KIND ? kinds : kinds & UNIFORM ? Value(kinds & UNIFORM) : ANY_KIND;
}

// cellfun(f, x, ...) and arrayfun: whether a cell holds what f gives. Unknown are options that a
// list or a variable may hold.
Value kinds_of_applied(const Node *first, Value uniform) {
    if (may_be_list(first)) return ANY_KIND;
    for (const Node *argument = first->next; argument; argument = argument->next) {
        if (may_be_list(argument)) return ANY_KIND;
        if (argument->kind != NODE_STRING) {
            if (may_be(value_of(argument), MAY_BE_TEXT)) return ANY_KIND;
        } else if (asks_for_output(argument)) {
            return kinds_of_output(argument->next, uniform);
        } else if (argument->next) {
            argument = argument->next;  // 'ErrorHandler', f
        }
    }
    return uniform;
}

Value value_of_applied(const Node *function) {
    constexpr Value SIZE = MAY_HAVE_ROWS | MAY_HAVE_COLUMNS | MAY_BE_EMPTY | MAY_BE_FILLED;
    const Node *first = function ? function->next : nullptr;
    Value kinds = first ? kinds_of_applied(first, kinds_of_each(function)) : ANY_KIND;
    if (kinds == MAY_BE_CELL) return kinds | MAY_BE_ARRAY | (value_of(first) & SIZE);
    return kinds | ANY_SHAPE | ANY_SIGN;
}

bool is_word(const Node *argument, const char *word) { return is_same_text(argument->text, word); }

// regexp(text, pattern, 'match', ...): a cell of all matches, unless the first one is asked for.
Value value_of_matches(const Node *arguments) {
    const Node *pattern = arguments ? arguments->next : nullptr;
    const Node *first = pattern ? pattern->next : nullptr;
    for (const Node *word = first; word; word = word->next)
        if (word->kind != NODE_STRING || is_word(word, "once")) return ANY_VALUE;
    bool is_cell =
        first && (is_word(first, "match") || is_word(first, "tokens") || is_word(first, "split"));
    if (!is_cell) return ANY_VALUE;
    bool is_of_text = kinds_of(value_of(arguments)) == MAY_BE_TEXT;
    return MAY_BE_CELL | (is_of_text ? ROW : ANY_SHAPE & ~MAY_BE_SINGLE);
}

}  // namespace

Value library_value(const LibraryFunction *function, const Node *arguments) {
    if (function->shape == SHAPE_NOTHING) return ANY_VALUE;
    if (function->shape == SHAPE_MATCHES) return value_of_matches(arguments);
    if (function->shape == SHAPE_APPLIED) return value_of_applied(arguments);
    Value value = function->value | (taken_from(function, arguments) & function->taken);
    value |= value_of_options(function, arguments);
    if (!kinds_of(value)) value |= ANY_KIND;
    return function->shape == SHAPE_FILE ? value : value | shape_of(function, arguments);
}

Value library_others(const LibraryFunction *function, const Node *arguments) {
    if (function->shape == SHAPE_APPLIED) return value_of_applied(arguments);
    Value others = function->others ? function->others : ANY_VALUE;
    bool is_of_text =
        kinds_of(others) == (MAY_BE_TEXT | MAY_BE_CELL) && !may_be(joined(arguments), MAY_BE_CELL);
    return is_of_text ? others & ANY_TEXT : others;
}
