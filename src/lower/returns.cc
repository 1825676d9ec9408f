// The return of a procedure's results: as many as its caller asks for.
#include "lower/context.h"
#include "lower/host_conditions.h"
#include "lower/host_words.h"
#include "lower/procedures.h"
#include "lower/text_list.h"

namespace {

constexpr char VALUES[] = "seq(varargout(qxrp_i),qxrp_i=1..%s)";

TextList output_names(const Scope *scope) {
    TextList names = {};
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (symbol->flags & SYMBOL_OUTPUT) append_text(&names, written_name(symbol));
    return names;
}

void put_branch(const char *head, const char *condition, const char *values) {
    put_line("%s %s then", {head, condition});
    put_inner_line("return %s;", {values});
}

void put_last_branch(const char *values) {
    put_line("else", {});
    put_inner_line("return %s;", {values});
    put_line("end if;", {});
}

// A branch for every number of results from 2 on up to the named outputs.
int put_exact_branches(const TextList *names, const TextCell *end) {
    int results = 2;
    for (const TextCell *last = names->first->next; last != end; last = last->next, results++) {
        const char *condition = form_text("_nresults = %s", {number_text(results)});
        put_branch(results == 2 ? "if" : "elif", condition, join_texts(names, last->next));
    }
    return results;
}

void put_named_results(const TextList *names) {
    if (!names->first->next) return put_line("return %s;", {names->first->text});
    put_exact_branches(names, nullptr);
    put_last_branch(names->first->text);
}

// varargout alone: a caller that asks for nothing may find it empty.
void put_varargout() {
    put_branch("if", count_condition("_nresults", OP_GE, 2), form_text(VALUES, {"_nresults"}));
    const char *count = "ArrayNumElems(varargout,'All')";
    put_branch("elif", count_condition(count, OP_GE, 1), "varargout(1)");
    put_line("end if;", {});
}

// Named outputs in front of varargout, its cell.
void put_results_and_varargout(const TextList *names, const TextCell *varargout) {
    int results = 1;
    for (const TextCell *cell = names->first; cell->next != varargout; cell = cell->next) results++;
    const char *bound = form_text("_nresults-%s", {number_text(results)});
    const char *all =
        form_text("%s, %s", {join_texts(names, varargout), form_text(VALUES, {bound})});
    if (results == 1) return put_line("return %s;", {all});
    put_exact_branches(names, varargout);
    put_branch("elif", count_condition("_nresults", OP_GE, results + 1), all);
    put_last_branch(names->first->text);
}

}  // namespace

void put_return() {
    const Scope *scope = Lowering.scope;
    TextList names = output_names(scope);
    if (!names.first) return;
    if (!(scope->flags & HAS_VARARGOUT)) return put_named_results(&names);
    if (names.first == names.last) return put_varargout();
    put_results_and_varargout(&names, names.last);
}
