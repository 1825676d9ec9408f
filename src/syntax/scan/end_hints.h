/* Which block may have lost its end. */
#pragma once

#include "syntax/tree/tree.h"

/* The first block below a node whose end stands to the left of its keyword, both first on their
 * lines: as likely as not that end was meant for a block around it. Null when there is none. */
const Node *find_suspect(const Node *node);
