/* Going on after an error. */
#pragma once

#include "syntax/tree/tree.h"

/* Ends the failed state. The current token becomes the one at which statements go on: what ends a
 * statement or a block, or inside open brackets the first line that begins with a keyword or an
 * assignment. */
void recover();
/* The same, with a NODE_BAD of what stands from start on. Comments that have been collected become
 * its children. */
Node *recover_statement(uint32_t start);
/* Ends the place of a NODE_BAD in front of the current token, so that all comments after its start
 * are in it; without line ends. */
Node *finish_bad(Node *node);
/* Skips a block from its opening keyword, the current token, to after its end, as a NODE_BAD. */
Node *skip_block();
/* Skips the rest of the source. */
Node *skip_source();
