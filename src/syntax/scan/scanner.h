/* The scanner. It makes one token at a time and looks ahead by bytes only, so that the parser can
 * choose how a statement goes on before it is read: as a command or as an expression.
 *
 * What depends on brackets is settled here, by a stack of those that are open: whether a blank
 * separates two elements, what a line end means, whether end is a position. Comments inside
 * brackets, and after three dots, are no tokens; they are collected as nodes. */
#pragma once

#include <stddef.h>

#include "diagnose/source.h"
#include "syntax/scan/source_language.h"
#include "syntax/scan/tokens.h"
#include "syntax/tree/new_nodes.h"

/* Brackets and blocks nest at most this deep. */
constexpr int32_t MOST_NESTED = 400;

enum BracketContext : uint8_t {
    OUTSIDE_BRACKETS,
    IN_PARENTHESES,
    IN_PARAMETERS, /* of @( ) */
    IN_ELEMENTS    /* [ ] and { }: blanks separate, line ends end rows */
};

struct ScannerState {
    const char *text; /* of the source */
    const char *end;  /* of the text; a NUL stands there */
    const char *at;   /* first byte after the current token */
    SourceLanguage language;
    TokenKind before;       /* the token in front of the one that is being made */
    BracketContext context; /* of the innermost open bracket */
    uint8_t line_flags;     /* of TokenFlag: what the next token gets to know of line ends */
    bool names_eval;        /* a name so far has been eval */
    bool has_returns;       /* the text has a \r, as few have */
    bool has_nuls;          /* the same of a NUL */
    int32_t depth;          /* open brackets, at most MOST_NESTED */
    int32_t block_comments; /* open block comments */
    int32_t comments_made;  /* nodes of comments that have not been taken back */
    NodeList comments;      /* COMMENT nodes from inside the statement, not yet in the tree */
    /* Tokens outside of brackets so far, which tell whether functions have ends of their own. */
    int32_t openers;
    int32_t functions;
    int32_t ends;
};

extern ScannerState Scan;
/* The current token, and the place of the one before it. */
extern Token Current;
struct Place {
    uint32_t start;
    uint32_t end;
};
extern Place Previous;

/* Starts at the source's first byte; the first token is the current one. */
void begin_scan(const Source *source, SourceLanguage language);
/* Makes the next token the current one. */
void advance();
/* The same from another byte, outside of all brackets; the current token becomes a line end in
 * front of it. */
void continue_at(const char *at);
/* Makes the current token one of no meaning, whose error has been reported. */
void set_bad_token(const char *start, const char *end);

inline uint32_t offset_of(const char *at) { return static_cast<uint32_t>(at - Scan.text); }
/* A copy of length bytes of the source, and a NUL. */
inline char *keep_source(const char *at, size_t length) {
    return Scan.has_nuls ? keep_bytes(at, length) : copy_bytes(at, length);
}
/* Offset of an open bracket; the outermost is number 0. */
uint32_t open_bracket_at(int32_t number);
