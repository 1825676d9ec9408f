// Conditions of the host.
#include "lower/conditions/host_conditions.h"

#include <assert.h>
#include <stdio.h>

#include "lower/lines/lines.h"
#include "support/allocation.h"

namespace {

constexpr int EXPR_TRUTH = 41;  // no builder's

struct TruthValue {
    mExpr expr;
    Test relation;
};

const char *const Signs[] = {"=", "<>", "<", "<=", ">", ">="};
const uint8_t Opposites[] = {OP_NE, OP_EQ, OP_GE, OP_GT, OP_LE, OP_LT};

constexpr char YES[] = "true";
constexpr char NO[] = "false";

const char *relation_text(const Test *relation) {
    return form_text("%s %s %s", {relation->left, Signs[relation->op - OP_EQ], relation->right});
}

}  // namespace

Test new_test(const char *text, TestLevel level) { return {text, level, false, false, 0, "", ""}; }

Test constant_test(bool is_true) { return new_test(is_true ? YES : NO); }

Test test_of_value(const char *value) {
    return new_test(form_text("ArrayTools[AllNonZero](%s)", {value}));
}

const char *value_condition(const char *value) {
    Test test = test_of_value(value);
    return test_text(&test);
}

Test new_relation(const char *left, int op, const char *right, bool has_opposite) {
    assert(op >= OP_EQ && op <= OP_GE);
    bool is_equality = op == OP_EQ || op == OP_NE;
    uint8_t sign = static_cast<uint8_t>(op);
    return {nullptr, TEST_ATOM, has_opposite || is_equality, false, sign, left, right};
}

Test count_test(const char *count, int op, int number) {
    return new_relation(count, op, number_text(number), true);
}

Test flag_test(const char *name) {
    Test test = count_test(name, OP_EQ, 1);
    test.is_flag = true;
    return test;
}

constexpr char NOT[] = "not ";

Test negate_test(const Test *test) {
    if (test->text == YES || test->text == NO) return constant_test(test->text == NO);
    if (test->is_flag) return count_test(test->left, OP_EQ, 0);
    if (test->has_opposite) {
        Test opposite = *test;
        opposite.op = Opposites[test->op - OP_EQ];
        return opposite;
    }
    bool is_negated_atom = test->level == TEST_NOT && test->text[sizeof NOT - 1] != '(';
    if (is_negated_atom) return new_test(test->text + sizeof NOT - 1);
    return new_test(form_text("%s%s", {NOT, test_text(test, TEST_NOT)}), TEST_NOT);
}

const char *test_text(const Test *test, TestLevel around) {
    const char *text = test->text ? test->text : relation_text(test);
    return test->level < around ? form_text("(%s)", {text}) : text;
}

void append_test(JoinedTests *joined, const Test *test) {
    if (!joined->texts.first) joined->only = *test;
    append_text(&joined->texts, test_text(test, joined->is_and ? TEST_AND : TEST_OR));
}

Test join_tests(const JoinedTests *joined) {
    assert(joined->texts.first);
    if (!joined->texts.first->next) return joined->only;
    const char *separator = joined->is_and ? " and " : " or ";
    return new_test(separated_texts(&joined->texts, separator),
                    joined->is_and ? TEST_AND : TEST_OR);
}

mExpr *new_truth_value(const Test *relation) {
    assert(!relation->text);
    mExpr left = {EXPR_NAME, relation->left, NOT_SCALAR, nullptr};
    mExpr right = {EXPR_NAME, relation->right, NOT_SCALAR, nullptr};
    TruthValue *value = AllocRecord<TruthValue>();
    value->expr = *new_operator2(relation->op, &left, &right);
    value->expr.kind = EXPR_TRUTH;
    value->relation = *relation;
    return &value->expr;
}

mExpr *new_flag(const char *name) {
    TruthValue *value = AllocRecord<TruthValue>();
    *value = {{EXPR_TRUTH, name, NOT_SCALAR, nullptr}, flag_test(name)};
    return &value->expr;
}

mExpr *new_tested_value(const Test *test) {
    TruthValue *value = AllocRecord<TruthValue>();
    *value = {{EXPR_TRUTH, "", NOT_SCALAR, nullptr}, *test};
    return &value->expr;
}

const Test *relation_of(const mExpr *value) {
    if (value->kind != EXPR_TRUTH) return nullptr;
    return &reinterpret_cast<const TruthValue *>(value)->relation;
}

bool is_test_alone(const mExpr *value) { return value->kind == EXPR_TRUTH && !*value->text; }

mExpr *count_comparison(const char *left, int op, int number) {
    Test test = count_test(left, op, number);
    return new_truth_value(&test);
}

const char *count_condition(const char *left, int op, int number) {
    Test test = count_test(left, op, number);
    return test_text(&test);
}

const char *number_text(int number) {
    char digits[16];
    snprintf(digits, sizeof digits, "%d", number);
    return form_text("%s", {digits});
}
