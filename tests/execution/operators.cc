// Arithmetic, comparisons, and joined arrays.
#include <algorithm>
#include <cmath>
#include <functional>

#include "tests/execution/values.h"

namespace mtranslate::execution {

namespace {

const Value &operand(const Value &value) {
    if (!is_array(value)) throw ExecutionError("an operator on " + kind_of(value));
    return value;
}

// What is made of each two elements. Sides are equal, or one operand is a single value.
template <typename Operation>
ValuePointer pairwise(ValueKind kind, const Value &left, const Value &right,
                      const Operation &operation) {
    const bool takes_left = operand(left).numbers.size() == 1;
    const bool takes_right = operand(right).numbers.size() == 1;
    if (!takes_left && !takes_right && (left.rows != right.rows || left.columns != right.columns))
        throw ExecutionError("an operator on " + kind_of(left) + " and " + kind_of(right));
    const Value &shape = takes_left ? right : left;
    std::vector<double> numbers(shape.numbers.size());
    for (size_t at = 0; at < numbers.size(); at++)
        numbers[at] =
            operation(left.numbers[takes_left ? 0 : at], right.numbers[takes_right ? 0 : at]);
    ValuePointer result = array(kind, shape.rows, shape.columns, std::move(numbers));
    const bool is_byte = kind == ValueKind::NUMBERS && (left.is_byte || right.is_byte);
    return is_byte ? bytes(*result) : result;
}

double raised(double base, double exponent) {
    if (base < 0 && exponent != std::floor(exponent))
        throw ExecutionError("a root of a negative number");
    return std::pow(base, exponent);
}

bool is_true(double number) {
    if (std::isnan(number)) throw ExecutionError("the truth of what is no number");
    return number != 0;
}

bool relates(const std::string &relation, double left, double right) {
    if (relation == "=") return left == right;
    if (relation == "<>") return left != right;
    if (relation == "<") return left < right;
    if (relation == "<=") return left <= right;
    if (relation == ">") return left > right;
    if (relation == ">=") return left >= right;
    const bool is_left = is_true(left);
    const bool is_right = is_true(right);
    if (relation == "and") return is_left && is_right;
    if (relation == "or") return is_left || is_right;
    throw ExecutionError("the relation " + relation);
}

// The kind of joined arrays: characters among them make texts of all.
ValueKind joined_kind(const std::vector<ValuePointer> &values) {
    ValueKind kind = ValueKind::NOTHING;
    for (const ValuePointer &value : values) {
        if (!is_array(*value) && value->kind != ValueKind::CELL && value->kind != ValueKind::RECORD)
            throw ExecutionError("joined: " + kind_of(*value));
        if (!is_array(*value) || kind == ValueKind::CELL)
            kind = ValueKind::CELL;
        else if (value->kind == ValueKind::CHARACTERS || kind == ValueKind::CHARACTERS)
            kind = ValueKind::CHARACTERS;
        else if (value->kind != ValueKind::NOTHING)
            kind = kind == ValueKind::NOTHING || kind == value->kind ? value->kind
                                                                     : ValueKind::NUMBERS;
    }
    return kind;
}

// A part of a joined array, as elements of the array's kind.
Value part_of_kind(const ValuePointer &value, ValueKind kind) {
    if (kind == ValueKind::CELL && value->kind != ValueKind::CELL)
        return Value{ValueKind::CELL, 1, 1, {}, {value}};
    return *value;
}

void append_beside(Value &left, const Value &right) {
    if (left.rows * left.columns == 0) {
        left.rows = right.rows;
        left.columns = 0;
    }
    if (left.rows != right.rows)
        throw ExecutionError("joined: " + kind_of(left) + " and " + kind_of(right));
    left.columns += right.columns;
    left.numbers.insert(left.numbers.end(), right.numbers.begin(), right.numbers.end());
    left.elements.insert(left.elements.end(), right.elements.begin(), right.elements.end());
}

}  // namespace

ValuePointer bytes(const Value &value) {
    std::vector<double> numbers = operand(value).numbers;
    for (double &each : numbers) each = std::clamp(std::round(each), -128., 127.);
    ValuePointer result = array(ValueKind::NUMBERS, value.rows, value.columns, std::move(numbers));
    result->is_byte = true;
    return result;
}

ValuePointer each_two(char operation, const Value &left, const Value &right) {
    const auto with = [&](const auto &function) {
        return pairwise(ValueKind::NUMBERS, left, right, function);
    };
    switch (operation) {
        case '+': return with(std::plus<>());
        case '-': return with(std::minus<>());
        case '*': return with(std::multiplies<>());
        case '/': return with([](double number, double divisor) { return number / divisor; });
        case '^': return with(raised);
        default: throw ExecutionError(std::string("the operator ") + operation);
    }
}

ValuePointer product(const Value &left, const Value &right) {
    if (operand(left).numbers.size() == 1 || operand(right).numbers.size() == 1)
        return each_two('*', left, right);
    if (left.columns != right.rows)
        throw ExecutionError("a product of " + kind_of(left) + " and " + kind_of(right));
    std::vector<double> numbers(left.rows * right.columns);
    for (size_t column = 0; column < right.columns; column++)
        for (size_t row = 0; row < left.rows; row++)
            for (size_t k = 0; k < left.columns; k++)
                numbers[row + column * left.rows] +=
                    left.numbers[row + k * left.rows] * right.numbers[k + column * right.rows];
    return array(ValueKind::NUMBERS, left.rows, right.columns, std::move(numbers));
}

ValuePointer power(const Value &base, const Value &exponent) {
    if (operand(base).numbers.size() != 1 || operand(exponent).numbers.size() != 1)
        throw ExecutionError("a power of " + kind_of(base) + " and " + kind_of(exponent));
    return each_two('^', base, exponent);
}

ValuePointer compared(const std::string &relation, const Value &left, const Value &right) {
    return pairwise(ValueKind::TRUTHS, left, right,
                    [&](double a, double b) -> double { return relates(relation, a, b) ? 1 : 0; });
}

ValuePointer negated(const Value &value) {
    const Value ZERO{ValueKind::NUMBERS, 1, 1, {0}};
    return pairwise(ValueKind::TRUTHS, value, ZERO,
                    [](double number, double) -> double { return is_true(number) ? 0 : 1; });
}

ValuePointer transposed(const Value &value) {
    auto turned = std::make_shared<Value>(value);
    if (value.kind != ValueKind::CELL && !is_array(value))
        throw ExecutionError("transposed: " + kind_of(value));
    std::swap(turned->rows, turned->columns);
    for (size_t row = 0; row < value.rows; row++)
        for (size_t column = 0; column < value.columns; column++) {
            const size_t from = row + column * value.rows;
            const size_t to = column + row * value.columns;
            if (value.kind == ValueKind::CELL)
                turned->elements[to] = value.elements[from];
            else
                turned->numbers[to] = value.numbers[from];
        }
    return turned;
}

ValuePointer joined(const std::vector<ValuePointer> &values, int side) {
    auto whole = std::make_shared<Value>(Value{joined_kind(values)});
    for (const ValuePointer &value : values) {
        Value part = part_of_kind(value, whole->kind);
        const bool is_left_out =
            value->rows * value->columns == 0 && value->kind != ValueKind::RECORD;
        if (is_left_out) continue;
        append_beside(*whole, side == 1 ? *transposed(part) : part);
    }
    return side == 1 ? transposed(*whole) : whole;
}

}  // namespace mtranslate::execution
