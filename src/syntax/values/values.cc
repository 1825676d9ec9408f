// What is known of values.
#include "syntax/values/values.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "support/allocation.h"
#include "syntax/library/library_table.h"
#include "syntax/names/field_uses.h"
#include "syntax/values/findings.h"
#include "syntax/values/flow.h"
#include "syntax/values/shapes.h"

namespace {

constexpr int DEEPEST = 200;  // of expressions, those of variables counted in
// Of a range, whose class each range around it asks for.
constexpr int RANGE_DEPTH = 25;

// Who asks: the variable whose values are looked at, or null, and how deep the expression lies.
struct Asker {
    const Symbol *symbol;
    int depth;
};

Asker inner(Asker asker) { return {asker.symbol, asker.depth + 1}; }

// Whether a test holds for all values of a variable. Where its values are made from itself, nothing
// speaks against it, as n = n + 1 leaves alone what is true of n; of a larger circle nothing is
// known.
bool holds_for_all(Symbol *symbol, Question question, Asker asker,
                   bool (*test)(const AssignedValue *value, Asker asker)) {
    Findings *findings = findings_of(symbol);
    if (findings->states[question] == IS_FOUND) return findings->is_true[question];
    if (findings->states[question] == IN_QUESTION) return asker.symbol == symbol;
    if (asker.depth > DEEPEST) return false;
    findings->states[question] = IN_QUESTION;
    bool holds = true;
    for (const AssignedValue *value = symbol->values; value && holds; value = value->next)
        holds = test(value, {symbol, asker.depth + 1});
    findings->is_true[question] = holds;
    findings->states[question] = IS_FOUND;
    return holds;
}

// Whether all that the variable holds is in its values.
bool is_known(const Symbol *symbol) {
    constexpr uint32_t OTHERS =
        SYMBOL_PARAMETER | SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    return symbol->values && !(symbol->flags & OTHERS);
}

// The function that a reference calls, and its arguments; null for anything else.
struct Call {
    const char *name;
    const Node *arguments;
};

Call call_of(const Node *node) {
    if (node->kind == NODE_NAME && !is_variable(node->symbol)) return {node->text, nullptr};
    if (node->kind != NODE_REFERENCE) return {};
    const Node *base = node->first_child;
    bool is_call = base->kind == NODE_NAME && !is_variable(base->symbol) &&
                   base->next->kind == NODE_ARGUMENTS && !base->next->next;
    return is_call ? Call{base->text, base->next} : Call{};
}

int count_of(const Node *arguments) {
    int count = 0;
    for (const Node *child = arguments ? arguments->first_child : nullptr; child;
         child = child->next)
        count++;
    return count;
}

}  // namespace

