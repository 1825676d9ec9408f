// Calls that the front end makes up.
#include "lower/calls/keyword_calls.h"

#include <string.h>

#include "lower/expressions/operands.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "translate/calls.h"
#include "translate/host_queries.h"
#include "translate/indices.h"
#include "translate/text_forms.h"

void append_expr(ExprList *list, mExpr *expr) {
    vExpr *cell = alloc_vExpr(expr);
    (list->last ? list->last->next : list->first) = cell;
    list->last = cell;
}

const char *exprs_text(const vExpr *list, const char *before, const char *after) {
    size_t size = strlen(before) + strlen(after) + 1;
    for (const vExpr *cell = list; cell; cell = cell->next)
        size += strlen(plain_value(cell->item)->text) + 2;
    Writer to = new_text(size);
    const char *text = to.at;
    write_text(&to, before);
    for (const vExpr *cell = list; cell; cell = cell->next) {
        if (cell != list) write_text(&to, ", ");
        write_text(&to, plain_value(cell->item)->text);
    }
    write_text(&to, after);
    return text;
}

static mExpr *ask(const char *name, const vExpr *arguments, int32_t results) {
    if (!AddTranslator) return nullptr;
    RequestedResults = results;
    mExpr *answer = new_host_call(name, arguments);
    RequestedResults = HOST_RESULTS_UNKNOWN;
    return answer;
}

mExpr *ask_host(const char *name, const vExpr *arguments, int32_t results) {
    mExpr *answer = ask(name, arguments, results);
    if (answer) answer->text = indent_inner_lines(answer->text, Lowering.level);
    return answer;
}

mExpr *new_keyword_call(const char *keyword, const vExpr *arguments) {
    mExpr *answer = ask_host(keyword, arguments);
    return answer ? answer : new_element_node(keyword, FUNCTION_INDEX, arguments);
}

static ExprList as_list(std::initializer_list<const char *> texts) {
    ExprList list = {};
    for (const char *text : texts) append_expr(&list, new_leaf(text));
    return list;
}

mExpr *new_keyword_call(const char *keyword, std::initializer_list<const char *> arguments) {
    ExprList list = as_list(arguments);
    mExpr *call = new_keyword_call(keyword, list.first);
    free_vExpr(list.first);
    return call;
}

const char *ask_keyword(const char *keyword, std::initializer_list<const char *> arguments) {
    ExprList list = as_list(arguments);
    const mExpr *answer = ask(keyword, list.first, 0);
    free_vExpr(list.first);
    return answer ? answer->text : nullptr;
}
