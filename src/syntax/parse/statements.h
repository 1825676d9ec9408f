/* Statements and blocks. */
#pragma once

#include "syntax/parse/parser_state.h"
#include "syntax/tree/new_nodes.h"

/* A statement under way. */
struct Statement {
    NodeList *list; /* what it will be appended to */
    uint32_t start;
    uint16_t flags; /* BLANK_BEFORE or 0 */
    NodeList after; /* comments to append after it */
};

/* Reads statements and comments into the list, up to a token that ends them: one that the innermost
 * open block, or one around it, waits for, or the end of the file. */
void parse_statements(NodeList *list);
/* The same as a NODE_BLOCK. Comments from inside the block's head come first. */
Node *parse_block();

/* Puts the comments from inside the statement in front of it. */
void put_inside_comments(Statement *statement);
/* The expression in the head of a block, a NODE_BAD when it has an error. */
Node *parse_head();

/* Starts counting functions, at the start of a run. */
void begin_functions();
/* Makes the frame that of the function under way. */
void begin_frame(FunctionFrame *frame, FunctionFrame *outer);

/* The statements that keywords begin (block_statements.cc, functions.cc, argument_blocks.cc). The
 * keyword is the current token. */
Node *parse_if(Statement *statement);
Node *parse_for(Statement *statement);
Node *parse_while(Statement *statement);
Node *parse_do(Statement *statement);
Node *parse_switch(Statement *statement);
Node *parse_try(Statement *statement);
Node *parse_unwind(Statement *statement);
Node *parse_spmd(Statement *statement);
Node *parse_function(Statement *statement);
Node *parse_argument_block();
/* Whether the word arguments, the current token, begins a block of them. */
bool begins_argument_block();

/* An expression or an assignment (simple_statements.cc). Further statements that the source writes
 * in one, as x = y = 1 in Octave, go into the list. */
Node *parse_simple(Statement *statement);
/* global and persistent. */
Node *parse_declaration(NodeKind kind);
/* Checks that the node can be assigned to, and makes a variable of its name. */
void settle_target(Node *target);
