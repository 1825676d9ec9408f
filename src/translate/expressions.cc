// Expression records, list cells and leaves.
#include "translate/expressions.h"

#include <string.h>

#include "driver/run_state.h"
#include "support/allocation.h"
#include "support/string_hash.h"
#include "translate/host_queries.h"
#include "translate/text_forms.h"

mExpr *alloc_mExpr() { return AllocRecord<mExpr>(); }

vExpr *alloc_vExpr(mExpr *item) {
    vExpr *cell = AllocRecord<vExpr>();
    *cell = {item, nullptr, nullptr};
    return cell;
}

vExpr *prepend_vExpr(mExpr *item, vExpr *list) {
    vExpr *cell = alloc_vExpr(item);
    cell->next = list;
    list->prev = cell;
    return cell;
}

void free_vExpr(vExpr *list) {
    while (list) {
        vExpr *next = list->next;
        Free(list);
        list = next;
    }
}

int count_vExpr(const vExpr *list) {
    int count = 0;
    for (; list; list = list->next) count++;
    return count;
}

static const char *string_text(const char *contents) {
    char *text = static_cast<char *>(Alloc(2 * strlen(contents) + 3));
    text[0] = '"';
    write_text(write_escaped(text + 1, contents), "\"");
    return text;
}

static const char *imaginary_text(const char *number) {
    char *text = static_cast<char *>(Alloc(strlen(number) + 3));
    write_form(text, "%s*I", {number});
    return text;
}

static const char *name_text(const char *name) {
    if (strcmp(name, "I") == 0) return "m_I";
    if (strcmp(name, "nargin") == 0) return "nargs";
    if (*name == '@') {
        name++;
        StringHashInsert(CalledNames, name, const_cast<char *>(name));
    }
    const char *translation = translate_name(name);
    return translation ? StrDup(translation) : name;
}

static const char *leaf_text(int kind, const char *text) {
    switch (kind) {
        case EXPR_STRING: return string_text(text);
        case EXPR_IMAGINARY: return imaginary_text(text);
        case EXPR_NAME: return name_text(text);
        case EXPR_RANGE: return "<seq(1..1)>";
        default: return text;
    }
}

mExpr *new_node(int kind, const char *text) {
    mExpr *expr = alloc_mExpr();
    *expr = {kind, leaf_text(kind, text), kind <= EXPR_IMAGINARY, nullptr};
    return expr;
}

bool is_colon(const mExpr *expr) { return expr->kind == EXPR_RANGE && !expr->range; }

bool is_range(const mExpr *expr) { return expr->kind == EXPR_RANGE && expr->range; }

bool has_unit_step(const mRange *range) { return strcmp(range->step->text, "1") == 0; }
