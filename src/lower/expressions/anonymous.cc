// Functions as values.
#include "lower/expressions/anonymous.h"

#include <assert.h>
#include <string.h>

#include "lower/calls/requested_results.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/end_positions.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/value_lists.h"
#include "lower/library/library.h"
#include "lower/lines/pieces.h"
#include "lower/lines/text_list.h"
#include "lower/procedures/preludes.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/program/packages.h"
#include "lower/targets/shared_parts.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "translate/host_queries.h"
#include "translate/text_forms.h"

namespace {

// A member of a package, with the host's selection for the dots.
const char *member_text(const char *name) {
    const char *text = "";
    for (;;) {
        size_t length = strcspn(name, ".");
        text = form_text("%s%s", {text, written_field(KeepText(name, length))});
        name += length;
        if (*name++ == '\0') return text;
        text = form_text("%s:-", {text});
    }
}

const char *handle_text(const Node *node) {
    if (const char *own = own_function(node)) return own;
    note_piece(node, CALL_OF_LANGUAGE);
    RequestedResults = HOST_HANDLE;
    const char *answer = translate_name(node->text);
    RequestedResults = HOST_RESULTS_UNKNOWN;
    if (answer) {
        note_piece(node, CALL_OF_HOST);
        return KeepText(answer, strlen(answer));
    }
    if (const char *function = library_handle(node)) return function;
    const char *written = called_function(node, true);
    return strchr(written, '.') ? member_text(written) : written;
}

// Settings around a body: it names packages itself, as no uses line of the procedure around it need
// hold in it.
struct Surroundings {
    LoweringContext context;
    int32_t file_mode;
    PackageFlags packages;
};

// They are kept apart from the stack: the frames of nested functions stay small.
[[gnu::noinline]] const Surroundings *enter_body(const Scope *scope, Lines *lines) {
    Surroundings *outer = AllocRecord<Surroundings>();
    *outer = {Lowering, FileMode, begin_packages()};
    FileMode = 0;
    begin_lowering(scope, lines, Lowering.level + 1);
    return outer;
}

// A gap in the body is one of the statement around it.
void leave_body(const Surroundings *outer) {
    MessageId gap = Lowering.gap;
    int32_t inner_procedures = Lowering.inner_procedures;
    Lowering = outer->context;
    Lowering.inner_procedures += inner_procedures;
    if (gap != MESSAGE_COUNT) Lowering.gap = gap;
    FileMode = outer->file_mode;
    end_packages(outer->packages);
}

const char *lower_body(const Node *body) {
    return is_value_list(body, false) ? lower_kept_list(body)->text
                                      : held_text(body, lower_expression(body)->text);
}

const char *locals_text() {
    TextList names = {};
    const Scope *scope = Lowering.scope;
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (symbol->position == 0 && is_variable(symbol)) append_text(&names, written_name(symbol));
    for (const GeneratedName *cell = Lowering.generated; cell; cell = cell->next)
        append_text(&names, cell->text);
    return names.first ? join_texts(&names) : nullptr;
}

const char *procedure_text(const char *parameters, const char *value) {
    const char *locals = locals_text();
    bool is_one_line = !locals && !Lowering.lines->first && Lowering.inner_procedures == 0;
    if (is_one_line) return form_text("proc( %s ) return %s; end proc", {parameters, value});
    Lowering.inner_procedures++;
    Lines all = {};
    if (locals) add_line(&all, Lowering.level, form_text("local %s;", {locals}));
    append_lines(&all, Lowering.lines);
    add_line(&all, Lowering.level, form_text("return %s;", {value}));
    add_line(&all, Lowering.level - 1, "end proc");
    return form_text("proc( %s )\n%s", {parameters, lines_text(&all)});
}

bool is_deal(const Node *body) {
    const Node *base = body->kind == NODE_REFERENCE ? body->first_child : body;
    bool is_function = base != body && base->kind == NODE_NAME && !is_variable(base->symbol);
    const Node *arguments = base->next;
    return is_function && strcmp(base->text, "deal") == 0 && arguments->kind == NODE_ARGUMENTS &&
           !arguments->next && count_children(arguments) > 1;
}

// What the body gives: of deal(a, b) its arguments, which are as many as the caller asks for.
const char *lower_result(const Node *body) {
    if (!is_deal(body)) return lower_body(body);
    ExprList values = lower_values(second_child(body));
    const char *text = exprs_text(values.first);
    free_vExpr(values.first);
    return text;
}

// A branch for each number of results from 2 on, as the host does not hand the number on.
void put_results(const char *value, int32_t most) {
    TextList names = {};
    append_text(&names, new_temporary());
    for (int results = 2; results <= most; results++) {
        append_text(&names, new_temporary());
        const char *all = join_texts(&names);
        put_line("if _nresults = %s then", {number_text(results)});
        Lowering.level++;
        put_line("(%s) := %s;", {all, value});
        put_line("return %s;", {all});
        Lowering.level--;
        put_line("end if;", {});
    }
}

bool is_call(const Node *body) {
    return body->kind == NODE_REFERENCE || (body->kind == NODE_NAME && !is_variable(body->symbol));
}

constexpr int32_t MOST_RESULTS = 8;

const char *lower_procedure(const Node *node) {
    const Scope *scope = scope_of(node);
    const Node *body = without_parens(second_child(node));
    int32_t results =
        node == Lowering.asked && is_call(body) && !is_deal(body) ? Lowering.results : 0;
    Lines lines = {};
    const Surroundings *outer = enter_body(scope, &lines);
    const char *parameters = parameter_list(scope);
    Prelude prelude = begin_prelude(scope, nullptr);
    put_prelude(&prelude);
    if (results > 1) request_results(body, HOST_RESULTS_VARY);
    if (may_change_results(scope)) begin_holding(nullptr, body);
    const char *value = lower_result(body);
    if (results > 1) put_results(value, results < MOST_RESULTS ? results : MOST_RESULTS);
    const char *text = procedure_text(parameters, value);
    leave_body(outer);
    return text;
}

// What is bound: the names, and their values now.
struct Bindings {
    TextList names;
    TextList values;
};

Bindings bindings_of(const Scope *scope) {
    Bindings bindings = {};
    for (const Capture *at = next_captured(scope, nullptr); at; at = next_captured(scope, at)) {
        Symbol *symbol = symbol_of(at);
        if (!needs_binding(scope, symbol)) continue;
        const char *name = written_name(symbol);
        bool may_change = symbol->flags & SYMBOL_CHANGED;
        append_text(&bindings.names, name);
        append_text(&bindings.values, may_change ? form_text("copy(%s)", {name}) : name);
    }
    return bindings;
}

// A procedure that makes the procedure: called now, its parameters keep the values.
const char *bind_values(const Bindings *bindings, const char *procedure) {
    const char *maker = new_temporary();
    put_line("%s := proc( %s ) return %s; end proc;",
             {maker, join_texts(&bindings->names), procedure});
    return form_text("%s(%s)", {maker, join_texts(&bindings->values)});
}

}  // namespace

mExpr *lower_handle(const Node *node) { return new_leaf(handle_text(node)); }

mExpr *lower_anonymous(const Node *node) {
    assert(node->kind == NODE_ANONYMOUS);
    const char *procedure = lower_procedure(node);
    Bindings bindings = bindings_of(scope_of(node));
    return new_call_leaf(bindings.names.first ? bind_values(&bindings, procedure) : procedure);
}
