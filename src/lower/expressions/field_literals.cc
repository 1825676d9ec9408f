// Names of fields between quotes.
#include "lower/expressions/field_literals.h"

#include "lower/expressions/expressions.h"
#include "lower/lines/gaps.h"
#include "lower/program/host_words.h"
#include "support/same_text.h"
#include "syntax/library/library_table.h"

namespace {

// Whether argument k, from 1, is a field's name.
bool is_field_argument(const char *function, int k) {
    if (is_same_text(function, "struct")) return k % 2 == 1;
    return k == 2 && has_trait(function, TAKES_FIELD);
}

void rename(const Node *literal, vExpr *cell) {
    const char *written = written_field(literal->text);
    if (written == literal->text) return;
    report_at(RENAMED_FIELD, literal, {literal->text, written});
    cell->item = new_leaf(string_text(written), SCALAR);
}

}  // namespace

void rename_fields(const char *function, const Node *arguments, ExprList *values) {
    vExpr *cell = values->first;
    int k = 1;
    for (const Node *node = arguments->first_child; node; node = node->next, k++) {
        const Node *literal = without_parens(node);
        if (literal->kind == NODE_STRING && is_field_argument(function, k)) rename(literal, cell);
        cell = cell->next;
    }
}
