// The operators of the source language.
#include "syntax/tree/operators.h"

// clang-format off
const OperatorRow OperatorRows[OPERATOR_COUNT] = { // ORDER OPERATORS
    {OPERATOR_NONE,            "",   LEVEL_NONE},
    {OPERATOR_OR_ELSE,         "||", LEVEL_OR_ELSE},
    {OPERATOR_AND_THEN,        "&&", LEVEL_AND_THEN},
    {OPERATOR_OR,              "|",  LEVEL_OR},
    {OPERATOR_AND,             "&",  LEVEL_AND},
    {OPERATOR_LESS,            "<",  LEVEL_COMPARISON},
    {OPERATOR_LESS_EQUAL,      "<=", LEVEL_COMPARISON},
    {OPERATOR_EQUAL,           "==", LEVEL_COMPARISON},
    {OPERATOR_NOT_EQUAL,       "~=", LEVEL_COMPARISON},
    {OPERATOR_GREATER_EQUAL,   ">=", LEVEL_COMPARISON},
    {OPERATOR_GREATER,         ">",  LEVEL_COMPARISON},
    {OPERATOR_COLON,           ":",  LEVEL_COLON},
    {OPERATOR_PLUS,            "+",  LEVEL_SUM},
    {OPERATOR_MINUS,           "-",  LEVEL_SUM},
    {OPERATOR_TIMES,           "*",  LEVEL_PRODUCT},
    {OPERATOR_DIVIDE,          "/",  LEVEL_PRODUCT},
    {OPERATOR_LEFT_DIVIDE,     "\\", LEVEL_PRODUCT},
    {OPERATOR_DOT_TIMES,       ".*", LEVEL_PRODUCT},
    {OPERATOR_DOT_DIVIDE,      "./", LEVEL_PRODUCT},
    {OPERATOR_DOT_LEFT_DIVIDE, ".\\", LEVEL_PRODUCT},
    {OPERATOR_NOT,             "~",  LEVEL_PREFIX},
    {OPERATOR_POWER,           "^",  LEVEL_POWER},
    {OPERATOR_DOT_POWER,       ".^", LEVEL_POWER},
    {OPERATOR_TRANSPOSE,       "'",  LEVEL_POWER},
    {OPERATOR_DOT_TRANSPOSE,   ".'", LEVEL_POWER},
};
// clang-format on
