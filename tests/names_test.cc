/* Which names of a function are variables, and what is known of them. */
#include <gtest/gtest.h>

#include <string>

#include "diagnose/messages.h"
#include "driver/run.h"
#include "syntax/names/names.h"
#include "syntax/parse/parser.h"
#include "tests/translation.h"

namespace mtranslate {

namespace {

/* A variable with signs: a number for a parameter, = when the body copies it, > for an output,
 * ! when it holds a function, + when nested functions share it. */
std::string shown(const Symbol *symbol) {
    std::string text = symbol->name;
    if (symbol->position > 0) text += std::to_string(symbol->position);
    if (is_copied_parameter(symbol)) text += "=";
    if (symbol->flags & SYMBOL_OUTPUT) text += ">";
    if (holds_function(symbol)) text += "!";
    if (symbol->flags & SYMBOL_SHARED) text += "+";
    return text;
}

/* "x, y | f": the variables of a scope, then its functions, each in order. */
std::string shown(const Scope *scope) {
    std::string variables;
    std::string functions;
    for (const Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        std::string &list = is_variable(symbol) ? variables : functions;
        list += (list.empty() ? "" : " ") + shown(symbol);
    }
    if (functions.empty()) return variables;
    return variables + (variables.empty() ? "| " : " | ") + functions;
}

/* "(x)", and after it what is captured; a copy of its own in brackets. */
std::string shown_anonymous(const Scope *scope) {
    std::string text = "@(" + shown(scope) + ")";
    for (const Capture *at = next_captured(scope, nullptr); at; at = next_captured(scope, at)) {
        const std::string name = symbol_of(at)->name;
        text += needs_binding(scope, symbol_of(at)) ? " [" + name + "]" : " " + name;
    }
    return text;
}

/* Functions, anonymous functions and the loops that keep their variable, in source order. */
void show_nodes(const Node *node, std::string &text) {
    for (; node; node = node->next) {
        if (node->kind == NODE_FUNCTION)
            text += "; " + std::string(node->text) + "(" + shown(scope_of(node)) + ")";
        if (node->kind == NODE_ANONYMOUS) text += "; " + shown_anonymous(scope_of(node));
        if (node->kind == NODE_FOR && has_flag(node, KEEPS_VARIABLE))
            text += "; keeps " + std::string(node->first_child->text);
        show_nodes(first_child(node), text);
    }
}

bool is_statement(const Node *node) {
    return node->kind != NODE_FUNCTION && node->kind != NODE_COMMENT;
}

std::string names(const std::string &source) {
    begin_run();
    begin_messages();
    begin_syntax();
    Node *file = parse_source(
        new_source(nullptr, source.c_str(), static_cast<uint32_t>(source.size())), LANGUAGE_MATLAB);
    std::string text;
    if (is_statement(file->first_child)) text = "; " + shown(settle_script(file, {}));
    for (Node *node = file->first_child; node; node = node->next)
        if (node->kind == NODE_FUNCTION) settle_function(node, {});
    show_nodes(file->first_child, text);
    release_run();
    return text.substr(2);
}

TEST(Names, are_settled_from_the_whole_function) {
    for (const Row &row : short_rows(table("matlab_names")))
        EXPECT_EQ(names(row.source), row.expected) << row.source;
}

}  // namespace

}  // namespace mtranslate