namespace {

// Lower bounds. A variable has none of its own within its values: n = n + 1 leaves the bound of n
// where it is.
constexpr double UNKNOWN = -1e300;
constexpr double NO_BOUND = 1e300;

double least(const Node *node, Asker asker);

// 3 and -3.
double number_of(const Node *node) {
    bool is_negated = node->kind == NODE_PREFIX && node->op == OPERATOR_MINUS;
    if (is_negated) node = without_parens(node->first_child);
    if (node->kind != NODE_NUMBER || has_flag(node, NUMBER_IMAGINARY)) return UNKNOWN;
    double number = strtod(node->text, nullptr);
    return is_negated ? -number : number;
}

// The least of all arguments: right for min and max alike, when all have a bound.
double least_argument(const Node *arguments, Asker asker) {
    double bound = NO_BOUND;
    for (const Node *child = arguments ? arguments->first_child : nullptr; child;
         child = child->next) {
        double next = least(child, inner(asker));
        if (next < bound) bound = next;
    }
    return bound == NO_BOUND ? UNKNOWN : bound;
}

double least_of_call(const Node *node, Asker asker) {
    Call call = call_of(node);
    if (!call.name) return UNKNOWN;
    if (has_trait(call.name, NEVER_NEGATIVE)) return 0;
    if (has_trait(call.name, NEVER_BELOW)) return least_argument(call.arguments, asker);
    return UNKNOWN;
}

double least_of_range(const Node *range, Asker asker) {
    double start = least(range->first_child, inner(asker));
    const Node *second = second_child(range);
    if (!second->next) return start;
    if (least(second, inner(asker)) >= 0) return start;
    double stop = least(second->next, inner(asker));
    return number_of(without_parens(second)) == UNKNOWN ? std::min(start, stop) : stop;
}

double least_of_rows(const Node *matrix, Asker asker) {
    double bound = NO_BOUND;
    for (const Node *row = matrix->first_child; row; row = row->next) {
        double next = least_argument(row, asker);
        if (next < bound) bound = next;
    }
    return bound == NO_BOUND ? 0 : bound;
}

double least_of_values(const Symbol *symbol, Asker asker) {
    double bound = NO_BOUND;
    for (const AssignedValue *value = symbol->values; value; value = value->next) {
        bool is_known = value->kind != VALUE_UNKNOWN;
        double next = is_known ? least(value->node, {symbol, asker.depth + 1}) : UNKNOWN;
        if (next < bound) bound = next;
    }
    return bound == NO_BOUND ? UNKNOWN : bound;
}

double least_of_name(const Node *name, Asker asker) {
    Symbol *symbol = name->symbol;
    if (!is_variable(symbol)) return least_of_call(name, asker);
    if (!is_known(symbol) || (symbol->flags & SYMBOL_CHANGED)) return UNKNOWN;
    Findings *findings = findings_of(symbol);
    if (findings->states[LEAST] == IS_FOUND) return findings->least;
    if (findings->states[LEAST] == IN_QUESTION) return asker.symbol == symbol ? NO_BOUND : UNKNOWN;
    if (asker.depth > DEEPEST) return UNKNOWN;
    findings->states[LEAST] = IN_QUESTION;
    findings->least = least_of_values(symbol, asker);
    findings->states[LEAST] = IS_FOUND;
    return findings->least;
}

double least_sum(double left, double right) {
    if (left == NO_BOUND || right == NO_BOUND) return left >= 0 && right >= 0 ? NO_BOUND : UNKNOWN;
    return left + right;
}

double least_difference(double left, const Node *right) {
    double number = number_of(without_parens(right));
    if (left == UNKNOWN || left == NO_BOUND || number == UNKNOWN) return UNKNOWN;
    return left - number;
}

// Products, quotients and powers of what is not negative are not negative either.
double least_of_others(double left, const Node *right, Asker asker) {
    if (right->kind == NODE_POSTFIX) return left;
    return left >= 0 && least(right, inner(asker)) >= 0 ? 0 : UNKNOWN;
}

double least_of_chain(const Node *chain, Asker asker) {
    if (chain->op >= OPERATOR_OR_ELSE && chain->op <= OPERATOR_GREATER) return 0;
    double bound = least(chain->first_child, inner(asker));
    for (const Node *next = second_child(chain); next; next = next->next) {
        switch (next->joint) {
            case OPERATOR_PLUS: bound = least_sum(bound, least(next, inner(asker))); break;
            case OPERATOR_MINUS: bound = least_difference(bound, next); break;
            default: bound = least_of_others(bound, next, asker);
        }
    }
    return bound;
}

double least(const Node *node, Asker asker) {
    node = without_parens(node);
    if (asker.depth > DEEPEST) return UNKNOWN;
    switch (node->kind) {
        case NODE_NUMBER: return number_of(node);
        case NODE_END: return 0;
        case NODE_NAME: return least_of_name(node, asker);
        case NODE_CHAIN: return least_of_chain(node, asker);
        case NODE_RANGE: return least_of_range(node, asker);
        case NODE_MATRIX: return least_of_rows(node, asker);
        case NODE_REFERENCE: return least_of_call(node, asker);
        case NODE_PREFIX: return node->op == OPERATOR_NOT ? 0 : number_of(node);
        default: return UNKNOWN;
    }
}

}  // namespace

bool is_never_negative(const Node *expression) {
    return !may_be(value_of(expression), MAY_BE_NEGATIVE) || least(expression, Asker{}) >= 0;
}

