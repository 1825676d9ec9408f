/* MATLAB sources as tokens, as trees and as messages. */
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "diagnose/messages.h"
#include "driver/run.h"
#include "syntax/parse/file_kinds.h"
#include "syntax/parse/parser.h"
#include "syntax/print_tree.h"
#include "syntax/scan/scanner.h"
#include "syntax/scan/spellings.h"
#include "syntax/scan/syntax_errors.h"
#include "tests/translation.h"

namespace mtranslate {

namespace {

/* A run around what reads a source, without a host. */
template <typename Read>
std::string with_source(const std::string &text, const Read &read) {
    begin_run();
    begin_messages();
    begin_syntax();
    std::string result =
        read(new_source(nullptr, text.c_str(), static_cast<uint32_t>(text.size())));
    release_run();
    return result;
}

std::string upper(std::string word) {
    for (char &c : word) c = static_cast<char>(toupper(c));
    return word;
}

std::string source_text(uint32_t start, uint32_t end) {
    return {Scan.text + start, Scan.text + end};
}

std::string shown_number() {
    const std::string digits =
        std::string(Current.text) + (Current.flags & IS_IMAGINARY ? "i" : "");
    return Current.type ? Current.type + ("(" + digits + ")") : digits;
}

/* A token as its text, with signs for what has none: | and / for line ends, ? for a bad token.
 * Keywords are in capitals, comments in < >, those from inside a statement after all in << >>. */
std::string shown_token() {
    switch (Current.kind) {
        case TOKEN_BAD: return "?";
        case TOKEN_NEWLINE: return "|";
        case TOKEN_ROW_END: return "/";
        case TOKEN_COMMA: return ",";
        case TOKEN_STRING:
            return Current.flags & IS_DOUBLE_QUOTED ? "\"" + std::string(Current.text) + "\""
                                                    : "'" + std::string(Current.text) + "'";
        case TOKEN_FIELD: return "." + std::string(Current.text);
        case TOKEN_NUMBER: return shown_number();
        case TOKEN_TRANSPOSE:
        case TOKEN_OPERATOR: return OperatorRows[Current.op].spelling;
        default: break;
    }
    const std::string text = source_text(Current.start, Current.end);
    if (Current.kind == TOKEN_COMMENT) return "<" + text + ">";
    return is_keyword(Current.kind) ? upper(text) : text;
}

std::string tokens(Source *source, SourceLanguage language) {
    begin_errors(source);
    begin_scan(source, language);
    std::string stream;
    for (advance(); Current.kind != TOKEN_END_OF_FILE; advance()) {
        stream += (stream.empty() ? "" : " ") + shown_token();
        Failed = false;
    }
    for (const Node *comment = Scan.comments.first; comment; comment = comment->next)
        stream += " <<" + std::string(comment->text) + ">>";
    return stream;
}

std::string tree(Source *source, SourceLanguage language) {
    LongString text = print_tree(NewLongString(), parse_source(source, language));
    std::string printed(text);
    printed = std::regex_replace(printed, std::regex("\n\n +"), " / ");
    printed = std::regex_replace(printed, std::regex("\n *"), " ");
    return printed.substr(strlen("(file "), printed.size() - strlen("(file )"));
}

/* "line:column-column code text", or without the range what stands at the end of a line. */
std::string messages(Source *source, SourceLanguage language) {
    parse_source(source, language);
    std::string lines;
    for (const Message *message = FirstMessage; message; message = message->next) {
        const Position place = place_of(message);
        lines += (lines.empty() ? "" : " & ") + std::to_string(place.line) + ":" +
                 std::to_string(place.column);
        if (message->length > 0) lines += "-" + std::to_string(place.column + message->length - 1);
        lines += " " + std::string(MessageTable[message->id].code) + " " + message->text;
    }
    return lines;
}

using Reading = std::string (*)(Source *, SourceLanguage);

std::string read(const std::string &text, Reading reading, SourceLanguage language) {
    return with_source(text, [&](Source *source) { return reading(source, language); });
}

void expect_rows(const std::string &name, Reading reading, SourceLanguage language) {
    for (const Row &row : short_rows(table(name)))
        EXPECT_EQ(read(row.source, reading, language), row.expected) << row.source;
}

TEST(Syntax, makes_tokens) { expect_rows("matlab_tokens", tokens, LANGUAGE_MATLAB); }
TEST(Syntax, makes_trees) { expect_rows("matlab_trees", tree, LANGUAGE_MATLAB); }
TEST(Syntax, makes_trees_of_octave) { expect_rows("octave_trees", tree, LANGUAGE_OCTAVE); }

/* By the first tokens where they suffice, and by the tree. */
std::string kind_of_file(Source *source, SourceLanguage language) {
    const char *name = intern("f");
    const bool is_script = is_script_source(source, name, language);
    const Node *file = parse_source(source, language);
    EXPECT_EQ(is_script_file(file, name, source->errors > 0, language), is_script) << source->text;
    return is_script ? "script" : "function";
}

TEST(Syntax, tells_scripts_from_functions) {
    expect_rows("matlab_scripts", kind_of_file, LANGUAGE_MATLAB);
    EXPECT_EQ(read("function g\nend\nx = 1;", kind_of_file, LANGUAGE_OCTAVE), "function");
}

/* A comment %N% in every place that there is, in the order of N. */
const char COMMENTED[] =
    "%0%\n"
    "function [a, ... %1%\n"
    "    b] = f(x, ... 2%\n"
    "    y) % %3%\n"
    "  #4%\n"
    "\n"
    "  %5%\n"
    "  arguments %6%\n"
    "    x = 1 % %7%\n"
    "    %8%\n"
    "  end % %9%\n"
    "  for k = [1, ... %10%\n"
    "      2] % %11%\n"
    "    if x ... %12%\n"
    "        > 1, a = 1; % %13%\n"
    "    elseif y ... %14%\n"
    "        < 2 % %15%\n"
    "      hold on % %16%\n"
    "    else %17%\n"
    "      %18%\n"
    "    end %19%\n"
    "    %20%\n"
    "  end %21%\n"
    "  switch x %22%\n"
    "    %23%\n"
    "    case {1, %24%\n"
    "          2} %25%\n"
    "      %26%\n"
    "    otherwise %27%\n"
    "  end %28%\n"
    "  try %29%\n"
    "    a = {1, 2 %30%\n"
    "      %31%\n"
    "      %{\n"
    "      32%\n"
    "      %}\n"
    "      3}; %33%\n"
    "  catch e %34%\n"
    "  end %35%\n"
    "  while x, global y %36%\n"
    "  end\n"
    "  z = f(1, %37%\n"
    "    @(x) x); %38%\n"
    "%{\n"
    "39%\n"
    "%40%\n"
    "%}\n"
    "  x = [1 2 %41%\n"
    "    ) 3 %42%\n"
    "    4]; %43%\n"
    "  if x ) %44%\n"
    "    y = 1; %45%\n"
    "  end %46%\n"
    "end %47%\n"
    "%48%\n"
    "%49%";
constexpr int COMMENTS = 50;

void collect_comments(const Node *node, std::vector<int> *numbers) {
    for (const Node *child = first_child(node); child; child = child->next) {
        const size_t digit =
            child->kind == NODE_COMMENT ? std::string(child->text).find_first_of("0123456789") : 0;
        if (child->kind == NODE_COMMENT) numbers->push_back(atoi(child->text + digit));
        collect_comments(child, numbers);
    }
}

TEST(Syntax, keeps_every_comment_once) {
    const Reading numbers = [](Source *source, SourceLanguage language) {
        std::vector<int> found;
        collect_comments(parse_source(source, language), &found);
        std::sort(found.begin(), found.end());
        std::string text;
        for (const int number : found) text += std::to_string(number) + " ";
        return text;
    };
    std::string all;
    for (int i = 0; i < COMMENTS; i++) all += std::to_string(i) + " ";
    EXPECT_EQ(read(COMMENTED, numbers, LANGUAGE_MATLAB), all);
}

/* A number inside depth openings. */
std::string nested(const std::string &open, const std::string &close, int depth) {
    return repeated(open, depth) + "1" + repeated(close, depth);
}

TEST(Syntax, limits_nesting) {
    const std::pair<std::string, std::string> forms[] = {
        {"(1 + ", ")"}, {"if x, ", ", end"}, {"[", "]"}, {"f(", ")"},  {"@() ", ""},
        {"x.(", ")"},   {"x{", "}"},         {"-", ""},  {"1:1:", ""}, {"", "'(1)"}};
    for (const auto &[open, close] : forms) {
        const std::string head = open.starts_with("if") ? "" : "x = ";
        EXPECT_EQ(read(head + nested(open, close, 399), messages, LANGUAGE_MATLAB), "") << open;
        const std::string found =
            read(head + nested(open, close, 10000) + "\ny = )", messages, LANGUAGE_MATLAB);
        EXPECT_TRUE(std::regex_match(
            found, std::regex("1:[0-9-]+ MT114 brackets and blocks are nested more than 400 deep "
                              "& 2:5-5 MT101 .*")))
            << open << found;
    }
    const std::string broad = "x = 1" + repeated(" + 1", 100000) + "\nif x" +
                              repeated("\nelseif x", 100000) + "\nend\ny = a" +
                              repeated("(1).b", 100000);
    EXPECT_EQ(read(broad, messages, LANGUAGE_MATLAB), "");
}

std::string errors_in(const std::string &text) { return read(text, messages, LANGUAGE_MATLAB); }

TEST(Syntax, takes_any_byte_in_strings_and_comments) {
    const std::string valid = "\t\v\f\r\n !#%&'*+,-./:;<=>@^|\\_";
    for (int code = 0; code < 256; code++) {
        const std::string byte(1, static_cast<char>(code));
        if (isalnum(code) || valid.find(byte) != std::string::npos) continue;
        EXPECT_NE(errors_in("x = a" + byte + "b;"), "") << code;
        EXPECT_EQ(errors_in("x = 1 %" + byte + "a\ny = 2"), "") << code;
        EXPECT_EQ(errors_in("x = 'a" + byte + "b'; y = 3"), "") << code;
    }
}

/* Rows in order, and the example of each error raises it alone. */
TEST(Syntax, explains_messages) {
    std::string last_code;
    for (int i = 0; i < MESSAGE_COUNT; i++) {
        const MessageRow &row = MessageTable[i];
        EXPECT_EQ(row.id, i);
        EXPECT_LT(last_code, row.code);
        last_code = row.code;
        EXPECT_EQ(find_message(row.code), &row);
        EXPECT_EQ(find_message(row.name), &row);
        if (row.severity != SEVERITY_ERROR || !row.example) continue;
        const std::string found = errors_in(row.example);
        EXPECT_NE(found.find(row.code), std::string::npos) << found;
        EXPECT_EQ(found.find(" & "), std::string::npos) << found;
    }
    EXPECT_EQ(find_message("mt101"), &MessageTable[UNEXPECTED_TOKEN]);
    EXPECT_EQ(find_message("MT100"), nullptr);
}

TEST(Syntax, reports_errors) {
    expect_rows("matlab_messages", messages, LANGUAGE_MATLAB);
    expect_rows("octave_messages", messages, LANGUAGE_OCTAVE);
}

}  // namespace

}  // namespace mtranslate
