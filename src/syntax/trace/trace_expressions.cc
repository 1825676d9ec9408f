// The values of expressions.
#include <string.h>

#include "syntax/scan/spellings.h"
#include "syntax/trace/handles.h"
#include "syntax/trace/library_parts.h"
#include "syntax/trace/library_values.h"
#include "syntax/trace/parameters.h"
#include "syntax/trace/summaries.h"
#include "syntax/trace/told_results.h"
#include "syntax/trace/trace.h"
#include "syntax/values/field_values.h"
#include "syntax/values/shapes.h"

FunctionFinders Finders;

// x(k) is an element there, also where x may be a cell. A transposed one may be a cell.
void note_operand(Node *node) {
    bool is_turned = node->next && node->next->kind == NODE_POSTFIX;
    while (node->kind == NODE_PARENS) node = node->first_child;
    if (node->kind == NODE_REFERENCE && !is_turned) node->flags |= IS_OPERAND;
}

namespace {

const LibraryFunction NotMatlab = {nullptr, 0, 0, SHAPE_ANY, 0};

Value value_of_number(const Node *node) {
    if (has_flag(node, NUMBER_IMAGINARY)) return COUNT | ANY_SIGN;
    return has_flag(node, NUMBER_INTEGER) ? COUNT : COUNT | MAY_BE_BROKEN;
}

Value value_of_string(const Node *node) {
    note_text(node->text);
    Value text = MAY_BE_TEXT | MAY_BE_SINGLE | (has_flag(node, DOUBLE_QUOTED) ? MAY_BE_OTHER : 0);
    if (!node->text[0]) return text | MAY_BE_EMPTY;
    return text | MAY_BE_FILLED | (node->text[1] ? MAY_HAVE_COLUMNS : 0);
}

// What has been read is there, in a function: a script would call a function of the name.
Value value_of_variable(Symbol *variable) {
    Value value = value_now(variable);
    if (TracedScope->owner->kind == NODE_FUNCTION) note_presence(variable);
    return value;
}

[[gnu::noinline]] Value value_of_name(Node *name) {
    if (is_variable(name->symbol)) return value_of_variable(name->symbol);
    return value_of_call(name, nullptr, nullptr);
}

// Reading gives a value, or an error.
Value read(Value value) {
    value &= ANY_VALUE;
    return kinds_of(value) ? value : ANY_VALUE;
}

bool may_be_object(Value value) { return may_be(value, MAY_BE_OTHER); }

// The kind of what an arithmetic operator gives.
Value arithmetic_kind(Value left, Value right) {
    bool has_object = may_be_object(left) || may_be_object(right);
    return has_object ? MAY_BE_NUMBER | MAY_BE_OTHER : MAY_BE_NUMBER;
}

// Either may have one element, which scales the other.
Value product_shape(Value left, Value right) {
    left = numeric_shape(left);
    right = numeric_shape(right);
    if (is_single(left) || is_single(right)) return elementwise_shape(left, right);
    constexpr Value SIZE = MAY_HAVE_ROWS | MAY_HAVE_COLUMNS;
    return (ANY_SHAPE & ~SIZE) | ((left | right) & SIZE);
}

Value quotient_shape(Value left, Value right) {
    if (is_single(numeric_shape(right))) return numeric_shape(left);
    return ANY_SHAPE;
}

Value power_shape(Value left, Value right) {
    bool are_single = is_single(numeric_shape(left)) && is_single(numeric_shape(right));
    return are_single ? ONE : ANY_SHAPE;
}

Value shape_of_joint(OperatorId joint, Value left, Value right) {
    switch (joint) {
        case OPERATOR_TIMES: return product_shape(left, right);
        case OPERATOR_DIVIDE: return quotient_shape(left, right);
        case OPERATOR_LEFT_DIVIDE: return quotient_shape(right, left);
        case OPERATOR_POWER: return power_shape(left, right);
        default: return elementwise_shape(left, right);
    }
}

// A system of equations is solved, or a function of a matrix is taken: whatever the elements are,
// those of the result may be anything.
bool is_of_matrix(OperatorId joint, Value left, Value right) {
    bool is_left_one = is_single(numeric_shape(left));
    bool is_right_one = is_single(numeric_shape(right));
    switch (joint) {
        case OPERATOR_DIVIDE: return !is_right_one;
        case OPERATOR_LEFT_DIVIDE: return !is_left_one;
        case OPERATOR_POWER: return !is_right_one || (!is_left_one && may_be(right, ANY_SIGN));
        default: return false;
    }
}

// Numbers of computer arithmetic: a sum of whole ones is whole, or infinite.
Value sign_of_joint(OperatorId joint, Value left, Value right) {
    Value either = (left | right) & ANY_SIGN;
    if (is_of_matrix(joint, left, right)) return ANY_SIGN;
    switch (joint) {
        case OPERATOR_PLUS:
        case OPERATOR_TIMES:
        case OPERATOR_DOT_TIMES: return either;
        case OPERATOR_MINUS: return either | MAY_BE_NEGATIVE;
        case OPERATOR_POWER:
        case OPERATOR_DOT_POWER:
            return may_be(right, ANY_SIGN) ? either | MAY_BE_BROKEN : left & ANY_SIGN;
        default: return either | MAY_BE_BROKEN;
    }
}

bool is_logical(OperatorId op) { return op >= OPERATOR_OR_ELSE && op <= OPERATOR_GREATER; }

Value join_operands(OperatorId joint, Value left, Value right) {
    if (joint == OPERATOR_OR_ELSE || joint == OPERATOR_AND_THEN) return ONE_TRUTH;
    bool has_object = may_be_object(left) || may_be_object(right);
    if (is_logical(joint)) {
        Value kind = has_object ? MAY_BE_TRUTH | MAY_BE_OTHER : MAY_BE_TRUTH;
        return kind | elementwise_shape(left, right);
    }
    return arithmetic_kind(left, right) | shape_of_joint(joint, left, right) |
           sign_of_joint(joint, left, right);
}

void note_operands(Node *first) {
    for (; first; first = first->next) note_operand(first);
}

// The right side of && is traced where the left one is true. What it assumes ends with it.
Value trace_lazy_chain(Node *chain) {
    Mark start = mark_flow();
    int forgotten = times_forgotten();
    bool was_dead = is_dead();
    for (Node *node = chain->first_child; node; node = node->next) {
        trace_expression(node);
        if (node == chain->first_child) was_dead = is_dead();
        if (node->next) assume(node, node->next->joint == OPERATOR_AND_THEN);
    }
    undo_flow(start);
    set_dead(was_dead);
    if (times_forgotten() != forgotten) forget_all(0);
    return ONE_TRUTH;
}

Value trace_chain(Node *chain) {
    note_operands(chain->first_child);
    if (chain->op == OPERATOR_OR_ELSE || chain->op == OPERATOR_AND_THEN)
        return trace_lazy_chain(chain);
    Value value = trace_expression(chain->first_child);
    Mark start = mark_flow();
    for (Node *node = second_child(chain); node; node = node->next) {
        bool is_postfix = node->kind == NODE_POSTFIX;
        value = is_postfix ? transposed(value)
                           : join_operands(node->joint, read(value), trace_expression(node));
    }
    // A condition may leave the right sides of & and | alone.
    if (chain->op == OPERATOR_OR || chain->op == OPERATOR_AND) undo_flow(start);
    return read(value);
}

Value trace_prefix(Node *node) {
    note_operand(node->first_child);
    Value operand = read(trace_expression(node->first_child));
    Value shape = numeric_shape(operand);
    if (node->op == OPERATOR_NOT) return MAY_BE_TRUTH | (operand & MAY_BE_OTHER) | shape;
    Value sign = operand & ANY_SIGN;
    if (node->op == OPERATOR_MINUS) sign |= MAY_BE_NEGATIVE;
    return arithmetic_kind(operand, operand) | shape | sign;
}

bool is_natural(const Node *node) {
    return node->kind == NODE_NUMBER && has_flag(node, NUMBER_INTEGER);
}

// A range of literals is empty or not.
Value filling(const Node *start, const Node *stop) {
    if (!is_natural(start) || !is_natural(stop)) return MAY_BE_EMPTY | MAY_BE_FILLED;
    const char *first = start->text + strspn(start->text, "0");
    const char *last = stop->text + strspn(stop->text, "0");
    size_t length = strlen(first);
    size_t other = strlen(last);
    bool is_filled = length != other ? length < other : strcmp(first, last) <= 0;
    return is_filled ? MAY_BE_FILLED : MAY_BE_EMPTY;
}

Value sign_of_range(Value start, Value step, Value stop) {
    Value sign = (start & ANY_SIGN) | (step & MAY_BE_BROKEN);
    return sign | (may_be(step, MAY_BE_NEGATIVE) ? stop & MAY_BE_NEGATIVE : 0);
}

// A range from a character to a character is a text, whatever the step is.
Value trace_range(Node *range) {
    Node *start = range->first_child;
    Node *second = start->next;
    const Node *stop = second->next ? second->next : second;
    note_operands(start);
    trace_all(start);
    Value first = read(value_of(start));
    Value last = read(value_of(stop));
    bool is_text = kinds_of(first) == MAY_BE_TEXT && kinds_of(last) == MAY_BE_TEXT;
    if (is_text) return MAY_BE_TEXT | MAY_BE_SINGLE | (ROW & ~MAY_BE_ARRAY);
    Value step = second->next ? value_of(second) : Value(COUNT);
    Value text = first & last & MAY_BE_TEXT;
    Value filled = second->next ? Value(MAY_BE_EMPTY | MAY_BE_FILLED) : filling(start, second);
    constexpr Value RANGE = MAY_BE_NUMBER | MAY_BE_ARRAY | MAY_HAVE_COLUMNS;
    return RANGE | text | (text ? MAY_BE_SINGLE : 0) | filled | sign_of_range(first, step, last);
}

}  // namespace