bool is_surely_whole(const Node *expression) {
    return !may_be(value_of(expression), MAY_BE_BROKEN);
}

namespace {

bool several(const Node *node, Asker asker);

bool is_several_matrix(const Node *matrix, Asker asker) {
    const Node *row = matrix->first_child;
    if (!row || row->next || row->first_child->next) return true;
    return several(row->first_child, inner(asker));
}

bool is_several_value(const AssignedValue *value, Asker asker) {
    return value->kind == VALUE_WHOLE && several(value->node, asker);
}

bool is_several_name(const Node *name, Asker asker) {
    Symbol *symbol = name->symbol;
    if (!is_variable(symbol) || !is_known(symbol)) return false;
    return holds_for_all(symbol, SEVERAL, asker, is_several_value);
}

bool is_several_call(const Node *node) {
    Call call = call_of(node);
    return call.name && has_trait(call.name, MAKES_MASK);
}

bool several(const Node *node, Asker asker) {
    node = without_parens(node);
    if (asker.depth > DEEPEST) return false;
    switch (node->kind) {
        case NODE_COLON:
        case NODE_RANGE: return true;
        case NODE_MATRIX: return is_several_matrix(node, inner(asker));
        case NODE_CHAIN: return node->op >= OPERATOR_OR && node->op <= OPERATOR_GREATER;
        case NODE_PREFIX: return node->op == OPERATOR_NOT;
        case NODE_NAME: return is_several_name(node, asker);
        default: return is_several_call(node);
    }
}

}  // namespace

namespace {

const Node *class_in(const Node *node, Asker asker);

bool is_integer_class(const char *name) {
    if (name[0] == 'u') name++;
    if (strncmp(name, "int", 3) != 0) return false;
    for (const char *bits : {"8", "16", "32", "64"})
        if (strcmp(name + 3, bits) == 0) return true;
    return false;
}

// What stands for the class of a variable in its own values: n = n + 1 leaves it alone.
const Node OwnClass = {};

// What the values of a variable that have a class all have; null where one has none.
const Node *class_of_values(Symbol *symbol, Asker asker) {
    const Node *found = &OwnClass;
    for (const AssignedValue *value = symbol->values; value; value = value->next) {
        bool is_known = value->kind == VALUE_WHOLE || value->kind == VALUE_LOOP;
        const Node *next = is_known ? class_in(value->node, {symbol, asker.depth + 1}) : nullptr;
        if (!next) return nullptr;
        if (next != &OwnClass) found = next;
    }
    return found == &OwnClass ? nullptr : found;
}

const Node *class_of_name(const Node *name, Asker asker) {
    Symbol *symbol = name->symbol;
    if (!is_variable(symbol) || !is_known(symbol)) return nullptr;
    Findings *findings = findings_of(symbol);
    if (findings->states[INTEGER] == IS_FOUND) return findings->integer_class;
    if (findings->states[INTEGER] == IN_QUESTION)
        return asker.symbol == symbol ? &OwnClass : nullptr;
    findings->states[INTEGER] = IN_QUESTION;
    findings->integer_class = class_of_values(symbol, asker);
    findings->states[INTEGER] = IS_FOUND;
    return findings->integer_class;
}

// x(k) is of the class of x, int8(x) of that class.
const Node *class_of_reference(const Node *reference, Asker asker) {
    const Node *base = reference->first_child;
    bool is_plain =
        base->kind == NODE_NAME && base->next->kind == NODE_ARGUMENTS && !base->next->next;
    if (!is_plain) return nullptr;
    if (is_variable(base->symbol)) return class_of_name(base, asker);
    return is_integer_class(base->text) && count_of(base->next) == 1 ? base : nullptr;
}

// One operand, part or element decides.
const Node *class_of_parts(const Node *first, Asker asker) {
    const Node *found = nullptr;
    for (const Node *part = first; part; part = part->next) {
        const Node *next = class_in(part, inner(asker));
        if (next && (!found || found == &OwnClass)) found = next;
    }
    return found;
}

const Node *class_in(const Node *node, Asker asker) {
    node = without_parens(node);
    if (asker.depth > DEEPEST) return nullptr;
    switch (node->kind) {
        case NODE_NAME: return class_of_name(node, asker);
        case NODE_REFERENCE: return class_of_reference(node, asker);
        case NODE_RANGE:
            return class_of_parts(node->first_child, {asker.symbol, asker.depth + RANGE_DEPTH});
        case NODE_CHAIN:
            if (node->op <= OPERATOR_GREATER) return nullptr;
            return class_of_parts(node->first_child, asker);
        case NODE_MATRIX:
            return node->first_child ? class_of_parts(node->first_child->first_child, asker)
                                     : nullptr;
        case NODE_PREFIX:
            return node->op == OPERATOR_NOT ? nullptr : class_in(node->first_child, inner(asker));
        default: return nullptr;
    }
}

}  // namespace

