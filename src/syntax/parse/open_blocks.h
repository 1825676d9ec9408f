/* The blocks that are open. */
#pragma once

#include "syntax/parse/parser_state.h"

/* A set of tokens that end statements. */
constexpr uint64_t closer(TokenKind kind) { return uint64_t(1) << (kind - TOKEN_ELSEIF); }

/* Opens a block whose keyword stands at offset; closers: what ends its statements. */
void open_block(TokenKind opener, uint32_t offset, uint64_t closers);
/* Gives the innermost block other closers. */
void expect_closers(uint64_t closers);
/* Whether a block can be opened; notes the error when they are too many. */
bool can_open_block();
/* Whether an open block waits for the current token. */
bool is_awaited();
/* Closes the innermost block with the current token, which should be end or the other one; notes
 * an error when it is neither. body: its nodes so far, where an end is looked for that has been
 * taken from it. */
void close_block(TokenKind other_end, const Node *body);
/* Notes that the current token, which ends statements, belongs to no block. */
void note_stray_token();
/* Whether the innermost block is a function's body. */
bool is_in_function_body();
/* Whether a loop of the function or script is open. */
bool is_in_loop();
