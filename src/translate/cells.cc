// Brace indices.
#include "translate/cells.h"

#include <string.h>

#include "translate/indices.h"

mExpr *new_cell_node(const mExpr *name, const vExpr *arguments) {
    if (strcmp(name->text, "varargin") != 0) {
        return new_element_node(name->text, CELL_INDEX, arguments);
    }
    bool whole_list = !arguments || (!arguments->next && is_colon(arguments->item));
    if (!whole_list) return new_element_node("args", ARGS_INDEX, arguments);
    mExpr *expr = alloc_mExpr();
    *expr = {EXPR_NAME, "args", NOT_SCALAR, nullptr};
    return expr;
}
