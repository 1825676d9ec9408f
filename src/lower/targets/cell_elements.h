/* Elements of cells that an index in parentheses sets, c(k) = d. What is assigned is a cell with an
 * element for each place; into a single place the host takes the element itself. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether an ASSIGN sets one element, or perhaps one, of a cell to what is in another. */
bool is_cell_element(const Node *assignment);
void put_cell_element(const Node *assignment);
