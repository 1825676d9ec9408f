/* The words of clear and clearvars. */
#pragma once

#include "syntax/tree/tree.h"

/* What a statement clears. */
struct ClearWords {
    const Node *name;  /* NAME of the function */
    const Node *first; /* WORD or STRING; null for none */
    bool is_known;     /* all words are texts */
};

/* name null when the EXPRESSION or COMMAND clears nothing, going by the name alone. */
ClearWords clear_words(const Node *statement);
/* Whether the first word, null for none, stands for all variables. */
bool means_all(const Node *word);
