/* The scanner alone: sources as compact token streams. A token with a value shows it in
 * parentheses; where positions matter, "@line:column" stands after each token, as the position
 * variables are when it is returned. */
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <string_view>

#include "driver/run.h"
#include "lexer/brackets.h"
#include "lexer/scanner.h"
#include "lexer/semantic_value.h"
#include "lexer/source_files.h"
#include "tests/translation.h"

namespace mtranslate {

namespace {

const char *const NAMES[] = {"LEXERROR", "LHS[",   "]LHS", "for",   "end",    "if",    "elseif",
                             "else",     "switch", "case", "other", "global", "while", "function",
                             "return",   "STRING", "ID",   "INT",   "REAL",   "IMAG",  "COMMENT",
                             "NEWLINE",  "OR",     "AND",  "NE",    "EQ",     "GE",    "GT",
                             "LE",       "LT",     ".\\",  "./",    ".*",     "?",     "?",
                             "NOT",      "TRANS",  ".'",   "^",     ".^"};

enum Positions { WITHOUT_POSITIONS, WITH_POSITIONS };

std::string shown(int token, Positions positions) {
    std::string text(1, static_cast<char>(token));
    if (token >= LEXERROR) text = NAMES[token - LEXERROR];
    if (token >= STRING && token <= COMMENT) text.append("(").append(yylval.text).append(")");
    if (positions == WITH_POSITIONS)
        text.append("@")
            .append(std::to_string(SourceLine))
            .append(":")
            .append(std::to_string(SourcePos));
    return text;
}

/* Operands whose end the parser tells the fixer; the scanner itself does for names and integers. */
bool ends_operand(int token) {
    return token == STRING || token == REAL || token == IMAGINARY || token == TRANSPOSE ||
           token == DOT_TRANSPOSE || token == ')' || token == '}' || token == ']';
}

/* The tokens of the scanner's input; the end of the input stays the end. */
std::string read_tokens(Positions positions) {
    std::string stream;
    while (const int token = yylex()) {
        stream += (stream.empty() ? "" : " ") + shown(token, positions);
        if (ends_operand(token)) fixinput(token);
    }
    EXPECT_EQ(yylex(), 0);
    EXPECT_EQ(yylex(), 0);
    return stream;
}

std::string tokens(const std::string &text, int delimiter = 0,
                   Positions positions = WITHOUT_POSITIONS) {
    begin_run();
    initLexer();
    yy_scan_string(text.c_str());
    begin_source();
    BracketDelimiter = delimiter;
    std::string stream = read_tokens(positions);
    EXPECT_EQ(TokenOffset, static_cast<long>(text.size())) << text;
    release_run();
    return stream;
}

/* What read gives with the text in a file as the scanner's input. */
std::string with_file(const std::string &text, int delimiter,
                      const std::function<std::string()> &read) {
    const SourceFiles files;
    files.write("f.m", text);
    begin_run();
    initLexer();
    EXPECT_EQ(open_source(files.path("f.m").c_str()), 0);
    yyrestart();
    begin_source();
    BracketDelimiter = delimiter;
    std::string result = read();
    release_run();
    return result;
}

std::string file_tokens(const std::string &text, int delimiter = 0,
                        Positions positions = WITHOUT_POSITIONS) {
    return with_file(text, delimiter, [positions] { return read_tokens(positions); });
}

/* Both ways. */
void expect_tokens(const std::string &table, int delimiter, Positions positions) {
    for (const Row &row : short_rows(table)) {
        EXPECT_EQ(tokens(row.source, delimiter, positions), row.expected) << row.source;
        EXPECT_EQ(file_tokens(row.source, delimiter, positions), row.expected) << row.source;
    }
}

TEST(Scanner, settles_what_needs_context) { expect_tokens(table("tokens"), 0, WITHOUT_POSITIONS); }

TEST(Scanner, makes_commas_of_blanks_in_literals) {
    expect_tokens(table("literal_commas"), IN_LITERAL, WITHOUT_POSITIONS);
    EXPECT_EQ(tokens("a (1) b{2} c -d", IN_TARGETS),
              "ID(a) ( INT(1) , ) , ID(b) { INT(2) , } , ID(c) , - ID(d)");
    for (const int delimiter : {0, int{IN_PARENTHESES}, int{IN_BRACES}})
        EXPECT_EQ(tokens("1 -2 a (b) 'c' 'd'", delimiter),
                  "INT(1) - INT(2) ID(a) ( ID(b) ) STRING(c) STRING(d)");
}

TEST(Scanner, reads_every_byte) {
    using namespace std::string_literals;
    EXPECT_EQ(tokens("a\x01\x7f\x80\xff'"), "ID(a) . . . . LEXERROR");
    EXPECT_EQ(tokens("a \x80 1)", IN_LITERAL), "ID(a) , . INT(1) , )");
    EXPECT_EQ(file_tokens("a\0b\0\0 'c\0d'"s), "ID(a) . ID(b) . . STRING(c)");
    EXPECT_EQ(file_tokens("[a \0] = [\0 1]"s), "LHS[ ID(a) . ]LHS = [ . INT(1) ]");
    EXPECT_EQ(file_tokens("[a]=\0b"s), "LHS[ ID(a) ]LHS = . ID(b)");
    EXPECT_EQ(file_tokens("[a]\0b"s), "[ ID(a) ] . ID(b)");
    EXPECT_EQ(file_tokens("a \0 1\0 2"s, IN_LITERAL), "ID(a) , . INT(1) , . INT(2)");
}

TEST(Scanner, counts_lines_and_columns) {
    expect_tokens(table("positions"), 0, WITH_POSITIONS);
    // blanks given up for a comma do not count, the comma does
    EXPECT_EQ(tokens("1   2  -  3   .\\ 4", IN_LITERAL, WITH_POSITIONS),
              "INT(1)@1:1 ,@1:2 INT(2)@1:3 -@1:4 INT(3)@1:7 .\\@1:10 INT(4)@1:12");
}

TEST(Scanner, never_splits_a_token_between_refills) {
    const std::string sample =
        "abcdef 12.5e3 'it''s' % note\r\n[a(1) -2 ...\n, b] = c{1.*2} ~= d.'\n\r\f[1 2\n3 'x' 'y']";
    for (size_t padding = 8190 - sample.size(); padding < 8196; padding += 3) {
        for (const char *filler : {" ", "a", "\n", "x "}) {
            std::string text;
            while (text.size() < padding) text += filler;
            text += sample;
            for (const int delimiter : {0, int{IN_LITERAL}})
                EXPECT_EQ(file_tokens(text, delimiter, WITH_POSITIONS),
                          tokens(text, delimiter, WITH_POSITIONS))
                    << padding;
        }
    }
    const std::string comment = "%" + std::string(40000, 'c') + "\n";
    EXPECT_EQ(file_tokens("a" + comment + "b"), "ID(a) COMMENT(" + comment + ") ID(b)");
    const std::string name(40000, 'n');
    EXPECT_EQ(file_tokens("['" + name + "',\n" + name + "]=" + name),
              "LHS[ STRING(" + name + ") , NEWLINE ID(" + name + ") ]LHS = ID(" + name + ")");
}

/* SourceText and PrevLine at each token after a line end, "|" between them. */
std::string line_texts(const std::string &text, int delimiter) {
    return with_file(text, delimiter, [] {
        std::string seen;
        std::string lines;
        while (yylex()) {
            const std::string now = std::string(SourceText) + "|" + PrevLine;
            if (now != seen) lines += now + "\n";
            seen = now;
        }
        return lines;
    });
}

void expect_whole_lines(const std::string &name) {
    const std::string line = "\nb + " + name + " c";
    EXPECT_EQ(line_texts(name + line + "\nd", 0), "|\n" + line + "|\n\nd|" + line + "\n");
}

TEST(Scanner, keeps_whole_copies_of_two_lines) {
    // neither a token's end, nor a blank given up for a comma, nor a comment cuts a line
    EXPECT_EQ(line_texts("a b\nc 1  2 % n\n3 4\r\n5 'x\\y' -1\f6", IN_LITERAL),
              "|\n"
              "\nc 1  2 % n|\n"
              "\r\n5 'x\\y' -1\f6|\nc 1  2 % n\n"
              "\f6|\r\n5 'x\\y' -1\f6\n");
    EXPECT_EQ(line_texts("a\n\n\rb c", 0), "|\n\n\n\rb c|\n");
    // nor a refill, wherever it falls
    for (const int length : {8185, 8190, 8192, 16380, 16384, 40000})
        expect_whole_lines(repeated("a", length));
}

}  // namespace

}  // namespace mtranslate
