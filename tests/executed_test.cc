/* What translations mean: programs, and the values that they leave when the translation is
 * executed. */
#include <gtest/gtest.h>

#include <sstream>

#include "tests/executed.h"
#include "tests/execution/machine.h"
#include "tests/matlab_run.h"

namespace mtranslate {

namespace {

/* Lines "x = 1" as "x = 1; y = 2". */
std::string on_one_line(const std::string &values) {
    std::istringstream lines(values);
    std::string text;
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) text += (text.empty() ? "" : "; ") + line;
    return text;
}

TEST(Execution, statements_leave_their_values) {
    for (const Row &row : short_rows(table("executed_statements")))
        EXPECT_EQ(executed(row.source), row.expected) << row.source;
}

TEST(Execution, programs_leave_their_values) {
    for (const char *name : {"executed_programs", "executed_everyday"})
        for (const Row &row : side_by_side(table(name)))
            EXPECT_EQ(executed(row.source), on_one_line(row.expected)) << row.source;
}

}  // namespace

}  // namespace mtranslate
