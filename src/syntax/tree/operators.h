/* Operators of the source language: a row each, and what the parser reads of it. */
#pragma once

#include <stdint.h>

#include "support/row_index.h"

/* ORDER OPERATORS: the table in operators.cc has a row for each. */
enum OperatorId : uint8_t {
    OPERATOR_NONE,
    OPERATOR_OR_ELSE,  /* || */
    OPERATOR_AND_THEN, /* && */
    OPERATOR_OR,
    OPERATOR_AND,
    OPERATOR_LESS,
    OPERATOR_LESS_EQUAL,
    OPERATOR_EQUAL,
    OPERATOR_NOT_EQUAL, /* ~= and != */
    OPERATOR_GREATER_EQUAL,
    OPERATOR_GREATER,
    OPERATOR_COLON,
    OPERATOR_PLUS, /* binary and prefix */
    OPERATOR_MINUS,
    OPERATOR_TIMES,
    OPERATOR_DIVIDE,
    OPERATOR_LEFT_DIVIDE,
    OPERATOR_DOT_TIMES,
    OPERATOR_DOT_DIVIDE,
    OPERATOR_DOT_LEFT_DIVIDE,
    OPERATOR_NOT,   /* prefix ~ and ! */
    OPERATOR_POWER, /* ^ and ** */
    OPERATOR_DOT_POWER,
    OPERATOR_TRANSPOSE, /* postfix ' */
    OPERATOR_DOT_TRANSPOSE,
    OPERATOR_COUNT
};

/* Levels of precedence, loosest first. Operators of one level group to the left. */
enum OperatorLevel : uint8_t {
    LEVEL_NONE,
    LEVEL_OR_ELSE,
    LEVEL_AND_THEN,
    LEVEL_OR,
    LEVEL_AND,
    LEVEL_COMPARISON,
    LEVEL_COLON,
    LEVEL_SUM,
    LEVEL_PRODUCT,
    LEVEL_PREFIX,
    LEVEL_POWER /* with the transposes */
};

struct OperatorRow {
    OperatorId id;
    const char *spelling; /* as MATLAB writes it */
    OperatorLevel level;  /* as a binary or postfix operator; of ~, as a prefix */
    const char *function; /* that means the same, and that a class may have as a method; null for
                             none; of + and - as binary operators */
};

extern const OperatorRow OperatorRows[OPERATOR_COUNT];

/* The operator that the function means, or OPERATOR_NONE; function: not empty. */
OperatorId operator_of(RowName function);
