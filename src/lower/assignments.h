/* Assignments. */
#pragma once

#include "syntax/tree.h"

/* Puts an ASSIGN or MULTI_ASSIGN. */
void put_assignment(const Node *node);
void put_multi_assignment(const Node *node);
