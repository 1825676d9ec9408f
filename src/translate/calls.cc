// Calls and indices in parentheses.
#include "translate/calls.h"

#include <stdio.h>
#include <string.h>

#include "run/run_state.h"
#include "support/allocation.h"
#include "support/string_hash.h"
#include "translate/host_queries.h"
#include "translate/package_prefix.h"
#include "translate/ranges.h"
#include "translate/text_forms.h"

namespace {

struct Arguments {
    const char *name;  // of the function or array
    bool is_variable;  // the name is known to be one
    int count;
};

size_t own_form_size(const Arguments *of, const vExpr *list) {
    size_t length = strlen(of->name);
    size_t total = 0;
    for (; list; list = list->next) total += strlen(list->item->text);
    return (length + 65) * static_cast<size_t>(of->count) + 2 * (length + total) + 20;
}

// The upper bound that end stands for in argument k, under a step other than 1: the number of all
// elements, the bound of dimension k, or the product of the bounds from dimension k on.
char *write_stepped_to_end(char *at, const Arguments *of, int k, const mRange *range) {
    char dimension[12];
    snprintf(dimension, sizeof dimension, "%d", k);
    const char *start = range->start->text;
    const char *step = range->step->text;
    if (of->count == 1) {
        return write_form(at, "Vector[row]([seq(%s..ArrayNumElems(%s,'All'),%s)])",
                          {start, of->name, step});
    }
    if (k < of->count) {
        return write_form(at, "Vector[row]([seq(%s..rhs(ArrayDims(%s)[%s]),%s)])",
                          {start, of->name, dimension, step});
    }
    return write_form(at, "Vector[row]([seq(%s..mul(rhs(i),i in ArrayDims(%s)[%s..]),%s)])",
                      {start, of->name, dimension, step});
}

char *write_argument(char *at, const Arguments *of, int k, const mExpr *argument) {
    if (is_colon(argument)) return write_text(at, "..");
    if (!is_range(argument)) return write_text(at, argument->text);
    const mRange *range = argument->range;
    if (!range->stop) {
        if (has_unit_step(range)) return write_form(at, "%s..", {range->start->text});
        return write_stepped_to_end(at, of, k, range);
    }
    if (of->is_variable && has_unit_step(range)) {
        return write_form(at, "%s..%s", {range->start->text, range->stop->text});
    }
    return write_text(at, argument->text);
}

mExpr *new_own_form(const Arguments *of, const vExpr *list) {
    char *text;
    mExpr *expr = alloc_text_mExpr(EXPR_CALL, 0, own_form_size(of, list), &text);
    if (of->count == 1 && is_colon(list->item)) {
        write_form(text, "Vector[column](%s(..))", {of->name});
        return expr;
    }
    char *at = write_form(text, "%s(", {of->name});
    for (int k = 1; list; k++, list = list->next) {
        if (k > 1) at = write_text(at, ", ");
        at = write_argument(at, of, k, list->item);
    }
    write_text(at, ")");
    return expr;
}

// The host's form of the call. Without one the name is recorded as called; null.
mExpr *new_host_form(const char *name, const vExpr *list) {
    if (const char *call = translate_call(name, list)) {
        mExpr *expr = alloc_mExpr();
        *expr = {EXPR_CALL, StrDup(note_package(call)), 0, nullptr};
        return expr;
    }
    StringHashInsert(CalledNames, name, const_cast<char *>(name));
    return nullptr;
}

}  // namespace

mExpr *new_function_node(const mExpr *name, const vExpr *arguments) {
    bool is_variable = StringHashLookup(KnownVariables, name->text) != nullptr;
    if (AddTranslator && !is_variable && !StringHashLookup(CalledNames, name->text)) {
        if (mExpr *call = new_host_form(name->text, arguments)) return call;
    }
    Arguments of = {name->text, is_variable, count_vExpr(arguments)};
    return new_own_form(&of, arguments);
}
