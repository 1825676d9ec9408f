/* Expressions: each row becomes a statement of its own, as a command and in a file. */
#include <gtest/gtest.h>

#include "tests/translation.h"

namespace mtranslate {

namespace {

void expect_expressions(const std::string &table, const Row &before = {"", ""}) {
    expect_translations(short_rows(table), before, ";\n");
}

TEST(Expressions, leaves) { expect_expressions(table("leaves")); }

TEST(Expressions, operators_by_what_is_known_to_be_scalar) {
    expect_expressions(table("operators"));
}

TEST(Expressions, precedence_and_parentheses) { expect_expressions(table("precedence")); }

TEST(Expressions, matrix_and_cell_literals) { expect_expressions(table("literals")); }

TEST(Expressions, long_of_everything) { expect_expressions(table("long")); }

/* The text of a chain grows in place until the space on one of its sides is used up, which its
 * length decides. */
TEST(Expressions, chains_of_any_length) {
    StandInHost host;
    for (int i = 0; i < 150; i++) {
        const std::string name(static_cast<size_t>(i % 15 + 1), 'b');
        std::string source = name;
        std::string expected = name;
        for (int k = 0; k < i / 15; k++) {
            source.append(" + ").append(name);
            expected.append(" +~ ").append(name);
        }
        for (int k = 0; k < 12; k++) {
            source.append(" & ").append(name);
            expected.insert(0, "evalhf(zip(`and`,eval(").append("),eval(").append(name);
            expected += ")))";
        }
        EXPECT_EQ(translate(host, "command", source), expected + ";\n");
    }
}

TEST(Expressions, calls_and_indices) {
    expect_expressions(table("calls"));
    expect_expressions(table("indices"), {"x = 1;", "x := 1;\n"});
    expect_expressions("sin(1:2) => sin(1..2)   sin on => sin(\"on\")",
                       {"sin = 1;", "sin := 1;\n"});
}

TEST(Expressions, brace_indices) { expect_expressions(table("brace_indices")); }

TEST(Expressions, assignments) {
    expect_expressions(table("assignments"));
    // the targets of several values are known variables, and count as a use of ArrayTools
    for (const Row &row : short_rows(table("targets"))) {
        expect_translation("command", row.source, row.expected);
        expect_file_translation(row.source, std::string("with(ArrayTools):\n") + row.expected);
    }
}

/* Only what a list of targets looks like is taken for one. */
TEST(Expressions, answers_of_the_host_as_targets) {
    const Row rows[] = {{"ArrayTools:-Concatenate(2, p, q)", "(p, q) := 1;\n"},
                        {"ArrayTools:-Concatenate(2, )", "() := 1;\n"},
                        {"ArrayTools:-Concatenate(2,)", "ArrayTools:-Concatenate(2,) := 1;\n"},
                        {"ArrayTools:-Concatenate(2,", "ArrayTools:-Concatenate(2, := 1;\n"}};
    for (const Row &row : rows) {
        StandInHost host;
        host.translate_function("f", row.source);
        EXPECT_EQ(translate(host, "command", "f(1) = 1"), row.expected);
    }
}

}  // namespace

}  // namespace mtranslate
