/* Deep and long programs in matlab: a translation or a message, on a small stack, and never more
 * text than the source deserves. */
#include <gtest/gtest.h>

#include <vector>

#include "tests/host_text.h"
#include "tests/matlab_run.h"
#include "tests/small_stack.h"

namespace mtranslate {

namespace {

constexpr char VARIABLES[] = "x = 1; c = {}; s.a = 1;\n";

/* What stands around and inside a piece that is put into itself. */
struct Form {
    std::string before, open, inside, close;

    std::string nested(int depth) const {
        return VARIABLES + before + repeated(open, depth) + inside + repeated(close, depth) + "\n";
    }
};

const std::vector<Form> Expressions = {
    {"y = ", "(1 + ", "1", ")"},
    {"y = ", "[1 ", "1", "]"},
    {"y = ", "{1, ", "1", "}"},
    {"y = ", "f(1, ", "1", ")"},
    {"y = ", "f(1 + ", "1", ")"},
    {"y = ", "x(", "1", ")"},
    {"y = ", "x(end - ", "1", ")"},
    {"y = ", "s.(", "1", ")"},
    {"y = ", "-", "1", ""},
    {"y = ", "x && f(", "1", ")"},
    {"y = ", "(x || ~", "f(1)", ")"},
    {"y = ", "@() f(", "1", ")"},
    {"y = ", "f(", "1", " == 1)^2"},
    {"y = ", "x(1, ", "1", ")'"},
    {"y = ", "c{", "1", "}{:}"},
    {"y = ", "x(", "1", ")(end - 1)"},
    {"y = ", "['a' f(", "1", ")]"},
    {"if f(", "1 + f(", "1", ")"},
    {"x(2) = ", "f(1).b(", "1", ")"},
    {"x(", "s(2).a(", "1", ")"},
    {"y = ", "f(1).b(end - ", "1", ")'.c"},
    {"y = ", "x(end - ", "1", ")'.c"},
    {"y = ", "{c{:}, ", "1", "}"},
    {"y = ", "@(t) t + ", "1", ""},
    {"y = ", "s.(", "1", ").a(1)"},
    {"y = ", "f(1).(", "1", ").a{1}'"},
    {"y = ", "x && (f(1) || ", "f(1)", ")"},

    {"[a, b] = f(", "f(1).a(end, ", "1", ")"},
    {"y = ", "[c{", "1", "}]"},
    {"s.(", "s.a.(", "1", ")"},
    {"y = ", "(-", "1", ")'"},
};

const std::vector<Form> Blocks = {
    {"", "if x\n", "y = 1;\n", "end\n"},
    {"", "if x, else\n", "y = 1;\n", "end\n"},
    {"", "if x, elseif x && f(1)\n", "y = 1;\n", "end\n"},
    {"", "for k = 1:3\n", "y = 1;\n", "end\n"},
    {"", "while x && f(1)\n", "y = 1;\n", "end\n"},
    {"", "do\n", "y = 1;\n", "until x\n"},
    {"", "switch x, case {1, 2}\n", "y = 1;\n", "end\n"},
    {"", "unwind_protect\n", "y = 1;\n", "unwind_protect_cleanup, f(1); end\n"},
    {"", "try\n", "y = 1;\n", "catch e, f(2), end\n"},
    {"", "function f\n", "y = 1;\n", "end\n"},
    {"", "if x, try\n", "y = 1;\n", "catch\nwhile f(1), f, end, end, end\n"},
    {"", "try, y = 2; catch e\n", "y = 1;\n", "end\n"},
};

/* The translation, and after it the codes of errors. */
std::string outcome(const std::string &source) {
    const MatlabRun run = run_matlab(source);
    std::string text = run.text.value_or("null");
    for (const NotedMessage &message : run.messages)
        if (severity_of(message.id) == SEVERITY_ERROR) text += MessageTable[message.id].code;
    return text;
}

void expect_depths(const Form &form) {
    SCOPED_TRACE(form.before + form.open);
    const std::string deep = on_small_stack([&] { return outcome(form.nested(190)); });
    EXPECT_EQ(form_error(deep), "");
    EXPECT_EQ(deep.find("MT114"), std::string::npos);
    EXPECT_LT(deep.size(), 10u << 20);
    on_small_stack([&] { return outcome(form.nested(395)); });
    const std::string too_deep = on_small_stack([&] { return outcome(form.nested(10000)); });
    EXPECT_TRUE(too_deep.ends_with("MT114")) << too_deep.substr(0, 200);
    EXPECT_EQ(on_small_stack([] { return outcome("x = 1"); }), "x := 1;\n");
}

TEST(Nesting, of_expressions_gives_a_translation_or_a_message) {
    for (const Form &form : Expressions) expect_depths(form);
}

TEST(Nesting, of_blocks_gives_a_translation_or_a_message) {
    for (const Form &form : Blocks) expect_depths(form);
}

/* Long sources of one piece after the other become texts of a length that grows as theirs. */
TEST(Nesting, long_rows_stay_long_rows) {
    const Form rows[] = {
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
    for (const Form &row : rows) {
        SCOPED_TRACE(row.before + row.close);
        const size_t once = outcome(row.nested(500)).size();
        const size_t twice = outcome(row.nested(1000)).size();
        EXPECT_GT(once, 500u);
        EXPECT_LT(twice, 3 * once);
    }
}

}  // namespace

}  // namespace mtranslate
