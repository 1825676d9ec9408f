// The return of a procedure's results: as many as its caller asks for.
#include <string.h>

#include "lower/conditions/host_conditions.h"
#include "lower/lines/origins.h"
#include "lower/lines/text_list.h"
#include "lower/procedures/procedures.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/program/program_files.h"
#include "syntax/tree/value.h"

namespace {

// The first elements of varargout, or of a cell of results.
const char *elements_text(const char *cell, const char *count) {
    return form_text("seq(%s(qxrp_i),qxrp_i=1..%s)", {cell, count});
}

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

// The first so many; 0: all.
TextList first_names(const TextList *names, size_t count) {
    TextList first = {};
    for (const TextCell *name = names->first; name; name = name->next) {
        append_text(&first, name->text);
        if (--count == 0) break;
    }
    return first;
}

void put_named_results(const TextList *names) {
    if (!names->first->next) return put_line("return %s;", {names->first->text});
    put_exact_branches(names, nullptr);
    put_last_branch(names->first->text);
}

// varargout alone: a caller that asks for nothing may find it empty.
void put_varargout(const char *varargout, bool is_written) {
    put_branch("if", count_condition("_nresults", OP_GE, 2), elements_text(varargout, "_nresults"));
    const char *count = form_text("ArrayNumElems(%s,'All')", {varargout});
    put_branch("elif", count_condition(count, OP_GE, 1), form_text("%s(1)", {varargout}));
    if (is_written) {
        put_line("else", {});
        put_inner_line("return;", {});
    }
    put_line("end if;", {});
}

// Named outputs in front of varargout, its cell.
void put_results_and_varargout(const TextList *names, const TextCell *varargout) {
    int results = 1;
    for (const TextCell *cell = names->first; cell->next != varargout; cell = cell->next) results++;
    const char *bound = form_text("_nresults-%s", {number_text(results)});
    const char *all =
        form_text("%s, %s", {join_texts(names, varargout), elements_text(varargout->text, bound)});
    if (results == 1) return put_line("return %s;", {all});
    put_exact_branches(names, varargout);
    put_branch("elif", count_condition("_nresults", OP_GE, results + 1), all);
    put_last_branch(names->first->text);
}

// Bytes of the branches above, which name the first output in each, the second in all but one ...
size_t branches_length(const TextList *names) {
    constexpr size_t HEAD = 40;
    size_t values = 0;
    size_t all = 0;
    for (const TextCell *cell = names->first; cell; cell = cell->next) {
        values += strlen(cell->text) + strlen(", ");
        all += HEAD + values;
    }
    return all;
}

// A longer return is written once for all returns of a function, and without repeating the names.
constexpr size_t LONGEST_RETURN = 2048;

const char *hidden_name() { return form_text("qxrp_%s", {number_text(++Lowering.temporaries)}); }

// The first results go into a cell, as many as are asked for.
void put_collected(const TextList *names, const TextCell *varargout, const char *asked) {
    const char *cell = hidden_name();
    put_line("local %s;", {cell});
    put_line("%s := rtable([copy(%s)],subtype='Vector[row]');", {cell, names->first->text});
    int results = 1;
    for (const TextCell *name = names->first->next; name != varargout; name = name->next) {
        put_line("if %s then", {count_condition(asked, OP_GE, ++results)});
        put_inner_line("%s(%s) := copy(%s);", {cell, number_text(results), name->text});
        put_line("end if;", {});
    }
    const char *last = number_text(results);
    if (varargout) {
        const char *bound = form_text("%s-%s", {asked, last});
        put_branch("if", count_condition(asked, OP_GE, results + 1),
                   form_text("%s, %s",
                             {elements_text(cell, last), elements_text(varargout->text, bound)}));
    }
    put_branch(varargout ? "elif" : "if", count_condition(asked, OP_GE, 2),
               elements_text(cell, asked));
    put_last_branch(form_text("%s(1)", {cell}));
}

}  // namespace

const char *varargout_name(const Scope *scope) { return output_names(scope).last->text; }

void put_results_procedure() {
    const Scope *scope = Lowering.scope;
    TextList names = output_names(scope);
    bool has_varargout = (scope->flags & HAS_VARARGOUT) != 0;
    bool is_alone = has_varargout && names.first == names.last;
    if (!names.first || is_alone || branches_length(&names) <= LONGEST_RETURN) return;
    Origin *outer = begin_origin(RESULT_LINES, scope->owner->first_child);
    const char *procedure = new_temporary();
    const char *asked = hidden_name();
    put_line("%s := proc( %s )", {procedure, asked});
    Lowering.level++;
    put_collected(&names, has_varargout ? names.last : nullptr, asked);
    Lowering.level--;
    put_line("end proc;", {});
    end_origin(outer);
    Lowering.results_procedure = procedure;
}

// Where the first result surely has no value, a caller that asks for one goes wrong, and one that
// asks for none does not.
void put_return(const Node *end) {
    const Scope *scope = Lowering.scope;
    bool is_written = end->kind == NODE_RETURN;
    TextList names = output_names(scope);
    bool is_seen = CurrentFile->source->errors == 0;
    bool is_unset = is_seen && end->value == MAY_BE_MISSING;
    if (!names.first || is_unset) return is_written ? put_line("return;", {}) : void();
    if (Lowering.results_procedure)
        return put_line("return %s(_nresults);", {Lowering.results_procedure});
    if (!(scope->flags & HAS_VARARGOUT)) {
        // Who asks for others goes wrong.
        TextList set = first_names(&names, is_seen ? end->results : 0);
        return put_named_results(&set);
    }
    if (names.first == names.last) return put_varargout(names.last->text, is_written);
    put_results_and_varargout(&names, names.last);
}
