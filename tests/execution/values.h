/* Values of the host's language: arrays of two sides, cells, records, functions. */
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/execution/tree.h"

namespace mtranslate::execution {

struct Frame;

enum class ValueKind {
    NUMBERS,
    TRUTHS,     /* an array of 0 and 1, as comparisons of arrays make it */
    CHARACTERS, /* a text is one row of them, or without elements */
    NOTHING,    /* no elements, of no kind yet */
    CELL,       /* elements of any kind; an array of records is one of them, too */
    RECORD,
    FUNCTION,
    CONDITION, /* true or false: what an if takes */
    LIST,      /* several values: arguments or results */
    SIDES      /* the index ranges of an array; its numbers are their ends */
};

struct Value;
using ValuePointer = std::shared_ptr<Value>;

struct Value {
    ValueKind kind = ValueKind::NOTHING;
    size_t rows = 0, columns = 0;
    std::vector<double> numbers = {};        /* by columns; of a condition one */
    std::vector<ValuePointer> elements = {}; /* of a cell, by columns, and of a list; never null */
    std::vector<std::pair<std::string, ValuePointer>> fields = {};
    std::string name = "";                /* of a function of the host */
    const Procedure *procedure = nullptr; /* of other functions; the program owns it */
    Frame *surrounding = nullptr;         /* of a procedure in a procedure; the machine owns it */
    bool is_word = false;                 /* a truth value that is true or false itself */
    bool is_byte = false;                 /* numbers of an integer class: whole, from -128 to 127 */
};

/* An index: every position, a range from first to last (none for the end), or a value's. */
struct Index {
    enum Kind { ALL, SPAN, VALUE } kind;
    long first = 1;
    std::optional<long> last = {};
    ValuePointer value = nullptr;
};
using Indices = std::vector<Index>;

/* The numbers from first to last by a step, the last one included up to a rounding error. Throws
 * where there is no end. */
std::vector<double> numbers_from(double first, double last, double step);

ValuePointer number(double number);
ValuePointer condition(bool is_true);
/* What holds a condition: a truth value, which an if takes as well. Others are as they are. */
ValuePointer held(const ValuePointer &value);
ValuePointer text(const std::string &characters);
ValuePointer array(ValueKind kind, size_t rows, size_t columns, std::vector<double> numbers);
ValuePointer row_of(std::vector<double> numbers);
ValuePointer list(std::vector<ValuePointer> values);
ValuePointer cell(size_t rows, size_t columns, std::vector<ValuePointer> elements);

/* Numbers, truth values, characters or nothing. */
bool is_array(const Value &value);
bool is_single_number(const Value &value);
/* What a word of an error says. */
std::string kind_of(const Value &value);
/* Of an array, a cell, a record or a function. Throws for others. */
size_t count_of(const Value &value);
double number_of(const Value &value);
/* The same, or a truth value, which counts as 0 or 1. */
double bound_of(const Value &value);
long whole_number_of(const Value &value);
std::string text_of(const Value &value);

/* A value that shares nothing with the given one. */
ValuePointer deep_copy(const ValuePointer &value);

/* x(i), x(i, j). A single position of a cell gives the element itself. Throws where there is none.
 */
ValuePointer element_at(const ValuePointer &value, const Indices &indices);
/* x(i) := stored, in place; grows x where needed. */
void assign_elements(Value &value, const Indices &indices, const ValuePointer &stored);
/* The place of a cell's element at a single position; grows the cell where needed. */
ValuePointer &place_at(Value &value, const Indices &indices);
/* The place of a record's field, which comes into being; nothing becomes a record. */
ValuePointer &field_of(Value &value, const std::string &name);

/* Rows above each other (side 1), or beside each other (2). */
ValuePointer joined(const std::vector<ValuePointer> &values, int side);
ValuePointer transposed(const Value &value);

/* The numbers, of that class. */
ValuePointer bytes(const Value &value);
/* The operators: + - * / ^ of each two elements; `.` of matrices, `^` of single values; relations,
 * and, or. */
ValuePointer each_two(char operation, const Value &left, const Value &right);
ValuePointer product(const Value &left, const Value &right);
ValuePointer power(const Value &base, const Value &exponent);
ValuePointer compared(const std::string &relation, const Value &left, const Value &right);
ValuePointer negated(const Value &value);

/* A value as MATLAB writes it, truth values as numbers: 3, [1 2; 3 4], 'ab', {1, 'a'},
 * struct(f = 1), @; [] for whatever has no elements. */
std::string written(const Value &value);

}  // namespace mtranslate::execution
