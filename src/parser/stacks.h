/* The parser's stacks, of states and of values. Each parse has a heap block of its own: a script
 * that waits for the functions that it calls keeps a parse on the machine's stack, and with the
 * stacks there as well a few dozen of them would fill a small one. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "lexer/semantic_value.h"

/* Space for 200 entries to begin with; a source that needs more than 10000 is refused. */
constexpr ptrdiff_t FIRST_ENTRIES = 200;
constexpr ptrdiff_t MOST_ENTRIES = 10000;

/* Begins a parse without a block; answers that of the parse under way, or null. */
void *begin_stacks();
/* Releases the block at the end of the parse, and goes on with the outer one. */
void end_stacks(void *outer);
/* Moves the entries used so far into a new block with space for more. False when there are too many
 * or the heap is exhausted. */
bool grow_stacks(int16_t **states, SemanticValue **values, ptrdiff_t used, ptrdiff_t *capacity);
