/* c{1:3} and s(1:3).f stand for three targets. */
#pragma once

#include "syntax/tree/tree.h"

struct Bounds {
    long first;
    long last; /* below first: not known */
};

/* The index of c{1:3} or s(1:3).f, a selector of the REFERENCE; null for other references. */
const Node *list_index(const Node *reference);
/* What it is of: whole numbers of the source, or variables that are never another. */
Bounds numbered_bounds(const Node *reference);
/* The only value that the variable, a NAME, ever has, where nobody else may set it; or null. */
const Node *only_value(const Node *name);
