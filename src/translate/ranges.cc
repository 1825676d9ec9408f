// Ranges.
#include "translate/ranges.h"

#include <string.h>

#include "support/allocation.h"
#include "translate/text_forms.h"

const char *upper_bound(const mRange *range) { return range->stop ? range->stop->text : "-1"; }

char *write_sequence(char *at, const char *start, const char *upper, const char *step) {
    return write_form(at, "Vector[row]([seq(%s..%s,%s)])", {start, upper, step});
}

mExpr *new_seq_node(mExpr *start, mExpr *step, mExpr *stop, const SourcePosition *open_at) {
    mRange *range = AllocRecord<mRange>();
    *range = {start, step, stop, open_at};
    const char *upper = upper_bound(range);
    size_t size = strlen(start->text) + strlen(step->text) + strlen(upper) + 30;
    char *text;
    mExpr *expr = alloc_text_mExpr(EXPR_RANGE, NOT_SCALAR, size, &text);
    expr->range = range;
    if (has_unit_step(range)) {
        write_form(text, "Vector[row]([seq(%s..%s)])", {start->text, upper});
    } else {
        write_sequence(text, start->text, upper, step->text);
    }
    return expr;
}
