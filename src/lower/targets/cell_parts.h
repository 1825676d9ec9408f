/* Parts of cells, c(k). An index of one position gives the element itself in the host, where MATLAB
 * gives a cell that holds it. */
#pragma once

#include "lower/expressions/operands.h"
#include "syntax/tree/tree.h"

/* Whether an argument of an index may be truth values, of which one alone selects like a position.
 */
bool may_be_mask(const Node *argument);
/* Whether it may be a list of one position, in the host an index like that position. */
bool may_list_one(const Node *argument);
/* Whether the reference is an index in parentheses, and nothing more, of a variable that holds a
 * cell, or may hold one, where that makes a difference. */
bool is_cell_part(const Node *reference);
/* Whether the reference is such an index of lists that may hold one position each. */
bool is_listed_part(const Node *reference);
/* The part, a cell: of both. */
mExpr *lower_cell_part(const Node *reference);