const Node *integer_class(const Node *expression) { return class_in(expression, Asker{}); }

bool is_surely_single(const Node *expression) {
    Value value = value_of(expression);
    return is_single(numeric_shape(value)) && !may_be(value, MAY_BE_EMPTY);
}

bool is_surely_several(const Node *expression) {
    Value value = value_of(expression);
    if (is_colon(expression)) return true;
    if (kinds_of(value) == MAY_BE_TRUTH) return true;  // a mask
    if (is_surely(value, ARITHMETIC)) {
        if (!may_be(value, MAY_BE_SINGLE)) return true;
        if (!may_be(value, MAY_BE_ARRAY)) return false;
    }
    return several(expression, Asker{});
}

namespace {

bool is_cell(const Node *node, Asker asker);

// Whether a function gives cells and nothing else.
bool makes_cell(const char *name) {
    const LibraryFunction *function = library_result(name);
    return function && function->value == MAY_BE_CELL && !function->taken;
}

// What tells of which kind the value is: in [x(:); 1] and in x(2:3) the variable x.
const Node *leading_part(const Node *node) {
    node = without_parens(node);
    while (node->kind == NODE_MATRIX && node->first_child)
        node = without_parens(node->first_child->first_child);
    return node->kind == NODE_REFERENCE ? node->first_child : node;
}

// Whether a value of the variable is not made from it, as x(:) is.
bool has_other_value(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next) {
        if (value->kind != VALUE_WHOLE) return true;
        const Node *part = leading_part(value->node);
        if (part->kind != NODE_NAME || part->symbol != symbol) return true;
    }
    return false;
}

bool is_cell_value(const AssignedValue *value, Asker asker) {
    return value->kind == VALUE_WHOLE && is_cell(value->node, asker);
}

bool is_cell(const Node *node, Asker asker) {
    node = without_parens(node);
    if (asker.depth > DEEPEST) return false;
    if (node->kind == NODE_CELL) return true;
    if (node->kind == NODE_MATRIX) {
        const Node *row = node->first_child;
        return row && is_cell(row->first_child, inner(asker));
    }
    Call call = call_of(node);
    if (call.name) return makes_cell(call.name);
    const Node *base = node->kind == NODE_REFERENCE ? node->first_child : node;
    bool is_part = base == node || (base->next->kind == NODE_ARGUMENTS && !base->next->next);
    if (base->kind != NODE_NAME || !is_part || !is_so(base->symbol, OTHER_VALUE, has_other_value))
        return false;
    return holds_for_all(base->symbol, CELL, asker, is_cell_value);
}

// x(x > 0): what an operator takes is no cell, nor are its parts.
bool is_compared_part(const Node *node) {
    if (node->kind != NODE_REFERENCE || node->first_child->kind != NODE_NAME) return false;
    const Node *arguments = node->first_child->next;
    const Node *mask = arguments->kind == NODE_ARGUMENTS ? arguments->first_child : nullptr;
    if (!mask || mask->next || mask->kind != NODE_CHAIN) return false;
    const Node *left = mask->first_child;
    bool is_same = left->kind == NODE_NAME && left->symbol == node->first_child->symbol;
    return is_same && !arguments->next;
}

