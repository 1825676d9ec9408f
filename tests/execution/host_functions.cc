// The functions of the host that translations of the tests call.
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numeric>

#include "tests/execution/machine.h"

namespace mtranslate::execution {

namespace {

using Arguments = std::vector<ValuePointer>;

void expect_count(const Arguments &arguments, size_t count) {
    if (arguments.size() != count)
        throw ExecutionError(std::to_string(arguments.size()) + " arguments of " +
                             std::to_string(count));
}

ValuePointer truth(bool is_true) { return array(ValueKind::TRUTHS, 1, 1, {is_true ? 1.0 : 0.0}); }

ValuePointer itself(const Arguments &arguments) {
    expect_count(arguments, 1);
    return arguments[0];
}

ValuePointer copied(const Arguments &arguments) {
    expect_count(arguments, 1);
    return deep_copy(arguments[0]);
}

// Of no elements it is not known whether they are all other than zero.
ValuePointer all_non_zero(const Arguments &arguments) {
    expect_count(arguments, 1);
    if (count_of(*arguments[0]) == 0) throw ExecutionError("the truth of no elements");
    const ValuePointer zeros = negated(*arguments[0]);
    return condition(std::all_of(zeros->numbers.begin(), zeros->numbers.end(),
                                 [](double is_zero) { return is_zero == 0; }));
}

ValuePointer concatenated(const Arguments &arguments) {
    if (arguments.empty()) expect_count(arguments, 2);
    const double side = number_of(*arguments[0]);
    if (side != 1 && side != 2) throw ExecutionError("joined along an unknown side");
    return joined({arguments.begin() + 1, arguments.end()}, static_cast<int>(side));
}

ValuePointer sides(const Arguments &arguments) {
    expect_count(arguments, 1);
    const Value &value = *arguments[0];
    if (value.kind == ValueKind::FUNCTION) throw ExecutionError("sides of a function");
    return row_of({static_cast<double>(value.rows), static_cast<double>(value.columns)});
}

ValuePointer turned(const Arguments &arguments) {
    expect_count(arguments, 1);
    return transposed(*arguments[0]);
}

ValuePointer divided(const Value &dividend, const Value &divisor) {
    if (count_of(divisor) != 1) throw ExecutionError("a system of equations");
    return each_two('/', dividend, divisor);
}

ValuePointer record(const Arguments &arguments) {
    auto made = std::make_shared<Value>(Value{ValueKind::RECORD, 1, 1});
    if (arguments.size() % 2 != 0) expect_count(arguments, arguments.size() + 1);
    for (size_t k = 0; k < arguments.size(); k += 2) {
        if (arguments[k + 1]->kind == ValueKind::CELL) throw ExecutionError("records of a cell");
        field_of(*made, text_of(*arguments[k])) = arguments[k + 1];
    }
    return made;
}

bool has_field(const Value &value, const std::string &name) {
    return std::any_of(value.fields.begin(), value.fields.end(),
                       [&](const auto &field) { return field.first == name; });
}

ValuePointer field(const Arguments &arguments) {
    expect_count(arguments, 2);
    const std::string name = text_of(*arguments[1]);
    if (!has_field(*arguments[0], name)) throw ExecutionError("no field " + name);
    return field_of(*arguments[0], name);
}

ValuePointer with_field(const Arguments &arguments) {
    expect_count(arguments, 3);
    auto changed = std::make_shared<Value>(*arguments[0]);
    field_of(*changed, text_of(*arguments[1])) = arguments[2];
    return changed;
}

// Sorted, each once; a row but where both are columns.
ValuePointer difference(const Arguments &arguments) {
    expect_count(arguments, 2);
    const auto &left = *arguments[0];
    const auto &right = *arguments[1];
    if (!is_array(left) || !is_array(right)) throw ExecutionError("sets of other than numbers");
    std::vector<double> kept;
    for (const double each : left.numbers)
        if (std::find(right.numbers.begin(), right.numbers.end(), each) == right.numbers.end())
            kept.push_back(each);
    std::sort(kept.begin(), kept.end());
    kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
    return row_of(std::move(kept));
}

ValuePointer are_same_texts(const Arguments &arguments) {
    expect_count(arguments, 2);
    for (const ValuePointer &value : arguments)
        if (value->kind == ValueKind::CELL) throw ExecutionError("a comparison with a cell");
    const bool are_texts = std::all_of(arguments.begin(), arguments.end(), [](const auto &value) {
        return value->kind == ValueKind::CHARACTERS;
    });
    return truth(are_texts && text_of(*arguments[0]) == text_of(*arguments[1]));
}

// Of integer classes, and of a row with a column: what the library leaves to the host.
ValuePointer remainders(const Arguments &two) {
    const Value &left = *two.at(0);
    const Value &right = *two.at(1);
    const bool is_row = left.rows == 1 && right.columns == 1;
    if (!left.is_byte && !right.is_byte && !is_row) throw ExecutionError("mod of plain numbers");
    std::vector<double> numbers;
    for (const double number : left.numbers)
        for (const double divisor : right.numbers)
            numbers.push_back(number - divisor * std::floor(number / divisor));
    return array(ValueKind::NUMBERS, right.rows, left.columns, std::move(numbers));
}

// Of integer classes alone, as the library sums up all else.
ValuePointer total(const Arguments &one) {
    const Value &value = *one.at(0);
    if (!value.is_byte) throw ExecutionError("sum of plain numbers");
    return number(std::accumulate(value.numbers.begin(), value.numbers.end(), 0.0));
}

ValuePointer larger(const Arguments &two) {
    const Value &left = *two.at(0);
    const Value &right = *two.at(1);
    if (!left.is_byte && !right.is_byte) throw ExecutionError("max of plain numbers");
    return bytes(*number(std::max(number_of(left), number_of(right))));
}

ValuePointer failed(const Arguments &arguments) {
    throw ExecutionError("error: " + (arguments.empty() ? "" : text_of(*arguments[0])));
}

ValuePointer as_numbers(const Arguments &arguments) {
    expect_count(arguments, 1);
    const Value &value = *arguments[0];
    if (!is_array(value)) throw ExecutionError("numbers of " + kind_of(value));
    return array(ValueKind::NUMBERS, value.rows, value.columns, value.numbers);
}

// An array of records has the same kind.
ValuePointer is_cell(const Arguments &arguments) {
    expect_count(arguments, 1);
    const Value &value = *arguments[0];
    for (const ValuePointer &element : value.elements)
        if (element->kind == ValueKind::RECORD) throw ExecutionError("a cell or an array");
    return truth(value.kind == ValueKind::CELL);
}

std::function<ValuePointer(const Arguments &)> is_of_kind(ValueKind kind) {
    return [kind](const Arguments &arguments) {
        expect_count(arguments, 1);
        return truth(arguments[0]->kind == kind);
    };
}

const std::map<std::string, std::function<ValuePointer(const Arguments &)>> FUNCTIONS = {
    {"eval", itself},
    {"evalf", itself},
    {"evalhf", itself},
    {"copy", copied},
    {"AllNonZero", all_non_zero},
    {"Concatenate", concatenated},
    {"Size", sides},
    {"Transpose", turned},
    {"HermitianTranspose", turned},
    {"mldivide", [](const Arguments &two) { return divided(*two.at(1), *two.at(0)); }},
    {"mrdivide", [](const Arguments &two) { return divided(*two.at(0), *two.at(1)); }},
    {"mpower", [](const Arguments &two) { return power(*two.at(0), *two.at(1)); }},
    {"horzcat", [](const Arguments &parts) { return joined(parts, 2); }},
    {"vertcat", [](const Arguments &parts) { return joined(parts, 1); }},
    {"struct", record},
    {"getfield", field},
    {"setfield", with_field},
    {"isfield",
     [](const Arguments &two) { return truth(has_field(*two.at(0), text_of(*two.at(1)))); }},
    {"setdiff", difference},
    {"strcmp", are_same_texts},
    {"mod", remainders},
    {"sum", total},
    {"max", larger},
    {"int8", [](const Arguments &one) { return bytes(*one.at(0)); }},
    {"error", failed},
    {"double", as_numbers},
    {"iscell", is_cell},
    {"ischar", is_of_kind(ValueKind::CHARACTERS)},
    {"isstruct", is_of_kind(ValueKind::RECORD)},
    {"isnumeric", is_of_kind(ValueKind::NUMBERS)},
};

}  // namespace

bool is_host_function(const std::string &name) { return FUNCTIONS.contains(name); }

ValuePointer call_host_function(const std::string &name, const Arguments &arguments) {
    return FUNCTIONS.at(name)(arguments);
}

}  // namespace mtranslate::execution
