/* The bracket context, kept by the grammar's marks and read by the scanner's input fixer and by
 * the operator builders: BracketDelimiter is 0 outside every bracket, else one of these. */
#pragma once

#include <mtranslate.h>

#include "lexer/tokens.h"

enum BracketKind {
    OUTSIDE = 0,              /* no bracket */
    IN_PARENTHESES = '(',     /* a parenthesised expression or argument list */
    IN_BRACES = '{',          /* the braced argument list of a reference */
    IN_LITERAL = '[',         /* a matrix or cell literal */
    IN_TARGETS = LHS_LBRACKET /* the target list of an assignment */
};

/* Enters a bracket; answers the delimiter to go back to. */
int32_t open_bracket(BracketKind kind);
/* Leaves a bracket for the context outside it. */
void close_bracket(int32_t outer);
