/* Functions that the source names by a text. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether the node is a text that can name a function. */
bool is_identifier_text(const Node *node);
/* A kept NAME or HANDLE, as kind says, of the function that such a text names; its place is the
 * text's. */
const Node *named_function(const Node *text, NodeKind kind);
