/* Deep and long programs in matlab: a translation or a message, on a small stack, and never more
 * text than the source deserves. */
#include <gtest/gtest.h>

#include "tests/growth/constructs.h"
#include "tests/host_text.h"
#include "tests/matlab_run.h"
#include "tests/small_stack.h"

namespace mtranslate {

namespace {

/* The translation, and after it the codes of errors. */
std::string outcome(const std::string &source) {
    const MatlabRun run = run_matlab(source);
    std::string text = run.text.value_or("null");
    for (const NotedMessage &message : run.messages)
        if (severity_of(message.id) == SEVERITY_ERROR) text += MessageTable[message.id].code;
    return text;
}

void expect_depths(const Construct &form) {
    SCOPED_TRACE(source_of(form, 1));
    const std::string deep = on_small_stack([&] { return outcome(source_of(form, 190)); });
    EXPECT_EQ(form_error(deep), "");
    EXPECT_EQ(deep.find("MT114"), std::string::npos);
    EXPECT_LT(deep.size(), 10u << 20);
    on_small_stack([&] { return outcome(source_of(form, 395)); });
    const std::string too_deep = on_small_stack([&] { return outcome(source_of(form, 10000)); });
    EXPECT_TRUE(too_deep.ends_with("MT114")) << too_deep.substr(0, 200);
    EXPECT_EQ(on_small_stack([] { return outcome("x = 1"); }), "x := 1;\n");
}

TEST(Nesting, of_expressions_gives_a_translation_or_a_message) {
    for (const Construct &form : NESTED_EXPRESSIONS) expect_depths(form);
    expect_depths({"y = ", "x(end - ", "1", ")'.c"});  // its cost grows faster than its depth
}

TEST(Nesting, of_blocks_gives_a_translation_or_a_message) {
    for (const Construct &form : NESTED_BLOCKS) expect_depths(form);
}

/* Long sources of one piece after the other become texts of a length that grows as theirs. */
TEST(Nesting, long_rows_stay_long_rows) {
    const Construct rows[] = {
        {"y = 1", "", "", " + f(1)"},
        {"y = x", "", "", "'"},
        {"y = x", "", "", ".a(1)"},
        {"y = s", "", "", ".a(end - 1)"},
        {"y = x", "", "", "(2:end-1)"},
        {"y = c", "", "", "{end}{:}"},
        {"y = x", "", "", " && f(1)"},
        {"y = [1", "", "", ", 'a'; 1"},
        {"y = 1", "", "", "; y = y^2"},
        {"if x", "", "", "\nelseif f(1)"},
        {"switch x", "", "", "\ncase 1"},
        {"f(1", "", "", ", @(t) t + x"},
        {"", "", "", "function f, end\n"},
        {"y = 1", "", "", " % c\n"},
        {"y = 1 ...\n", "", "", "% c ...\n"},
        {"y = 1", "", "", "...\n + 1"},
        {"", "try, y = 2; catch e\n", "y = 1;\n", "end\n"},
        {"s", "(end + 1).a", " = 1", ""},
        {"s", "(end).a", "(end) = []", ""},
        {"c", "{end + 1}", " = 1", ""},
    };
    for (const Construct &row : rows) {
        SCOPED_TRACE(source_of(row, 1));
        const size_t once = outcome(source_of(row, 500)).size();
        const size_t twice = outcome(source_of(row, 1000)).size();
        EXPECT_GT(once, 500u);
        EXPECT_LT(twice, 3 * once);
    }
}

}  // namespace

}  // namespace mtranslate
