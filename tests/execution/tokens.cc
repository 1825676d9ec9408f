// The scanner of host text.
#include "tests/execution/tokens.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>

namespace mtranslate::execution {

namespace {

constexpr std::array<std::string_view, 22> WORDS = {
    "proc", "end", "if",   "then",  "elif",   "else",  "while",  "do",   "for", "from", "to",
    "by",   "in",  "next", "break", "return", "local", "global", "uses", "and", "or",   "not"};

// Longer signs in front of those that they begin with.
constexpr std::array<std::string_view, 30> SIGNS = {
    ":=", ":-", "..", "+~", "-~", "*~", "/~", "^~", "<>", "<=", ">=", "+", "-", "*", "/",
    "^",  ".",  "<",  ">",  "=",  "(",  ")",  "[",  "]",  "{",  "}",  ",", ";", ":", "|"};

bool is_digit(char byte) { return std::isdigit(static_cast<unsigned char>(byte)) != 0; }

bool is_name_byte(char byte) {
    return byte == '_' || std::isalnum(static_cast<unsigned char>(byte)) != 0;
}

struct Scanner {
    std::string_view text;
    size_t at = 0;
    int line = 1;

    char byte(size_t ahead = 0) const { return at + ahead < text.size() ? text[at + ahead] : '\0'; }

    [[noreturn]] void fail(const std::string &what) const {
        throw ExecutionError("line " + std::to_string(line) + ": " + what);
    }

    void skip_blanks_and_comments() {
        for (; at < text.size(); at++) {
            if (byte() == '#')
                while (at < text.size() && byte() != '\n') at++;
            if (byte() == '\n')
                line++;
            else if (byte() != ' ')
                return;
        }
    }

    // Two points after digits are a range.
    Token number() {
        const size_t start = at;
        while (is_digit(byte())) at++;
        if (byte() == '.' && byte(1) != '.') at++;
        while (is_digit(byte())) at++;
        const size_t sign = byte(1) == '-' || byte(1) == '+' ? 2 : 1;
        if (byte() == 'e' && is_digit(byte(sign))) {
            at += sign;
            while (is_digit(byte())) at++;
        }
        if (is_name_byte(byte())) fail("a name directly after a number");
        const std::string digits(text.substr(start, at - start));
        return {TokenKind::NUMBER, digits, std::strtod(digits.c_str(), nullptr), line};
    }

    // A backslash stands in front of a quote and of a backslash.
    Token in_quotes(TokenKind kind) {
        const char quote = byte();
        Token token{kind, "", 0, line};
        for (at++; byte() != quote; at++) {
            if (at >= text.size() || byte() == '\n') fail("an open quote");
            if (kind == TokenKind::TEXT && byte() == '\\') {
                at++;
                if (byte() != '"' && byte() != '\\') fail("an escape of unknown meaning");
            }
            token.text += byte();
        }
        at++;
        return token;
    }

    Token name() {
        const size_t start = at;
        while (is_name_byte(byte())) at++;
        const std::string_view found = text.substr(start, at - start);
        const bool is_word = std::find(WORDS.begin(), WORDS.end(), found) != WORDS.end();
        return {is_word ? TokenKind::WORD : TokenKind::NAME, std::string(found), 0, line};
    }

    Token sign() {
        for (const std::string_view sign : SIGNS)
            if (text.substr(at).starts_with(sign)) {
                at += sign.size();
                return {TokenKind::SIGN, std::string(sign), 0, line};
            }
        fail(std::string("no token begins with ") + byte());
    }

    Token token() {
        skip_blanks_and_comments();
        if (at >= text.size()) return {TokenKind::END, "", 0, line};
        if (is_digit(byte()) || (byte() == '.' && is_digit(byte(1)))) return number();
        if (byte() == '"') return in_quotes(TokenKind::TEXT);
        if (byte() == '\'' || byte() == '`') return in_quotes(TokenKind::QUOTED);
        return is_name_byte(byte()) ? name() : sign();
    }
};

}  // namespace

std::vector<Token> host_tokens(std::string_view text) {
    Scanner scanner{text};
    std::vector<Token> tokens;
    do tokens.push_back(scanner.token());
    while (tokens.back().kind != TokenKind::END);
    return tokens;
}

}  // namespace mtranslate::execution
