/* Assignments. */
#pragma once

#include "syntax/tree/tree.h"

/* Puts an ASSIGN or MULTI_ASSIGN. */
void put_assignment(const Node *node);
void put_multi_assignment(const Node *node);

/* The text of a value that is asked for several results, now or, a function, later. */
const char *lower_for_results(const Node *value, int32_t results);
