/* Trees as text. */
#pragma once

#include "support/long_string.h"
#include "syntax/tree/tree.h"

/* Appends the tree to the text and answers the text's new handle. Each node is a list in
 * parentheses, each statement and comment of a block a line of its own, indented, after an empty
 * line where the source has some. References, literals and names look as in the source; a chain has
 * its operators between its operands: x = a + b(1)*2 is (= x (a + (b(1) * 2))). A statement that
 * does not print ends in a semicolon. */
[[nodiscard]] LongString print_tree(LongString text, const Node *node);
/* The same with what is known of values, after each name, call and operator: x:number. */
[[nodiscard]] LongString print_tree_of_values(LongString text, const Node *node);