bool is_array(const Node *node) {
    node = without_parens(node);
    if (is_compared_part(node)) return true;
    switch (node->kind) {
        case NODE_MATRIX: return node->first_child && !is_cell(node, Asker{});
        case NODE_NUMBER:
        case NODE_STRING:
        case NODE_RANGE:
        case NODE_CHAIN:
        case NODE_PREFIX:
        case NODE_HANDLE:
        case NODE_ANONYMOUS: return true;
        default: break;
    }
    Call call = call_of(node);
    return call.name && has_trait(call.name, NEVER_CELL);
}

}  // namespace

static bool has_array(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next)
        if (value->node && is_array(value->node)) return true;
    return false;
}

static bool has_cell(const Symbol *symbol) {
    for (const AssignedValue *value = symbol->values; value; value = value->next)
        if (value->kind == VALUE_WHOLE && is_cell(value->node, Asker{})) return true;
    return false;
}

static bool is_ever_array(Symbol *symbol) { return is_so(symbol, ARRAY, has_array); }

static bool holds_cell(Symbol *symbol) {
    if (is_ever_array(symbol)) return false;
    return (symbol->flags & SYMBOL_HAS_BRACES) || is_so(symbol, CELL_SEEN, has_cell);
}

bool is_cell_variable(const Node *name) {
    Value kinds = kinds_of(value_of(name)) & ~MAY_BE_OTHER;
    if (!may_be(kinds, MAY_BE_CELL)) return false;
    return kinds == MAY_BE_CELL || holds_cell(name->symbol);
}

static bool is_surely_cell(const Node *base, const Node *field) {
    for (const Node *selector = base->next; selector != field->next; selector = selector->next)
        if (selector->kind != NODE_FIELD && selector->kind != NODE_BRACES) return false;
    return (kinds_of(value_of(field)) & ~MAY_BE_OTHER) == MAY_BE_CELL;
}

bool is_cell_base(const Node *reference) {
    const Node *base = reference->first_child;
    const Node *last = last_selector(reference);
    if (base->kind == NODE_CELL) return base->next == last;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return false;
    const Node *before = base;
    while (before->next != last) before = before->next;
    return before == base ? is_cell_variable(base) : is_surely_cell(base, before);
}

// s.f, where s.f{k} stands somewhere; s.a.f, where any field f of s, or inside of it, is used so.
static bool is_used_as_cell(const Node *base, const Node *holder) {
    return holder->kind == NODE_FIELD && is_cell_field(base->symbol, holder->text);
}

bool may_give_cell(const Node *reference) {
    constexpr Value PLAIN = ARITHMETIC | MAY_BE_TEXT | MAY_BE_CELL | MAY_BE_OTHER;
    const Node *base = reference->first_child;
    const Node *last = last_selector(reference);
    bool is_index = last->kind == NODE_ARGUMENTS && !has_flag(reference, IS_OPERAND);
    if (!is_index || base->kind != NODE_NAME || !is_variable(base->symbol)) return false;
    const Node *holder = base;
    while (holder->next != last) holder = holder->next;
    Value kinds = kinds_of(value_of(holder));
    if (!may_be(kinds, MAY_BE_CELL) || is_cell_base(reference)) return false;
    return is_within(kinds, PLAIN) || is_used_as_cell(base, holder) ||
           has_flag(reference, IS_USED_AS_CELL);
}

bool is_always_cell(const Symbol *symbol) {
    return is_traced(symbol) && kinds_of(symbol->ever) == MAY_BE_CELL;
}

bool may_be_cell(const Node *expression) {
    Value kinds = kinds_of(value_of(expression)) & ~MAY_BE_OTHER;
    if (!may_be(kinds, MAY_BE_CELL)) return false;
    if (kinds == MAY_BE_CELL) return true;
    expression = without_parens(expression);
    if (expression->kind != NODE_NAME) return !is_array(expression);
    return !is_ever_array(expression->symbol);
}

Value cleared_value(const Symbol *symbol) {
    if (symbol->flags & SYMBOL_HAS_BRACES) return MAY_BE_CELL | MAY_BE_ARRAY | MAY_BE_EMPTY;
    return symbol->fields ? MAY_BE_RECORD | ONE : MAY_BE_NUMBER | MAY_BE_ARRAY | MAY_BE_EMPTY;
}
