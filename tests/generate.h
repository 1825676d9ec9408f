/* Programs in matlab, made up from a number, and the ways to write one and the same program. */
#pragma once

#include <string>
#include <vector>

namespace mtranslate {

/* How a program is written. What is left open, the seed decides; without any of the choices there
 * is one writing: a statement a line, ended by a semicolon. */
struct Writing {
    unsigned seed = 0;
    bool has_blanks = false;        /* blanks, and empty lines, where they mean nothing */
    bool has_continuations = false; /* continued lines there */
    bool has_parentheses = false;   /* operands in parentheses that change nothing */
    bool has_separators = false;    /* all ends of statements, elements and rows */
    bool has_comments = false;      /* comments everywhere, numbered by "_0_", "_1_", ... */
    std::string line_end = "\n";
};

/* A text, or a place where writings differ. */
struct Piece {
    enum Kind {
        TEXT,
        MAY_BREAK,   /* a blank or a continuation may stand here */
        BREAK,       /* at least one has to */
        OPEN,        /* ( of parentheses that change nothing */
        CLOSE,       /* their ) */
        ELEMENT_END, /* between elements */
        ROW_END,     /* between rows */
        HEAD_END,    /* after the head of a block */
        STATEMENT_END,
        LINE_END /* after what only a line end ends */
    };
    Kind kind;
    std::string text; /* of TEXT */
};

struct Program {
    std::vector<Piece> pieces;
    std::vector<std::string> calls; /* functions that it calls, in order, each once: f1, f2, ... */
    bool is_in_order = true;        /* no function moves in front of what stands before it */
    std::vector<std::string> literals; /* its numbers and strings, as host text without
                                          quotes, each once */
};

enum class ProgramKind {
    SCRIPT,    /* statements, with functions after them now and then */
    FUNCTIONS, /* a file of functions */
    WITH_GAPS  /* a script, with what has no form in the host's language among its statements */
};

Program make_program(ProgramKind kind, unsigned seed);
std::string written(const Program &program, const Writing &writing);

}  // namespace mtranslate
