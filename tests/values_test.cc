/* What is known of the values of a program. */
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "diagnose/messages.h"
#include "driver/run.h"
#include "syntax/library/library_table.h"
#include "syntax/parse/parser.h"
#include "syntax/print_tree.h"
#include "syntax/trace/summaries.h"
#include "syntax/trace/trace_function.h"
#include "syntax/values/print_value.h"
#include "tests/generate.h"
#include "tests/small_stack.h"
#include "tests/translation.h"

namespace mtranslate {

namespace {

/* The program's own functions begin with my_, or are named deal and assert in a file of their own.
 */
Node *FirstOwn;

bool has_own(const Node *name) {
    for (const Node *node = FirstOwn; node; node = node->next)
        if (node->kind == NODE_FUNCTION && std::string(node->text) == name->text) return true;
    return false;
}

/* The script that the bare name s1 calls: text of the table's current row after %%. */
std::string ScriptText;
Node *Script;

Node *find_script(const Node *name) { return std::string(name->text) == "s1" ? Script : nullptr; }

Node *parsed(const std::string &text) {
    return parse_source(new_source(nullptr, text.c_str(), static_cast<uint32_t>(text.size())),
                        LANGUAGE_OCTAVE);
}

Node *own_definition(const Symbol *symbol) {
    if (symbol->definition) return symbol->definition;
    for (Node *node = FirstOwn; node; node = node->next)
        if (node->kind == NODE_FUNCTION && std::string(node->text) == symbol->name) return node;
    return nullptr;
}

void trace_file(Node *file) {
    FirstOwn = file->first_child;
    begin_summaries();
    for (Node *node = file->first_child; node; node = node->next)
        if (node->kind == NODE_FUNCTION) add_function(settle_function(node, {}));
    bool is_script = file->first_child && file->first_child->kind != NODE_FUNCTION;
    trace_functions({has_own, own_definition, nullptr, nullptr}, !is_script);
    if (is_script)
        trace_function(settle_script(file, {find_script, nullptr}),
                       {has_own, own_definition, nullptr, nullptr});
}

/* The tree of a program whose values have been traced, until release_run. */
Node *traced(const std::string &source) {
    begin_run();
    begin_messages();
    begin_syntax();
    const std::size_t bar = source.find("%%");
    Script = bar == std::string::npos ? nullptr : parsed(source.substr(bar + 2));
    Node *file = parsed(source.substr(0, bar));
    trace_file(file);
    return file;
}

const Node *last_expression(const Node *node) {
    const Node *last = nullptr;
    for (; node; node = node->next) {
        if (node->kind == NODE_EXPRESSION) last = node->first_child;
        if (const Node *inner = last_expression(first_child(node))) last = inner;
    }
    return last;
}

/* What is known of the last statement that is an expression. */
std::string last_value(const std::string &source) {
    const Node *expression = last_expression(traced(source)->first_child);
    std::string text = expression ? print_value(NewLongString(), expression->value) : "";
    release_run();
    return text;
}

TEST(Values, are_traced_through_statements) {
    for (const Row &row : short_rows(table("matlab_values")))
        EXPECT_EQ(last_value(row.source), row.expected) << row.source;
}

TEST(Values, of_the_library_are_found_by_name) {
    const std::string page =
        read_file(MTRANSLATE_SOURCE_DIR "/src/syntax/library/library_table.cc");
    static const std::regex row("\n    \\{\"(\\w+)\", ");
    std::string before;
    for (std::sregex_iterator at(page.begin(), page.end(), row), end; at != end; ++at) {
        const std::string name = (*at)[1];
        EXPECT_LT(before, name);
        const LibraryFunction *function = library_function(name.c_str());
        ASSERT_NE(function, nullptr) << name;
        EXPECT_EQ(function->name, name);
        EXPECT_EQ(library_function((name + "_").c_str()), nullptr);
        before = name;
    }
    EXPECT_EQ(before, "zeros");
}

/* A value has a kind, elements or none, and is held in a way; a variable may have none of these. */
bool has_form(Value value) {
    if (!kinds_of(value)) return (value & ~MAY_BE_MISSING) == 0;
    return may_be(value, MAY_BE_EMPTY | MAY_BE_FILLED) &&
           may_be(value, MAY_BE_SINGLE | MAY_BE_ARRAY);
}

void expect_forms(const Node *node) {
    for (; node; node = node->next) {
        EXPECT_TRUE(has_form(node->value)) << node->kind;
        expect_forms(first_child(node));
    }
}

/* The program with the values of a first or a second trace. */
std::string shown_values(const std::string &source) {
    Node *file = traced(source);
    expect_forms(file->first_child);
    std::string text = print_tree_of_values(NewLongString(), file);
    release_run();
    return text;
}

TEST(Values, are_found_for_every_program) {
    for (unsigned seed = 0; seed < 120; seed++) {
        const auto kind = static_cast<ProgramKind>(seed % 3);
        const std::string body = written(make_program(kind, seed), {});
        const bool is_script = kind != ProgramKind::FUNCTIONS;
        const std::string source = is_script ? "while f\n" + body + "x = y; y = x;\nend\n" : body;
        SCOPED_TRACE(source);
        EXPECT_EQ(shown_values(source), shown_values(source));
        if (HasFailure()) return;
    }
}

}  // namespace

}  // namespace mtranslate
