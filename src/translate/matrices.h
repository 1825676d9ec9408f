/* Rows of elements in growable arrays, as the parser collects them for a literal. */
#pragma once

#include "translate/expressions.h"

/* One row. */
struct mVector {
    int32_t count;
    int32_t capacity; /* slots of items */
    mExpr **items;
};

/* The rows. A view (build_mMatrix) shares the items of another matrix: its capacity is not set,
 * and nothing is appended to it. */
struct mMatrix {
    int32_t count;
    int32_t capacity;
    mVector **items;
};

/* An empty container with space for capacity entries, at least 10. */
mMatrix *alloc_mMatrix(int32_t capacity);
mVector *alloc_mVector(int32_t capacity);
/* Append to a container and answer it; its items may move. */
mMatrix *append_to_matrix(mMatrix *matrix, mVector *row);
mVector *append_to_vector(mVector *vector, mExpr *element);
/* A view of count rows. */
mMatrix *build_mMatrix(int32_t count, mVector **items);

/* A view of one row that holds the targets of an assignment: first, then those of rest (null for
 * none), whose cells stay the caller's. */
mMatrix *target_row(mExpr *first, const vExpr *rest);
