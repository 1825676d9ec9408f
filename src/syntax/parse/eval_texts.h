/* Calls of eval with a text that is known, or whose unknown pieces can be one thing alone. The text
 * is a piece of the program, so it is read like the source around it and its tree takes the place
 * of the call: statements or a value. With a second text, that of a handler, the call becomes a
 * TRY.
 *
 * What is made of a call has the place of the call. A call stays as it is where its text cannot be
 * read, or holds what has a meaning of its own there, such as a return. */
#pragma once

#include "syntax/parse/parser.h"

/* Replaces the calls in the tree of a source, a FILE that has been read. */
void put_eval_texts(Node *file, Source *source, SourceLanguage language);
