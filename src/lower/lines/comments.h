/* Comments of the source, each of which is in the output once. */
#pragma once

#include "lower/lines/lines.h"
#include "syntax/tree/tree.h"

/* Puts a COMMENT: after the line that it trails, or on a line of its own when that is null or when
 * it trails nothing. */
void put_comment(const Node *comment, Line *trailed);
