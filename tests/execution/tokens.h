/* Host text as tokens. */
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace mtranslate::execution {

/* Host text that cannot be read, that has a form of unknown meaning, or that stops with an error.
 */
struct ExecutionError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class TokenKind {
    NUMBER,
    TEXT,   /* in double quotes; its characters, without quotes and backslashes */
    QUOTED, /* in single or back quotes, without them */
    NAME,
    WORD, /* a word of the language, which is no name */
    SIGN, /* an operator, a bracket or a separator */
    END   /* after the last token */
};

struct Token {
    TokenKind kind = TokenKind::END;
    std::string text;
    double number = 0;
    int line = 1; /* from 1 */
};

/* The tokens of a text without its comments, END after them. Throws ExecutionError. */
std::vector<Token> host_tokens(std::string_view text);

}  // namespace mtranslate::execution
