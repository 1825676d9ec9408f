/* Brace indices, which read the contents of cell arrays. */
#pragma once

#include "translate/expressions.h"

/* name{arguments}; arguments null for none. The name varargin stands for the host procedure's own
 * arguments: args[…], or args for all of them. The host is not asked. */
mExpr *new_cell_node(const mExpr *name, const vExpr *arguments);
