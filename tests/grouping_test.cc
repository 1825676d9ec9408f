/* Parentheses of host text: that its grouping needs each pair, but for those that are listed. */
#include <gtest/gtest.h>

#include <algorithm>
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

/* A pair that changes nothing, and the tokens beside it. */
struct NeedlessPair {
    std::string before, inner, after;
};

/* Pairs that are written where they are not needed, and why. */
struct Exception {
    const char *reason;
    bool (*holds)(const NeedlessPair &pair);
    int count = 0;
};

bool is_one_of(const Texts &texts, const std::string &text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

std::vector<Exception> exceptions() {
    return {
        {"a whole argument, index or bound of a range that is an operation: the builders, which "
         "classic shares, put it there",
         [](const NeedlessPair &pair) {
             return is_one_of({"(", ",", ".."}, pair.before) &&
                    is_one_of({")", ",", ".."}, pair.after);
         }},
        {"what a function of the library becomes, which is one operand wherever it stands",
         [](const NeedlessPair &pair) {
             static const Texts FORMS = {"1./0", "0./0", "2^(-52)",    "y.2",
                                         "x+~1", "1+2",  "(x+~1)^~.5", "qxrp_x+~qxrp_y"};
             return is_one_of(FORMS, pair.inner);
         }}};
}

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

void expect_needed_pairs(const std::string &host_text, std::vector<Exception> &exceptions) {
    const HostProgram program = execution::read_host_text(host_text);
    const std::vector<Token> &tokens = program.tokens;
    for (const Grouping &pair : program.groupings) {
        if (is_needed(program, pair)) continue;
        const NeedlessPair needless{pair.open > 0 ? tokens[pair.open - 1].text : "",
                                    text_of(tokens, pair.open + 1, pair.close),
                                    tokens[pair.close + 1].text};
        const auto found =
            std::find_if(exceptions.begin(), exceptions.end(),
                         [&](const Exception &each) { return each.holds(needless); });
        if (found != exceptions.end())
            found->count++;
        else
            ADD_FAILURE() << "line " << tokens[pair.open].line << ": (" << needless.inner
                          << ") needs no parentheses in\n"
                          << host_text;
    }
}

/* Without the messages after a translation. */
std::string host_text_of(const Row &row) {
    static const std::regex message(R"((^|\n)[^\n#]*:\d+ MT[^]*)");
    return std::regex_replace(row.expected, message, "\n");
}

TEST(Grouping, needs_its_parentheses) {
    std::vector<Exception> listed = exceptions();
    for (const char *name :
         {"matlab_expressions", "matlab_references", "matlab_short_circuits", "matlab_library"})
        for (const Row &row : short_rows(table(name))) expect_needed_pairs(row.expected, listed);
    for (const char *name : {"matlab_statements", "matlab_procedures", "matlab_programs",
                             "matlab_comments", "matlab_classes"})
        for (const Row &row : side_by_side(table(name)))
            expect_needed_pairs(host_text_of(row), listed);
    for (const Exception &each : listed) EXPECT_GT(each.count, 0) << each.reason << ": is mended";
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
    std::vector<Exception> listed = exceptions();
    std::mt19937 random(1);
    for (int program = 0; program < 60; program++) {
        std::string source = "a = 2; b = 3; x = f(1); y = [1 2];\n";
        for (int k = 0; k < 20; k++)
            source +=
                "z = " + made_up_expression(random, {"a", "b", "x", "y", "2", "x(a)"}) + ";\n";
        expect_needed_pairs(run_matlab(source).text.value_or(""), listed);
    }
}

}  // namespace

}  // namespace mtranslate
