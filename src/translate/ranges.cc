// Ranges.
#include "translate/ranges.h"

#include <string.h>

#include "lexer/position.h"
#include "support/allocation.h"
#include "translate/text_forms.h"

const char *upper_bound(const mRange *range) { return range->stop ? range->stop->text : "-1"; }

char *write_sequence(char *at, const char *start, const char *upper, const char *step) {
    return write_form(at, "Vector[row]([seq(%s..%s,%s)])", {start, upper, step});
}

static mRange *new_range(mExpr *start, mExpr *step, mExpr *stop) {
    mRange *range = AllocRecord<mRange>();
    *range = {start, step, stop, nullptr};
    if (stop) return range;
    SourcePosition *place = AllocRecord<SourcePosition>();
    *place = save_position();
    range->open_at = place;
    return range;
}

mExpr *new_seq_node(mExpr *start, mExpr *step, mExpr *stop) {
    mRange *range = new_range(start, step, stop);
    const char *upper = upper_bound(range);
    size_t size = strlen(start->text) + strlen(step->text) + strlen(upper) + 30;
    char *text;
    mExpr *expr = alloc_text_mExpr(EXPR_RANGE, 0, size, &text);
    expr->range = range;
    if (has_unit_step(range)) {
        write_form(text, "Vector[row]([seq(%s..%s)])", {start->text, upper});
    } else {
        write_sequence(text, start->text, upper, step->text);
    }
    return expr;
}
