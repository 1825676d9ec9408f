/* Phrases that the grammar puts together from several words or in several steps: command words,
 * calls with their argument lists, ranges, global names, function definitions, scripts. */
#pragma once

#include "emit/statements.h"
#include "lexer/semantic_value.h"
#include "translate/expressions.h"

/* The words of a command: the first, and the words with one more at the end. */
WordList start_words(const char *word);
WordList add_word(WordList words, mExpr *word);
/* The words with ".name" joined to the last of them. */
WordList join_word(WordList words, const char *name);
/* The command; releases the words' cells. */
mStat *new_command_stat(mExpr *name, vExpr *words);

/* A call, an index or a brace index; releases the arguments' cells. */
mExpr *new_call(mExpr *callee, vExpr *arguments);
mExpr *new_brace_index(mExpr *callee, vExpr *arguments);

/* A complete range. */
mExpr *new_range(RangeTriple range);
/* start:next, where next is the step when a further colon follows, else the stop. */
RangeTriple start_range(mExpr *start, mExpr *next, bool colon_follows);
/* start:end. */
RangeTriple start_open_range(mExpr *start);
/* range:next. A range that has its stop already becomes the start of another. */
RangeTriple extend_range(RangeTriple range, mExpr *next, bool colon_follows);

/* Copies of the names of a global statement. */
NameList start_names(const char *name);
NameList add_global(NameList names, const char *name);

/* Writes the procedure of a complete function; answers the body. */
mStat *define_function(mProc *proc, mStat *body);
/* Writes a complete script, null for one without statements, after the functions that it calls;
 * answers it. */
mStat *define_script(mStat *first);
