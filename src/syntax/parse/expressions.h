/* Expressions. All rules answer a node, also at an error: the statement then has failed, and the
 * node is not looked at. */
#pragma once

#include "syntax/tree/tree.h"

/* An expression of any level. A command's or a block's keyword, a line end and whatever else
 * cannot go on ends it. */
Node *parse_expression();
/* A name or another operand with its selectors. */
Node *parse_reference();
/* The contents of ( ) or { } after an opening bracket that is the current token, with the closing
 * one, as NODE_ARGUMENTS or NODE_BRACES. */
Node *parse_arguments();
/* [ ] or { } as NODE_MATRIX or NODE_CELL. */
Node *parse_literal();
/* Whether the node is a NAME that may be a variable: no name@superclass. */
bool is_plain_name(const Node *node);
