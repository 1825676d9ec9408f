/* What a file is for those who call it by its name: a function, or statements. */
#pragma once

#include "syntax/parse/parser.h"

/* Whether a node of a FILE is a statement that could be read; whether there is one. */
bool is_statement(const Node *node);
bool has_statements(const Node *file);

/* Whether the name of a file stands for its statements, not for a function. name: interned, of the
 * file. has_errors: in its source. */
bool is_script_file(const Node *file, const char *name, bool has_errors, SourceLanguage language);
/* The same of a source that need not have been read. Nothing is reported, and little is read of a
 * file that begins with the function of its name. No other source is being read. */
bool is_script_source(Source *source, const char *name, SourceLanguage language);
