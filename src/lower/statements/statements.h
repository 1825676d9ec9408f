/* Statements: from nodes of the tree to lines of host text. */
#pragma once

#include "syntax/tree/tree.h"

/* Puts the statements and comments of a BLOCK, deeper by one level than the current one. */
void lower_block(const Node *block);
/* The same at the level. */
void lower_block_at(const Node *block, int level);
/* Puts statements and comments from the node first on, up to the node end (not included; null for
 * all), at the level. Functions among them are left out: they are not statements. */
void lower_siblings(const Node *first, const Node *end, int level);
/* The same at the current level after what has been put: empty lines in front of the first one are
 * not those at the head of a block. The level rises by the branches that stay open after them
 * (close_rest in script_returns.h). */
void lower_more_siblings(const Node *first, const Node *end);

/* Statements that hold others; assignments.h and deletions.h have the rest. */
void put_if(const Node *node);
void put_for(const Node *node);
void put_while(const Node *node);
void put_do_until(const Node *node);
void put_switch(const Node *node);
void put_try(const Node *node);
