/* Comments of the source, which go into the output as host comments. A comment list is newest
 * first; a list that began at a line end, not at a comment, has that line end as its oldest cell,
 * and it is not written: it belongs to the statement before. */
#pragma once

#include <mtranslate.h>

#include "translate/expressions.h"

/* A new list of a line end, a new list of a comment (EXPR_COMMENT), and a list with another
 * comment; each becomes LastComment. */
vExpr *start_line_ends();
vExpr *start_comments(const char *text);
vExpr *add_comment(vExpr *list, const char *text);

/* Writes the list, null for none, oldest first, each cell indented to level. */
void write_comments(const vExpr *list, int level);
