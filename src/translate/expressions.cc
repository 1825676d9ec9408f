// Expression records, list cells and leaves.
#include "translate/expressions.h"

#include <assert.h>
#include <string.h>

#include "run/run_state.h"
#include "support/allocation.h"
#include "support/string_hash.h"
#include "translate/host_queries.h"
#include "translate/text_forms.h"

mExpr *alloc_text_mExpr(int kind, int scalar, size_t size, Writer *to) {
    mExpr *expr = static_cast<mExpr *>(AllocKept(sizeof(mExpr) + size));
    char *text = reinterpret_cast<char *>(expr + 1);
    *text = '\0';
    *to = {text, text + size};
    *expr = {kind, text, scalar, nullptr};
    return expr;
}

mExpr *new_form_mExpr(int kind, int scalar, const char *form,
                      std::initializer_list<const char *> operands) {
    Writer to;
    mExpr *expr = alloc_text_mExpr(kind, scalar, form_size(form, operands), &to);
    write_form(&to, form, operands);
    return expr;
}

vExpr *prepend_vExpr(mExpr *item, vExpr *list) {
    assert(list && !list->prev);
    vExpr *cell = alloc_vExpr(item);
    cell->next = list;
    list->prev = cell;
    return cell;
}

void free_vExpr(vExpr *list) {
    if (PartsShareBlocks) return;  // and are lost
    while (list) {
        vExpr *next = list->next;
        FreeKept(list);
        list = next;
    }
}

int count_vExpr(const vExpr *list) {
    int count = 0;
    for (; list; list = list->next) count++;
    return count;
}

[[gnu::noinline]] static mExpr *new_string(const char *contents) {
    Writer to;
    size_t size = escaped_length(contents, "\\") + sizeof "\"\"";
    mExpr *expr = alloc_text_mExpr(EXPR_STRING, SCALAR, size, &to);
    write_text(&to, "\"");
    write_escaped(&to, contents, "\\");
    write_text(&to, "\"");
    return expr;
}

static mExpr *new_imaginary(const char *number) {
    return new_form_mExpr(EXPR_IMAGINARY, SCALAR, "%s*I", {number});
}

static mExpr *new_leaf(int kind, const char *text) {
    mExpr *expr = alloc_mExpr();
    *expr = {kind, text, kind <= EXPR_IMAGINARY ? SCALAR : NOT_SCALAR, nullptr};
    return expr;
}

[[gnu::noinline]] static const char *name_text(const char *name) {
    if (strcmp(name, "I") == 0) return "m_I";
    if (strcmp(name, "nargin") == 0) return "nargs";
    if (*name == '@') {
        name++;
        StringHashInsert(CalledNames, name, const_cast<char *>(name));
    }
    const char *translation = translate_name(name);
    return translation ? KeepText(translation, strlen(translation)) : name;
}

mExpr *new_node(int kind, const char *text) {
    switch (kind) {
        case EXPR_STRING: return new_string(text);
        case EXPR_IMAGINARY: return new_imaginary(text);
        case EXPR_NAME: return new_leaf(kind, name_text(text));
        case EXPR_RANGE: return new_leaf(kind, "<seq(1..1)>");
        default: return new_leaf(kind, text);
    }
}

mExpr *unit_step() {
    static mExpr one = {EXPR_INTEGER, "1", SCALAR, nullptr};
    return &one;
}

mExpr *last_position() {
    static mExpr last = {EXPR_INTEGER, "-1", SCALAR, nullptr};
    return &last;
}

bool has_unit_step(const mRange *range) { return strcmp(range->step->text, "1") == 0; }
