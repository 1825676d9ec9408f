// Values, what they hold, and how they are shown.
#include "tests/execution/values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace mtranslate::execution {

ValuePointer array(ValueKind kind, size_t rows, size_t columns, std::vector<double> numbers) {
    return std::make_shared<Value>(Value{kind, rows, columns, std::move(numbers)});
}

ValuePointer number(double number) { return array(ValueKind::NUMBERS, 1, 1, {number}); }

ValuePointer condition(bool is_true) {
    return array(ValueKind::CONDITION, 1, 1, {is_true ? 1.0 : 0.0});
}

ValuePointer held(const ValuePointer &value) {
    if (value->kind != ValueKind::CONDITION) return value;
    const ValuePointer truth = array(ValueKind::TRUTHS, 1, 1, value->numbers);
    truth->is_word = true;
    return truth;
}

ValuePointer text(const std::string &characters) {
    std::vector<double> codes(characters.begin(), characters.end());
    return array(ValueKind::CHARACTERS, characters.empty() ? 0 : 1, characters.size(),
                 std::move(codes));
}

ValuePointer row_of(std::vector<double> numbers) {
    const size_t count = numbers.size();
    return array(ValueKind::NUMBERS, 1, count, std::move(numbers));
}

std::vector<double> numbers_from(double first, double last, double step) {
    const double count = std::floor((last - first) / step * (1 + 0x1p-52)) + 1;
    if (step == 0 || !(count < 1e6)) throw ExecutionError("a range without an end");
    std::vector<double> numbers(static_cast<size_t>(std::max(count, 0.0)));
    for (size_t k = 0; k < numbers.size(); k++) numbers[k] = first + static_cast<double>(k) * step;
    return numbers;
}

ValuePointer list(std::vector<ValuePointer> values) {
    return std::make_shared<Value>(Value{ValueKind::LIST, 1, values.size(), {}, std::move(values)});
}

ValuePointer cell(size_t rows, size_t columns, std::vector<ValuePointer> elements) {
    return std::make_shared<Value>(Value{ValueKind::CELL, rows, columns, {}, std::move(elements)});
}

bool is_array(const Value &value) { return value.kind <= ValueKind::NOTHING; }

bool is_single_number(const Value &value) {
    return value.kind == ValueKind::NUMBERS && value.numbers.size() == 1;
}

std::string kind_of(const Value &value) {
    static constexpr std::array NAMES = {"numbers", "truth values", "characters", "nothing",
                                         "a cell",  "a record",     "a function", "a condition",
                                         "a list",  "sides"};
    std::string name = NAMES[static_cast<size_t>(value.kind)];
    if (!is_array(value)) return name;
    return std::to_string(value.rows) + " by " + std::to_string(value.columns) + " " + name;
}

size_t count_of(const Value &value) {
    if (value.kind > ValueKind::FUNCTION) throw ExecutionError("elements of " + kind_of(value));
    if (value.kind == ValueKind::CELL) return value.elements.size();
    return is_array(value) ? value.numbers.size() : 1;
}

double number_of(const Value &value) {
    if (!is_single_number(value))
        throw ExecutionError(kind_of(value) + " where a number is needed");
    return value.numbers[0];
}

double bound_of(const Value &value) {
    const bool is_truth = value.kind == ValueKind::TRUTHS && value.numbers.size() == 1;
    return is_truth ? value.numbers[0] : number_of(value);
}

long whole_number_of(const Value &value) {
    const double number = number_of(value);
    if (number != std::floor(number) || std::fabs(number) > 1e9)
        throw ExecutionError("a number that is not whole where one is needed");
    return static_cast<long>(number);
}

std::string text_of(const Value &value) {
    if (value.kind != ValueKind::CHARACTERS || value.rows > 1)
        throw ExecutionError(kind_of(value) + " where a text is needed");
    std::string characters;
    for (const double code : value.numbers) characters += static_cast<char>(code);
    return characters;
}

ValuePointer deep_copy(const ValuePointer &value) {
    auto copy = std::make_shared<Value>(*value);
    for (ValuePointer &element : copy->elements) element = deep_copy(element);
    for (auto &field : copy->fields) field.second = deep_copy(field.second);
    return copy;
}

namespace {

std::string written_number(double number) {
    if (std::isnan(number)) return "NaN";
    if (std::isinf(number)) return number > 0 ? "Inf" : "-Inf";
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.12g", number == 0 ? 0 : number);
    return text.data();
}

std::string written_element(const Value &value, size_t at) {
    return value.kind == ValueKind::CELL ? written(*value.elements[at])
                                         : written_number(value.numbers[at]);
}

std::string written_rows(const Value &value, const char *between) {
    std::string text;
    for (size_t row = 0; row < value.rows; row++)
        for (size_t column = 0; column < value.columns; column++) {
            if (row > 0 || column > 0) text += column == 0 ? "; " : between;
            text += written_element(value, row + column * value.rows);
        }
    return text;
}

std::string written_fields(const Value &value) {
    std::string text;
    for (const auto &[name, field] : value.fields)
        text += (text.empty() ? "" : ", ") + name + " = " + written(*field);
    return "struct(" + text + ")";
}

}  // namespace

std::string written(const Value &value) {
    if (value.kind == ValueKind::FUNCTION) return "@";
    if (value.kind == ValueKind::RECORD) return written_fields(value);
    if (count_of(value) == 0) return "[]";
    if (value.kind == ValueKind::CELL) return "{" + written_rows(value, ", ") + "}";
    if (value.kind == ValueKind::CHARACTERS && value.rows == 1) return "'" + text_of(value) + "'";
    const std::string rows = written_rows(value, " ");
    return value.numbers.size() == 1 ? rows : "[" + rows + "]";
}

}  // namespace mtranslate::execution
