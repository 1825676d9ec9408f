/* Comments, and what ... makes of the rest of its line. */
#pragma once

#include "syntax/tree/tree.h"

/* A % or #. True with a comment token outside of brackets; false where it has been collected, or
 * opens a block comment. */
bool scan_comment(const char *at);
/* The next line inside a block comment, like scan_comment. */
bool scan_block_line();
/* From three dots to the start of the next line. */
const char *skip_continuation(const char *at);
/* The comment of the current token as a node. */
Node *new_comment();
/* Where the line of a byte ends. */
const char *find_line_end(const char *at);
