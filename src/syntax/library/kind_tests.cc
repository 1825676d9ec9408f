// What is true of the kinds of values.
#include "syntax/library/kind_tests.h"

#include "support/row_index.h"

// clang-format off
static constexpr KindTest Functions[] = {
    {"ischar",             MAY_BE_TEXT,     MAY_BE_TEXT},
    {"isstr",              MAY_BE_TEXT,     MAY_BE_TEXT},
    {"iscell",             MAY_BE_CELL,     MAY_BE_CELL},
    {"iscellstr",          0,               MAY_BE_CELL},
    {"isstruct",           MAY_BE_RECORD,   MAY_BE_RECORD},
    {"islogical",          MAY_BE_TRUTH,    MAY_BE_TRUTH},
    {"isnumeric",          MAY_BE_NUMBER,   MAY_BE_NUMBER},
    {"isfloat",            0,               MAY_BE_NUMBER},
    {"isinteger",          0,               MAY_BE_NUMBER},
    {"is_function_handle", MAY_BE_FUNCTION, MAY_BE_FUNCTION},
};

static constexpr KindTest Classes[] = {
    {"char",            MAY_BE_TEXT,     MAY_BE_TEXT},
    {"cell",            MAY_BE_CELL,     MAY_BE_CELL},
    {"struct",          MAY_BE_RECORD,   MAY_BE_RECORD},
    {"logical",         MAY_BE_TRUTH,    MAY_BE_TRUTH},
    {"function_handle", MAY_BE_FUNCTION, MAY_BE_FUNCTION},
    {"numeric",         MAY_BE_NUMBER,   MAY_BE_NUMBER},
    {"double",          0,               MAY_BE_NUMBER},
    {"single",          0,               MAY_BE_NUMBER},
    {"float",           0,               MAY_BE_NUMBER},
    {"integer",         0,               MAY_BE_NUMBER},
};
// clang-format on

static constexpr auto FunctionIndex = index_rows(Functions);
static constexpr auto ClassIndex = index_rows(Classes);

const KindTest *find_kind_test(RowName function) {
    return find_row(Functions, FunctionIndex, function);
}

const KindTest *find_class_test(RowName name) { return find_row(Classes, ClassIndex, name); }

const char *class_of_kinds(Value kinds) {
    if (!kinds || kinds == MAY_BE_NUMBER) return nullptr;
    for (const KindTest &row : Classes)
        if (row.yes == kinds) return row.name;
    return nullptr;
}
