/* The second front end: rows of MATLAB and the host text that it becomes. */
#include <gtest/gtest.h>

#include <optional>
#include <regex>

#include "tests/translation.h"

namespace mtranslate {

namespace {

constexpr char VARIABLES[] = "x = f(0); y = f(0); k = 1; c = {}; s.a = f(0); h = @(t) t;";

// The translation, gaps included.
std::string lowered(StandInHost &host, const std::string &source) {
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.equation(values.name("KeepGoing"), values.boolean(true))};
    return translate(host, "command", source, options);
}

std::string lowered(const std::string &source) {
    StandInHost host;
    return lowered(host, source);
}

// What a statement becomes after assignments that make variables of the names in it.
std::string lowered_after_variables(const std::string &source) {
    const std::string variables = lowered(VARIABLES);
    const std::string all = lowered(VARIABLES + source);
    const std::size_t at = all.find(variables);  // after the procedures
    return at == all.npos ? all : all.substr(at + variables.size());
}

void expect_statements(const std::string &table) {
    for (const Row &row : short_rows(table))
        EXPECT_EQ(lowered_after_variables(row.source), row.expected + ";\n") << row.source;
}

TEST(Lowering, expressions) { expect_statements(table("matlab_expressions")); }

TEST(Lowering, references_and_literals) { expect_statements(table("matlab_references")); }

TEST(Lowering, sides_that_are_left_alone) { expect_statements(table("matlab_short_circuits")); }

TEST(Lowering, functions_of_the_library) {
    expect_statements(table("matlab_library"));
    EXPECT_EQ(lowered(R"(x = sprintf('a\n\t\\');)"), "x := \"a\n\t\\\\\";\n");
}

TEST(Lowering, statements) {
    for (const Row &row : side_by_side(table("matlab_statements")))
        EXPECT_EQ(lowered_after_variables(row.source), row.expected) << row.source;
}

TEST(Lowering, comments_and_layout) {
    for (const Row &row : side_by_side(table("matlab_comments")))
        EXPECT_EQ(lowered(row.source), row.expected) << row.source;
}

// "TranslateName(f)" as f, "TranslateFunction(f, a)" as f(a).
std::string asked_for(const std::string &source) {
    StandInHost host;
    host.record_calls();
    lowered(host, source);
    std::string asked;
    for (const std::string &call : host.take_calls()) asked += (asked.empty() ? "" : " ") + call;
    asked = std::regex_replace(asked, std::regex("TranslateName\\((\\w+)\\)"), "$1");
    return std::regex_replace(asked, std::regex("TranslateFunction\\((\\w+)(, )?"), "$1(");
}

TEST(Lowering, asks_the_host_in_source_order) {
    for (const Row &row : short_rows(table("matlab_questions")))
        EXPECT_EQ(asked_for(row.source), row.expected) << row.source;
}

// The calls about which the host is asked, each with the results that it is to give, and handles.
std::string results_asked_for(const std::string &source) {
    StandInHost host;
    std::string asked;
    const auto note = [&asked](std::string_view name, const std::string &results) {
        asked += (asked.empty() ? "" : " ") + std::string(name) + ' ' + results;
    };
    host.translate_other_functions([&note](std::string_view name, const Texts &) {
        const bool varies = RequestedResults == HOST_RESULTS_VARY;
        note(name, varies ? "vary" : std::to_string(RequestedResults));
        return std::nullopt;
    });
    host.translate_other_names([&note](std::string_view name) {
        if (RequestedResults != HOST_RESULTS_UNKNOWN) note(name, "handle");
        return std::nullopt;
    });
    lowered(host, source);
    return asked;
}

TEST(Lowering, shows_the_host_how_many_results_a_call_gives) {
    for (const Row &row : short_rows(table("matlab_results")))
        EXPECT_EQ(results_asked_for(row.source), row.expected) << row.source;
}

// How the lines of blocks get into an answer.
TEST(Lowering, puts_blocks_into_the_forms_of_the_host) {
    StandInHost host;
    host.translate_function("try", [](const Texts &arguments) -> std::optional<std::string> {
        return "attempt\n  " + arguments[0] + "\nor " + arguments[2] + "( " + arguments[1] +
               " ) end";
    });
    for (const Row &row : side_by_side(table("matlab_block_forms")))
        EXPECT_EQ(lowered(host, row.source), row.expected) << row.source;
    host.translate_function("try", [](const Texts &arguments) {
        return arguments[0] + arguments[0];  // refused: texts would double at each depth
    });
    EXPECT_EQ(lowered(host, "try, f; end"),
              "# not translated: errors in the lines below are not caught\nf();\n");
}

TEST(Lowering, takes_what_the_host_answers) {
    StandInHost host;
    host.translate_name("pi", "Pi");
    host.translate_name("x", "x_");
    host.translate_name("varargout", "va");
    for (const char *keyword :
         {"try", "horzcat", "getfield", "setfield", "setdiff", "eval", "clear"})
        host.translate_function(keyword, std::string("my_") + keyword + "(A)");
    host.translate_function("max", "ArrayTools:-Max(A)");
    for (const Row &row : side_by_side(table("matlab_answers")))
        EXPECT_EQ(lowered(host, row.source), row.expected) << row.source;
    host.translate_function("try", "attempt(\n  A,\nB);");
    EXPECT_EQ(lowered(host, "if x, try, f; end, end"),
              "if ArrayTools[AllNonZero](x_) then\n  attempt(\n    A,\n  B);\nend if;\n");
}

}  // namespace

}  // namespace mtranslate
