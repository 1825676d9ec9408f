/* Deletions of elements, x(k) = []. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether an ASSIGN deletes: an index in parentheses gets a literal without elements. */
bool is_deletion(const Node *assignment);
/* Puts the deletion: the positions that stay are selected. */
void put_deletion(const Node *assignment);
