/* & and | of arrays in conditions, a side of which can fail: it is left alone where those in front
 * of it decide for all elements. */
#pragma once

#include "syntax/tree/tree.h"

/* Puts the lines that evaluate the chain. Answers the variable that holds its value. */
const char *put_elementwise(const Node *chain);
