/* Tokens of a MATLAB source. */
#pragma once

#include <stdint.h>

#include "syntax/tree/operators.h"

enum TokenKind : uint8_t {
    TOKEN_END_OF_FILE,
    TOKEN_BAD,     /* what could not be read, and whatever follows until the parser recovers */
    TOKEN_NEWLINE, /* one line end or more, outside of brackets */
    TOKEN_ROW_END, /* a line end directly in [ ] or { } */
    TOKEN_COMMENT, /* outside of brackets: from % or # to the line's end, or the line of a block */
    TOKEN_SEMICOLON,
    TOKEN_COMMA, /* also of no length: the blank between two elements */
    /* what may end an operand: a quote directly after it transposes */
    TOKEN_NAME,      /* text: interned */
    TOKEN_NUMBER,    /* text: as in NODE_NUMBER */
    TOKEN_STRING,    /* text: as in NODE_STRING */
    TOKEN_FIELD,     /* .name; text: interned */
    TOKEN_END_INDEX, /* end inside brackets */
    TOKEN_CLOSE_PAREN,
    TOKEN_CLOSE_BRACKET,
    TOKEN_CLOSE_BRACE,
    TOKEN_TRANSPOSE, /* op: ' or .' */
    /* what may not */
    TOKEN_CLOSE_PARAMETERS, /* the ) of @( ) */
    TOKEN_OPEN_PAREN,
    TOKEN_OPEN_BRACKET,
    TOKEN_OPEN_BRACE,
    TOKEN_DOT_PAREN, /* .( */
    TOKEN_AT,
    TOKEN_QUESTION,
    TOKEN_OPERATOR,  /* op: a binary operator, perhaps used as a prefix */
    TOKEN_NOT,       /* ~ or ! */
    TOKEN_ASSIGN,    /* = */
    TOKEN_OP_ASSIGN, /* assigned: + of += */
    TOKEN_INCREMENT, /* assigned: + of ++, - of --; at the end of a statement */
    TOKEN_STEP,      /* the same in Octave, anywhere else */
    /* keywords; text: the spelling. Openers of blocks that an end closes first */
    TOKEN_IF,
    TOKEN_FOR,
    TOKEN_PARFOR,
    TOKEN_WHILE,
    TOKEN_SWITCH,
    TOKEN_TRY,
    TOKEN_UNWIND,
    TOKEN_SPMD,
    TOKEN_FUNCTION,
    TOKEN_CLASSDEF,
    TOKEN_GLOBAL,
    TOKEN_PERSISTENT,
    TOKEN_BREAK,
    TOKEN_CONTINUE,
    TOKEN_RETURN,
    /* what ends the statements of a block */
    TOKEN_ELSEIF,
    TOKEN_ELSE,
    TOKEN_CASE,
    TOKEN_OTHERWISE,
    TOKEN_CATCH,
    TOKEN_CLEANUP,
    TOKEN_UNTIL, /* made by the parser of a name */
    TOKEN_END,
    TOKEN_END_IF,
    TOKEN_END_FOR,
    TOKEN_END_PARFOR,
    TOKEN_END_WHILE,
    TOKEN_END_SWITCH,
    TOKEN_END_TRY,
    TOKEN_END_UNWIND,
    TOKEN_END_FUNCTION,
    TOKEN_KINDS
};

enum TokenFlag : uint8_t {
    FIRST_ON_LINE = 1,    /* only blanks stand in front of it on its line, which no ... continues */
    AFTER_BLANK_LINE = 2, /* first on its line, after one or more empty lines */
    OF_BLOCK_COMMENT = 4, /* COMMENT: a line between %{ and %} */
    IS_INTEGER = 8,       /* NUMBER: digits only */
    IS_IMAGINARY = 16,    /* NUMBER */
    IS_DOUBLE_QUOTED = 32, /* STRING */
    CLOSES_NOTHING = 64,   /* a closing bracket without an opening one */
    AFTER_LINE_END = 128   /* a line end within parentheses, which is no token, stands before it */
};

struct Token {
    TokenKind kind;
    uint8_t flags;
    OperatorId op;       /* OPERATOR, TRANSPOSE; else OPERATOR_NONE */
    OperatorId assigned; /* OP_ASSIGN, INCREMENT, STEP */
    uint32_t start;      /* offset in the source */
    uint32_t end;        /* after its last byte */
    const char *text;    /* set for the kinds that say so */
    const char *type;    /* NUMBER: name of the integer type that its suffix gives, or null */
};

inline bool may_end_operand(TokenKind kind) {
    return kind >= TOKEN_NAME && kind <= TOKEN_TRANSPOSE;
}
inline bool is_keyword(TokenKind kind) { return kind >= TOKEN_IF; }
inline bool opens_block(TokenKind kind) { return kind >= TOKEN_IF && kind <= TOKEN_SPMD; }
inline bool ends_statements(TokenKind kind) { return kind >= TOKEN_ELSEIF; }
inline bool is_end(TokenKind kind) { return kind >= TOKEN_END; }
