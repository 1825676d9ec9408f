// Indices: reading elements, and storing them in arrays that grow.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "tests/execution/values.h"

namespace mtranslate::execution {

namespace {

// What an index means for a side or an array of some length.
struct Positions {
    std::vector<size_t> at;       /* from 0 */
    size_t rows = 1, columns = 0; /* of the index */
    bool is_single = false;       /* one position, not a list of one */
};

enum class Growth { REFUSED, ALLOWED };

// A position below 0 counts from the end.
size_t position(double number, size_t length, Growth growth) {
    const double counted = number < 0 ? static_cast<double>(length) + 1 + number : number;
    if (counted != std::floor(counted)) throw ExecutionError("an index that is not whole");
    const bool is_behind = counted > static_cast<double>(length);
    if (counted < 1 || (is_behind && growth == Growth::REFUSED) || counted > 1e6)
        throw ExecutionError("no element " + std::to_string(number) + " of " +
                             std::to_string(length));
    return static_cast<size_t>(counted) - 1;
}

Positions span(const Index &index, size_t length, Growth growth) {
    const auto end = static_cast<long>(length);
    const long last = index.last.value_or(end);
    const long from = index.first < 0 ? end + 1 + index.first : index.first;
    const long to = last < 0 ? end + 1 + last : last;
    Positions positions;
    for (long at = from; at <= to; at++)
        positions.at.push_back(position(static_cast<double>(at), length, growth));
    positions.columns = positions.at.size();
    return positions;
}

Positions chosen(const Value &truths, size_t length, Growth growth) {
    Positions positions;
    for (size_t at = 0; at < truths.numbers.size(); at++)
        if (truths.numbers[at] != 0)
            positions.at.push_back(position(static_cast<double>(at + 1), length, growth));
    positions.columns = positions.at.size();
    if (truths.rows != 1) std::swap(positions.rows, positions.columns);
    positions.is_single = truths.numbers.size() == 1 && positions.at.size() == 1;
    return positions;
}

Positions resolved(const Index &index, size_t length, Growth growth) {
    if (index.kind != Index::VALUE) return span(index, length, growth);
    const Value &value = *index.value;
    if (value.kind == ValueKind::TRUTHS) return chosen(value, length, growth);
    if (value.kind != ValueKind::NUMBERS && value.kind != ValueKind::NOTHING)
        throw ExecutionError("an index that is " + kind_of(value));
    Positions positions{{}, value.rows, value.columns, value.numbers.size() == 1};
    for (const double number : value.numbers)
        positions.at.push_back(position(number, length, growth));
    return positions;
}

template <typename Element>
std::vector<Element> at_positions(const std::vector<Element> &all, const std::vector<size_t> &at) {
    std::vector<Element> some;
    some.reserve(at.size());
    for (const size_t place : at) some.push_back(all[place]);
    return some;
}

ValuePointer elements_at(const Value &value, const std::vector<size_t> &at, size_t rows,
                         size_t columns) {
    if (value.kind == ValueKind::CELL) return cell(rows, columns, at_positions(value.elements, at));
    ValuePointer some = array(value.kind, rows, columns, at_positions(value.numbers, at));
    some->is_byte = value.is_byte;
    return some;
}

// One index: the elements of a row or a column stay in a row or a column.
ValuePointer by_one_index(const Value &value, const Index &index) {
    const Positions positions = resolved(index, count_of(value), Growth::REFUSED);
    if (positions.is_single && value.kind == ValueKind::CELL)
        return value.elements[positions.at[0]];
    const size_t count = positions.at.size();
    if (index.kind == Index::ALL)
        return elements_at(value, positions.at, value.rows, value.columns);
    const bool is_list = positions.rows == 1 || positions.columns == 1;
    if (is_list && value.rows == 1 && value.columns != 1)
        return elements_at(value, positions.at, 1, count);
    if (is_list && value.columns == 1 && value.rows != 1)
        return elements_at(value, positions.at, count, 1);
    return elements_at(value, positions.at, positions.rows, positions.columns);
}

std::vector<size_t> places(const Positions &rows, const Positions &columns, size_t height) {
    std::vector<size_t> at;
    for (const size_t column : columns.at)
        for (const size_t row : rows.at) at.push_back(row + column * height);
    return at;
}

void grow(Value &value, size_t rows, size_t columns) {
    if (rows == value.rows && columns == value.columns) return;
    Value grown{value.kind, rows, columns};
    if (value.kind == ValueKind::CELL)
        for (size_t at = 0; at < rows * columns; at++)
            grown.elements.push_back(std::make_shared<Value>());
    else
        grown.numbers.resize(rows * columns);
    for (size_t column = 0; column < value.columns; column++)
        for (size_t row = 0; row < value.rows; row++) {
            const size_t from = row + column * value.rows;
            const size_t to = row + column * rows;
            if (value.kind == ValueKind::CELL)
                grown.elements[to] = value.elements[from];
            else
                grown.numbers[to] = value.numbers[from];
        }
    value = std::move(grown);
}

// Grows an array so that it has a position; only rows and columns grow by one index.
void grow_to(Value &value, size_t last) {
    if (last < value.rows * value.columns) return;
    if (value.rows * value.columns == 0 || value.rows == 1)
        grow(value, 1, last + 1);
    else if (value.columns == 1)
        grow(value, last + 1, 1);
    else
        throw ExecutionError("growth of a matrix by one index");
}

size_t largest(const std::vector<size_t> &at) {
    return at.empty() ? 0 : *std::max_element(at.begin(), at.end());
}

// All positions of a side without elements are as many as what is stored has.
Positions stored_positions(const Index &index, size_t length, size_t stored) {
    if (index.kind != Index::ALL || length > 0) return resolved(index, length, Growth::ALLOWED);
    Positions positions;
    positions.at.resize(stored);
    std::iota(positions.at.begin(), positions.at.end(), 0);
    return positions;
}

// The places that an assignment fills, after growth.
std::vector<size_t> grown_places(Value &value, const Indices &indices, const Value &stored) {
    if (indices.size() == 1) {
        std::vector<size_t> at = stored_positions(indices[0], count_of(value), count_of(stored)).at;
        if (!at.empty()) grow_to(value, largest(at));
        return at;
    }
    if (indices.size() != 2) throw ExecutionError("more than two indices");
    const bool is_single = count_of(stored) == 1;
    const Positions rows = stored_positions(indices[0], value.rows, is_single ? 1 : stored.rows);
    const Positions columns =
        stored_positions(indices[1], value.columns, is_single ? 1 : stored.columns);
    const bool fits = rows.at.size() == stored.rows && columns.at.size() == stored.columns;
    const bool is_list = (rows.at.size() == 1 || columns.at.size() == 1) &&
                         (stored.rows == 1 || stored.columns == 1) &&
                         rows.at.size() * columns.at.size() == count_of(stored);
    if (!is_single && !fits && !is_list) throw ExecutionError("sides that do not fit");
    if (!rows.at.empty() && !columns.at.empty())
        grow(value, std::max(value.rows, largest(rows.at) + 1),
             std::max(value.columns, largest(columns.at) + 1));
    return places(rows, columns, value.rows);
}

bool are_single(const Indices &indices) {
    return std::all_of(indices.begin(), indices.end(), [](const Index &index) {
        return index.kind == Index::VALUE && is_array(*index.value) && count_of(*index.value) == 1;
    });
}

void make_cell(Value &value) {
    if (value.kind == ValueKind::CELL) return;
    if (value.kind > ValueKind::RECORD) throw ExecutionError("elements in " + kind_of(value));
    Value made{ValueKind::CELL, value.rows, value.columns};
    if (value.kind == ValueKind::RECORD) made = Value{ValueKind::CELL, 1, 1};
    if (value.kind == ValueKind::RECORD) made.elements.push_back(std::make_shared<Value>(value));
    for (const double number : value.numbers)
        made.elements.push_back(array(value.kind, 1, 1, {number}));
    value = std::move(made);
}

// Makes the array one of the kind that both its elements and the stored ones have.
void make_kind(Value &value, const Value &stored, bool is_single) {
    if (value.kind == ValueKind::CELL) return;
    const bool is_fresh = value.kind == ValueKind::NOTHING;
    const bool is_text = stored.kind == ValueKind::CHARACTERS;
    if (!is_array(value) || !is_array(stored) || (is_single && count_of(stored) != 1) ||
        (is_text && is_fresh && is_single))
        return make_cell(value);
    if (is_fresh || value.kind == stored.kind || stored.kind == ValueKind::NOTHING)
        value.kind = is_fresh ? stored.kind : value.kind;
    else if (value.kind == ValueKind::CHARACTERS || is_text)
        throw ExecutionError(kind_of(stored) + " stored among " + kind_of(value));
    else if (value.kind == ValueKind::TRUTHS)
        throw ExecutionError("numbers stored among truth values");
}

}  // namespace

ValuePointer element_at(const ValuePointer &value, const Indices &indices) {
    if (value->kind == ValueKind::RECORD && are_single(indices)) {
        for (const Index &index : indices) resolved(index, 1, Growth::REFUSED);
        return value;
    }
    if (!is_array(*value) && value->kind != ValueKind::CELL)
        throw ExecutionError("an index of " + kind_of(*value));
    if (indices.size() == 1) return by_one_index(*value, indices[0]);
    if (indices.size() != 2) throw ExecutionError("more than two indices");
    const Positions rows = resolved(indices[0], value->rows, Growth::REFUSED);
    const Positions columns = resolved(indices[1], value->columns, Growth::REFUSED);
    const std::vector<size_t> at = places(rows, columns, value->rows);
    if (value->kind == ValueKind::CELL && rows.is_single && columns.is_single)
        return value->elements[at[0]];
    return elements_at(*value, at, rows.at.size(), columns.at.size());
}

void assign_elements(Value &value, const Indices &indices, const ValuePointer &stored) {
    const bool is_single = are_single(indices);
    make_kind(value, *stored, is_single);
    const bool is_one = value.kind == ValueKind::CELL && (is_single || !is_array(*stored));
    static const Value ONE{ValueKind::NUMBERS, 1, 1, {0}};
    const bool is_spread = stored->kind == ValueKind::CELL && !is_single;
    const std::vector<size_t> at =
        grown_places(value, indices, is_one && !is_spread ? ONE : *stored);
    const size_t count = is_one && !is_spread ? 1 : count_of(*stored);
    if (count != 1 && count != at.size())
        throw ExecutionError(std::to_string(count) + " values for " + std::to_string(at.size()) +
                             " elements");
    for (size_t k = 0; k < at.size(); k++) {
        const size_t from = count == 1 ? 0 : k;
        if (value.kind != ValueKind::CELL)
            value.numbers[at[k]] = stored->numbers[from];
        else if (is_spread)
            value.elements[at[k]] = stored->elements[from];
        else
            value.elements[at[k]] =
                is_one ? stored : array(stored->kind, 1, 1, {stored->numbers[from]});
    }
}

ValuePointer &place_at(Value &value, const Indices &indices) {
    if (!are_single(indices)) throw ExecutionError("a part of several elements");
    make_cell(value);
    static const Value ONE{ValueKind::NUMBERS, 1, 1, {0}};
    return value.elements[grown_places(value, indices, ONE)[0]];
}

ValuePointer &field_of(Value &value, const std::string &name) {
    if (value.kind == ValueKind::NOTHING) value = Value{ValueKind::RECORD, 1, 1};
    if (value.kind != ValueKind::RECORD) throw ExecutionError("a field of " + kind_of(value));
    for (auto &field : value.fields)
        if (field.first == name) return field.second;
    value.fields.emplace_back(name, nullptr);  // it does not begin by a part
    return value.fields.back().second;
}

}  // namespace mtranslate::execution
