/* Conditions of the host, as stand after if, elif and while. */
#pragma once

#include "lower/lines/text_list.h"
#include "translate/operators.h"

/* What binds tighter comes later. */
enum TestLevel : uint8_t { TEST_OR, TEST_AND, TEST_NOT, TEST_ATOM };

/* A condition: a text, or the two sides of a relation, of single numbers. */
struct Test {
    const char *text;  /* null for a relation */
    TestLevel level;   /* a relation counts as an atom */
    bool has_opposite; /* the opposite relation is true where this one is not: no side is undefined
                        */
    bool is_flag;      /* left is a variable that holds 0 or 1, and right says which */
    uint8_t op;        /* OP_EQ to OP_GE */
    const char *left;
    const char *right;
};

/* true or false. */
Test constant_test(bool is_true);
/* Any other that is no relation. */
Test new_test(const char *text, TestLevel level = TEST_ATOM);
/* The host's test of a value: whether no element is zero. */
Test test_of_value(const char *value);
/* The same as text. */
const char *value_condition(const char *value);
/* left and right: host texts of single numbers; op: OP_EQ to OP_GE. */
Test new_relation(const char *left, int op, const char *right, bool has_opposite);
/* Of a count, which is a number always. */
Test count_test(const char *count, int op, int number);
/* Of a variable that holds 1, and else 0. */
Test flag_test(const char *name);
Test negate_test(const Test *test);
/* As text, in parentheses where it stands inside of what binds tighter than it. */
const char *test_text(const Test *test, TestLevel around = TEST_OR);

/* Conditions joined by and, or by or. At first {}. */
struct JoinedTests {
    TextList texts;
    Test only; /* while there is one */
    bool is_and;
};

void append_test(JoinedTests *joined, const Test *test);
/* Of one or more. */
Test join_tests(const JoinedTests *joined);

/* A relation as a value. */
mExpr *new_truth_value(const Test *relation);
/* A variable that holds 1, and else 0, as a value. */
mExpr *new_flag(const char *name);
/* A test as what a condition asks for; it has no text as a value. */
mExpr *new_tested_value(const Test *test);
/* The relation or test that such a value stands for; null for any other. */
const Test *relation_of(const mExpr *value);
/* Whether it is such a test, which has no text. */
bool is_test_alone(const mExpr *value);

/* left (a host name or form) compared with a number, op of Operator: as a value. */
mExpr *count_comparison(const char *left, int op, int number);
/* The same as a condition. */
const char *count_condition(const char *left, int op, int number);
/* The digits of a number, as a kept text. */
const char *number_text(int number);
