/* Parentheses of host text: that its grouping needs each pair. */
#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <vector>

#include "tests/execution/tree.h"
#include "tests/matlab_run.h"

namespace mtranslate {

namespace {

using execution::Grouping;
using execution::HostProgram;
using execution::Token;

std::string text_of(const std::vector<Token> &tokens, size_t first, size_t end) {
    std::string text;
    for (size_t k = first; k < end; k++) text += tokens[k].text;
    return text;
}

std::string shape_of_tokens(const std::vector<Token> &tokens) {
    return shape_of(execution::read_host_expression(tokens).get());
}

/* Whether the expression around a pair is another, or none, without it. */
bool is_needed(const HostProgram &program, const Grouping &pair) {
    const auto start = program.tokens.begin();
    const std::vector<Token> with(start + long(pair.first), start + long(pair.end));
    std::vector<Token> without = with;
    without.erase(without.begin() + long(pair.close - pair.first));
    without.erase(without.begin() + long(pair.open - pair.first));
    try {
        return shape_of_tokens(without) != shape_of_tokens(with);
    } catch (const execution::ExecutionError &) {
        return true;
    }
}

void expect_needed_pairs(const std::string &host_text) {
    const HostProgram program = execution::read_host_text(host_text);
    const std::vector<Token> &tokens = program.tokens;
    for (const Grouping &pair : program.groupings) {
        if (is_needed(program, pair)) continue;
        ADD_FAILURE() << "line " << tokens[pair.open].line << ": ("
                      << text_of(tokens, pair.open + 1, pair.close) << ") needs no parentheses in\n"
                      << host_text;
    }
}

/* Without the messages after a translation. */
std::string host_text_of(const Row &row) {
    static const std::regex message(R"((^|\n)[^\n#]*:\d+ MT[^]*)");
    return std::regex_replace(row.expected, message, "\n");
}

TEST(Grouping, needs_its_parentheses) {
    for (const char *name :
         {"matlab_expressions", "matlab_references", "matlab_short_circuits", "matlab_library"})
        for (const Row &row : short_rows(table(name))) expect_needed_pairs(row.expected);
    for (const char *name : {"matlab_statements", "matlab_procedures", "matlab_programs",
                             "matlab_comments", "matlab_classes"})
        for (const Row &row : side_by_side(table(name))) expect_needed_pairs(host_text_of(row));
}

/* Operators and signs in a row, without parentheses. */
std::string made_up_expression(std::mt19937 &random, const Texts &operands) {
    static const Texts SIGNS = {" + ",   " - ", " * ", " / ", " .* ", " ./ ",
                                " .\\ ", "^",   ".^",  " < ", " == ", " & "};
    static const Texts PREFIXES = {"", "", "", "-", "+", "~", "- -"};
    std::string text;
    for (unsigned left = 2 + random() % 4; left > 0; left--) {
        text += PREFIXES[random() % PREFIXES.size()] + operands[random() % operands.size()];
        if (left > 1) text += SIGNS[random() % SIGNS.size()];
    }
    return text;
}

TEST(Grouping, needs_the_parentheses_that_it_adds) {
    std::mt19937 random(1);
    for (int program = 0; program < 60; program++) {
        std::string source = "a = 2; b = 3; x = f(1); y = [1 2];\n";
        for (int k = 0; k < 20; k++)
            source +=
                "z = " + made_up_expression(random, {"a", "b", "x", "y", "2", "x(a)"}) + ";\n";
        expect_needed_pairs(run_matlab(source).text.value_or(""));
    }
}

}  // namespace

}  // namespace mtranslate
