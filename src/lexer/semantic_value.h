/* The value of a grammar symbol: a few words, of which most symbols use the first. The scanner
 * delivers a token's text in the first word of yylval and touches no other. Whatever a value
 * points to is tracked by the run, so the parser never has to release a value it discards. */
#pragma once

#include <mtranslate.h>
#include <stdint.h>

struct mExpr;
struct mMatrix;
struct mProc;
struct mVector;

/* Names of a global statement. The array has space for the next power of two of count. */
struct NameList {
    int32_t count;
    const char **names;
};

/* Words of a command in source order, with the last cell at hand for the next word. A last word
 * that has been joined from several keeps spare bytes for more. */
struct WordList {
    vExpr *first;
    vExpr *last;
    uint32_t length; /* of the joined word's text */
    uint32_t spare;  /* free bytes after it and its NUL; 0 for any other word */
};

/* A range under way; no stop: it ends with end, or its last operand is still to come. */
struct RangeTriple {
    mExpr *start;
    mExpr *step;
    mExpr *stop;
};

/* Hosts read yylval as three words, where those have 64 bits; else it takes four. */
constexpr int SEMANTIC_WORDS = sizeof(uintptr_t) == 8 ? 3 : 4;

union SemanticValue {
    char *text;        /* valued tokens */
    mExpr *expr;       /* expressions, names, references, assignments */
    vExpr *list;       /* argument, name, value and target lists in source order; comments */
    mStat *stat;       /* a statement, or the first of a list; null for none */
    mProc *proc;       /* function_header */
    mMatrix *matrix;   /* matrix and cell literals, rows, assignment targets */
    mVector *vector;   /* one row */
    NameList names;    /* global_names */
    WordList words;    /* command_words */
    RangeTriple range; /* range_triple */
    int32_t delimiter; /* opening marks: the BracketDelimiter outside the bracket */
    uintptr_t slots[SEMANTIC_WORDS];

    SemanticValue() = default;
    SemanticValue(const SemanticValue &) = default;
    /* Word by word: most values are copied right after their first word has been written, and a
     * wider load would have to wait for that. */
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): copies nothing it has overwritten
    SemanticValue &operator=(const SemanticValue &other) {
        for (int i = 0; i < SEMANTIC_WORDS; i++) slots[i] = other.slots[i];
        return *this;
    }
};

static_assert(sizeof(SemanticValue) == sizeof(SemanticValue::slots), "values are copied by words");
