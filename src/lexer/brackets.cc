// The bracket context.
#include "lexer/brackets.h"

int BracketDelimiter;

int32_t open_bracket(BracketKind kind) {
    int32_t outer = BracketDelimiter;
    BracketDelimiter = kind;
    return outer;
}

void close_bracket(int32_t outer) { BracketDelimiter = outer; }
