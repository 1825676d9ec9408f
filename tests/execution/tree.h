/* Host text as a tree, and its reader. */
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/execution/tokens.h"

namespace mtranslate::execution {

enum class ExpressionKind {
    NUMBER,
    TEXT,
    QUOTED,
    NAME,
    OPERATOR,   /* two operands */
    SIGN,       /* + or - of one operand */
    RELATION,   /* two operands */
    LOGIC,      /* and, or */
    NOT,        /* one operand */
    MEMBERSHIP, /* a value in a set */
    RANGE,      /* two bounds, each null where it is left out */
    CALL,       /* f(a, b) or x(i, j): head, arguments */
    SELECTION,  /* f[a]: head, arguments */
    MEMBER,     /* s:-f: base; the text is the field's name */
    LIST,       /* [a, b] */
    SET,        /* {a, b} */
    BLOCKS,     /* <a | b> */
    SEQUENCE,   /* (a, b): none, or several */
    PROCEDURE
};

struct Procedure;

struct Expression {
    ExpressionKind kind;
    std::string text; /* a name, a text, an operator */
    double number = 0;
    std::vector<std::unique_ptr<Expression>> parts = {};
    std::unique_ptr<Procedure> procedure = nullptr;
};
using ExpressionPointer = std::unique_ptr<Expression>;

enum class StatementKind {
    ASSIGNMENT,   /* target, value */
    EVALUATION,   /* value */
    IF,           /* conditions, one body more than conditions */
    WHILE,        /* condition; body */
    COUNTED_LOOP, /* from, to, by (null where it is left out); body; text is the variable */
    LOOP,         /* values; body; text is the variable */
    NEXT,
    BREAK,
    RETURN /* values */
};

struct Statement;
using Block = std::vector<std::unique_ptr<Statement>>;

struct Statement {
    StatementKind kind;
    int line; /* from 1 */
    std::string text = "";
    std::vector<ExpressionPointer> expressions = {};
    std::vector<Block> bodies = {};
};

struct Procedure {
    std::vector<std::string> parameters, locals, globals, packages;
    Block body;
};

/* A pair of parentheses around one expression that is no list of arguments. */
struct Grouping {
    size_t open, close; /* places among the tokens */
    size_t first, end;  /* tokens of the whole expression that the pair stands in; end is after */
};

struct HostProgram {
    std::vector<Token> tokens;
    Block statements;
    std::vector<Grouping> groupings; /* inner ones first */
};

/* Reads a text; parentheses leave no trace in the tree. Throws ExecutionError. */
HostProgram read_host_text(std::string_view text);

/* An expression out of all of the tokens. Throws ExecutionError. */
ExpressionPointer read_host_expression(std::vector<Token> tokens);

/* A text that is the same for the same trees only. */
std::string shape_of(const Expression *expression);

}  // namespace mtranslate::execution
