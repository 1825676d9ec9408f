/* The second front end: rows of MATLAB and the host text that it becomes. */
#include "tests/translation.h"

namespace mtranslate {

namespace {

constexpr char VARIABLES[] = "x = f(0); y = f(0); k = 1; c = {}; s.a = 0; h = @(t) t;";

// The translation, gaps included.
std::string lowered(const std::string &source) {
    StandInHost host;
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.equation(values.name("KeepGoing"), values.boolean(true))};
    return translate(host, "command", source, options);
}

// What a statement becomes behind assignments that make variables of the names in it.
std::string lowered_behind_variables(const std::string &source) {
    return lowered(VARIABLES + source).substr(lowered(VARIABLES).size());
}

void expect_statements(const std::string &table) {
    for (const Row &row : short_rows(table))
        EXPECT_EQ(lowered_behind_variables(row.source), row.expected + ";\n") << row.source;
}

TEST(Lowering, expressions) { expect_statements(table("matlab_expressions")); }

TEST(Lowering, references_and_literals) { expect_statements(table("matlab_references")); }

TEST(Lowering, sides_that_are_left_alone) { expect_statements(table("matlab_short_circuits")); }

TEST(Lowering, statements) {
    for (const Row &row : side_by_side(table("matlab_statements")))
        EXPECT_EQ(lowered_behind_variables(row.source), row.expected) << row.source;
}

TEST(Lowering, comments_and_layout) {
    for (const Row &row : side_by_side(table("matlab_comments")))
        EXPECT_EQ(lowered(row.source), row.expected) << row.source;
}

}  // namespace

}  // namespace mtranslate