Value trace_condition(Node *condition) {
    note_operand(condition);
    return trace_expression(condition);
}

void trace_positions(Node *first) {
    note_operands(first);
    trace_all(first);
}

bool is_feval(const Node *name, const Node *arguments) {
    return arguments && strcmp(name->text, "feval") == 0 && !Finders.has(name);
}

Value value_of_call(Node *name, const Node *selectors, Node *arguments) {
    if (Value told = told_value(name, selectors)) return told;
    if (const KnownPart *part = record_part(name, arguments)) return part->value;
    const LibraryFunction *function = library_of(name);
    if (function) return library_value(function, arguments);
    return is_feval(name, arguments) ? value_of_function(arguments)
                                     : value_of_own(name, arguments, 0);
}

Value trace_operator(OperatorId op, Node *target, Value value) {
    return read(join_operands(op, read(trace_expression(target)), value));
}

void trace_all(Node *first) {
    for (; first; first = first->next) trace_expression(first);
}

const LibraryFunction *library_of(Node *name) {
    Symbol *symbol = name->symbol;
    if (symbol->library) return symbol->library == &NotMatlab ? nullptr : symbol->library;
    const LibraryFunction *function = library_result_of(name->text);
    if (function && Finders.has(name)) function = nullptr;
    symbol->library = function ? function : &NotMatlab;
    return function;
}

[[gnu::noinline]] static Value value_of_expression(Node *node) {
    switch (node->kind) {
        case NODE_STRING: return value_of_string(node);
        case NODE_END: return COUNT;
        case NODE_COLON: return MAY_BE_TEXT | ROW;
        case NODE_PARENS: return trace_expression(node->first_child);
        case NODE_PREFIX: return trace_prefix(node);
        case NODE_CHAIN: return trace_chain(node);
        case NODE_RANGE: return trace_range(node);
        case NODE_MATRIX: return trace_matrix(node);
        case NODE_CELL: return trace_cell(node);
        case NODE_REFERENCE: return trace_reference(node);
        case NODE_HANDLE: note_handle(node); return MAY_BE_FUNCTION | ONE;
        case NODE_ANONYMOUS: return trace_anonymous(node);
        default: return ANY_VALUE;
    }
}

// As most are in a table, or names.
static Value value_of_operand(Node *node) {
    if (node->kind == NODE_NUMBER) return value_of_number(node);
    return node->kind == NODE_NAME ? value_of_name(node) : value_of_expression(node);
}

Value trace_expression(Node *node) {
    Value value = value_of_operand(node);
    node->value |= value;
    return read(value);
}
