// Ranges.
#include "translate/ranges.h"

#include <string.h>

#include "support/allocation.h"
#include "translate/text_forms.h"

const char *upper_bound(const mRange *range) { return range->stop ? range->stop->text : "-1"; }

mExpr *new_seq_node(mExpr *start, mExpr *step, mExpr *stop, const SourcePosition *open_at) {
    mRange *range = AllocRecord<mRange>();
    *range = {start, step, stop, open_at};
    const char *first = start->text;
    const char *upper = upper_bound(range);
    mExpr *expr =
        has_unit_step(range)
            ? new_form_mExpr(EXPR_RANGE, NOT_SCALAR, "Vector[row]([seq(%s..%s)])", {first, upper})
            : new_form_mExpr(EXPR_RANGE, NOT_SCALAR, "Vector[row]([seq(%s..%s,%s)])",
                             {first, upper, step->text});
    expr->range = range;
    return expr;
}
