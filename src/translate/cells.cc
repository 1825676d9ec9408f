// Brace indices.
#include "translate/cells.h"

#include <string.h>

#include "translate/text_forms.h"

static size_t index_size(const mExpr *name, const vExpr *list) {
    size_t size = strlen(name->text) + 10;
    for (; list; list = list->next) size += strlen(list->item->text) + 2;
    return size;
}

// Argument sequences have no step of their own: a stepped range selects by an explicit sequence.
static char *write_args_range(char *at, const mRange *range) {
    const char *start = range->start->text;
    const char *step = range->step->text;
    bool unit = has_unit_step(range);
    if (!range->stop) {
        return unit ? write_form(at, "%s..", {start})
                    : write_form(at, "[seq(%s..nargs,%s)]", {start, step});
    }
    const char *stop = range->stop->text;
    return unit ? write_form(at, "%s..%s", {start, stop})
                : write_form(at, "seq(%s..%s,%s)", {start, stop, step});
}

static char *write_cell_range(char *at, const mExpr *index) {
    const mRange *range = index->range;
    if (!range->stop) return write_form(at, "%s..", {range->start->text});
    if (!has_unit_step(range)) return write_text(at, index->text);
    return write_form(at, "%s..%s", {range->start->text, range->stop->text});
}

static char *write_index(char *at, const mExpr *index, bool is_args) {
    if (is_colon(index)) return write_text(at, "..");
    if (!is_range(index)) return write_text(at, index->text);
    return is_args ? write_args_range(at, index->range) : write_cell_range(at, index);
}

mExpr *new_cell_node(const mExpr *name, const vExpr *arguments) {
    bool is_args = strcmp(name->text, "varargin") == 0;
    bool whole_list = !arguments || (!arguments->next && is_colon(arguments->item));
    if (is_args && whole_list) {
        mExpr *expr = alloc_mExpr();
        *expr = {EXPR_NAME, "args", 0, nullptr};
        return expr;
    }
    char *text;
    mExpr *expr = alloc_text_mExpr(EXPR_CALL, 0, index_size(name, arguments), &text);
    char *at = is_args ? write_text(text, "args[") : write_form(text, "%s(", {name->text});
    for (const vExpr *cell = arguments; cell; cell = cell->next) {
        if (cell != arguments) at = write_text(at, ", ");
        at = write_index(at, cell->item, is_args);
    }
    write_text(at, is_args ? "]" : ")");
    return expr;
}
