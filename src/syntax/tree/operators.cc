// The operators of the source language.
#include "syntax/tree/operators.h"

#include "support/row_index.h"

// clang-format off
constexpr OperatorRow OperatorRows[OPERATOR_COUNT] = { // ORDER OPERATORS
    {OPERATOR_NONE,            "",   LEVEL_NONE,       nullptr},
    {OPERATOR_OR_ELSE,         "||", LEVEL_OR_ELSE,    nullptr},
    {OPERATOR_AND_THEN,        "&&", LEVEL_AND_THEN,   nullptr},
    {OPERATOR_OR,              "|",  LEVEL_OR,         "or"},
    {OPERATOR_AND,             "&",  LEVEL_AND,        "and"},
    {OPERATOR_LESS,            "<",  LEVEL_COMPARISON, "lt"},
    {OPERATOR_LESS_EQUAL,      "<=", LEVEL_COMPARISON, "le"},
    {OPERATOR_EQUAL,           "==", LEVEL_COMPARISON, "eq"},
    {OPERATOR_NOT_EQUAL,       "~=", LEVEL_COMPARISON, "ne"},
    {OPERATOR_GREATER_EQUAL,   ">=", LEVEL_COMPARISON, "ge"},
    {OPERATOR_GREATER,         ">",  LEVEL_COMPARISON, "gt"},
    {OPERATOR_COLON,           ":",  LEVEL_COLON,      "colon"},
    {OPERATOR_PLUS,            "+",  LEVEL_SUM,        "plus"},
    {OPERATOR_MINUS,           "-",  LEVEL_SUM,        "minus"},
    {OPERATOR_TIMES,           "*",  LEVEL_PRODUCT,    "mtimes"},
    {OPERATOR_DIVIDE,          "/",  LEVEL_PRODUCT,    "mrdivide"},
    {OPERATOR_LEFT_DIVIDE,     "\\", LEVEL_PRODUCT,    "mldivide"},
    {OPERATOR_DOT_TIMES,       ".*", LEVEL_PRODUCT,    "times"},
    {OPERATOR_DOT_DIVIDE,      "./", LEVEL_PRODUCT,    "rdivide"},
    {OPERATOR_DOT_LEFT_DIVIDE, ".\\", LEVEL_PRODUCT,    "ldivide"},
    {OPERATOR_NOT,             "~",  LEVEL_PREFIX,     "not"},
    {OPERATOR_POWER,           "^",  LEVEL_POWER,      "mpower"},
    {OPERATOR_DOT_POWER,       ".^", LEVEL_POWER,      "power"},
    {OPERATOR_TRANSPOSE,       "'",  LEVEL_POWER,      "ctranspose"},
    {OPERATOR_DOT_TRANSPOSE,   ".'", LEVEL_POWER,      "transpose"},
};
// clang-format on

namespace {

struct NamedOperator {
    const char *name;
    OperatorId id;
};

struct NamedOperators {
    NamedOperator rows[OPERATOR_COUNT];
};

constexpr NamedOperators named_operators() {
    NamedOperators named = {};
    for (const OperatorRow &row : OperatorRows)
        named.rows[row.id] = {row.function ? row.function : "", row.id};
    return named;
}

constexpr NamedOperators Named = named_operators();
constexpr auto NamedIndex = index_rows(Named.rows);

}  // namespace

OperatorId operator_of(RowName function) {
    const NamedOperator *named = find_row(Named.rows, NamedIndex, function);
    return named ? named->id : OPERATOR_NONE;
}
