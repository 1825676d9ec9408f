/* Token numbers, shared by scanner and parser. Characters that are tokens by themselves have their
 * character code. ORDER TOKENS: the grammar declares the same names and numbers. */
#pragma once

enum Token {
    END_OF_INPUT = 0,
    LEXERROR = 258, /* text that is no token */
    LHS_LBRACKET,   /* [ that opens the targets of an assignment or the outputs of a function */
    LHS_RBRACKET,   /* ] that closes them */
    FOR,
    END,
    IF,
    ELSEIF,
    ELSE,
    SWITCH,
    CASE,
    OTHERWISE,
    GLOBAL,
    WHILE,
    FUNCTION,
    RETURN,
    STRING,     /* yylval: the characters between the outer quotes */
    IDENTIFIER, /* yylval: the name; a function handle with its leading @ */
    INTEGER,    /* yylval: the digits */
    REAL,       /* yylval: the number */
    IMAGINARY,  /* yylval: the number without its i or j */
    COMMENT,    /* yylval: from % to the line end, included */
    NEWLINE,    /* a run of line ends */
    OR,
    AND,
    NE,
    EQ,
    GE,
    GT,
    LE,
    LT,
    DOT_BACKSLASH,
    DOT_SLASH,
    DOT_STAR,
    NOT = 293,
    TRANSPOSE, /* ' after an operand */
    DOT_TRANSPOSE,
    CARET,
    DOT_CARET
};
