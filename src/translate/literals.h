/* Matrix and cell literals: the host constructor is picked by a literal's shape and elements. */
#pragma once

#include "translate/matrices.h"

enum LiteralKind {
    MATRIX_LITERAL, /* [ … ] */
    CELL_LITERAL    /* { … } */
};

/* The literal of these rows. */
mExpr *new_matrix_node(const mMatrix *matrix, LiteralKind kind);
