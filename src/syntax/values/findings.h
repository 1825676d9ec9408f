/* What has been found of a variable: each question is answered once, however many ask it. */
#pragma once

#include "syntax/names/names.h"

enum Question : uint8_t {
    LEAST,
    SEVERAL,
    CELL,
    INTEGER,
    OTHER_VALUE,
    ARRAY,
    CELL_SEEN,
    MASK,
    LITERAL_TRUTH,
    EMPTY_LITERAL,
    HELD_TAKEN,
    QUESTIONS
};
enum AnswerState : uint8_t { NOT_ASKED, IN_QUESTION, IS_FOUND };

struct GivenArguments;
struct TakenPart;

struct Findings {
    double least;
    const Node *integer_class;
    GivenArguments *given;  /* to the functions that it holds (handles.cc); null for nothing */
    const TakenPart *taken; /* what those take of whole parameters; null for nothing */
    bool is_true[QUESTIONS];
    AnswerState states[QUESTIONS];
};

Findings *findings_of(Symbol *symbol);
/* What is so of a variable by itself, whoever asks. */
bool is_so(Symbol *symbol, Question question, bool (*test)(const Symbol *symbol));
