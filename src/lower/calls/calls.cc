// Names alone, and calls of functions.
#include "lower/calls/calls.h"

#include <assert.h>
#include <string.h>

#include "lower/calls/exist.h"
#include "lower/calls/given_copies.h"
#include "lower/calls/plain_calls.h"
#include "lower/calls/requested_results.h"
#include "lower/classes/methods.h"
#include "lower/expressions/end_positions.h"
#include "lower/expressions/field_literals.h"
#include "lower/expressions/operands.h"
#include "lower/library/kept_arguments.h"
#include "lower/library/library.h"
#include "lower/lines/gaps.h"
#include "lower/lines/pieces.h"
#include "lower/program/called_functions.h"
#include "lower/program/host_words.h"
#include "lower/program/outside_functions.h"
#include "lower/targets/shared_parts.h"
#include "support/allocation.h"
#include "support/same_text.h"
#include "syntax/library/library_table.h"
#include "syntax/names/assigned_values.h"
#include "syntax/scan/spellings.h"
#include "syntax/trace/taken_parts.h"
#include "syntax/tree/new_nodes.h"
#include "syntax/values/findings.h"
#include "translate/host_queries.h"
#include "translate/indices.h"
#include "translate/operators.h"

const char *host_name(const Node *name) {
    const char *answer = translate_name(name->text);
    if (!answer) return nullptr;
    note_piece(name, CALL_OF_HOST);
    return KeepText(answer, strlen(answer));
}

namespace {

// Names with a form of their own when they are neither variables nor called with arguments.
struct NameForm {
    const char *name;
    const char *form;
};
const NameForm NameForms[] = {
    {"i", "I"}, {"j", "I"}, {"nargin", "nargs"}, {"nargout", "_nresults"}};

const char *fixed_form(const char *name) {
    for (const NameForm &row : NameForms)
        if (is_same_text(row.name, name)) return row.form;
    return nullptr;
}

bool is_truth_value(const char *name) {
    return is_same_text(name, "true") || is_same_text(name, "false");
}

void check_eval(const Node *name) {
    if (is_known_to(name->text, TAKES_CODE)) report_gap(EVAL_GAP, name, {name->text});
}

// A global that is asked for before it is set is empty in MATLAB, and has no value here.
void check_global(const Node *name, const Node *arguments) {
    const Node *argument = arguments ? arguments->first_child : nullptr;
    if (!is_same_text(name->text, "isempty") || !argument || argument->kind != NODE_NAME) return;
    if (argument->symbol->flags & SYMBOL_GLOBAL)
        report_at(GLOBAL_START, argument, {argument->text});
}

bool shows_function(const Node *name) {
    bool shows = is_same_text(name->text, "func2str") || is_same_text(name->text, "functions");
    return shows && !is_function_of_file(name);
}

// The same where such a function is given to another, as to cellfun.
void check_function_texts(const Node *name, const Node *arguments) {
    if (arguments && shows_function(name)) report_at(FUNCTION_TEXT, name, {name->text});
    const Node *argument = arguments ? arguments->first_child : nullptr;
    for (; argument; argument = argument->next)
        if (argument->kind == NODE_HANDLE && shows_function(argument))
            report_at(FUNCTION_TEXT, argument, {argument->text});
}

mExpr *ask_call(const OutsideCall *of, const vExpr *values) {
    const Node *name = of->name;
    mExpr *call = ask_host(of->answer ? of->answer : name->text, values, of->results);
    if (call) note_piece(name, CALL_OF_HOST);
    return call;
}

bool takes_whole(const TakenPart *taken, int32_t position) {
    while (taken && (taken->position != position || taken->path)) taken = taken->next;
    return taken;
}

// What surely is, or holds, a cell among the arguments where the function takes elements of an
// array.
void check_cells(const Node *name, const Node *arguments, const TakenPart *taken) {
    const Node *argument = arguments && taken ? arguments->first_child : nullptr;
    for (int32_t position = 1; argument && !may_be_list(argument);
         argument = argument->next, position++) {
        bool is_cell = kinds_of(value_of(argument)) == MAY_BE_CELL;
        if (has_flag(argument, GIVES_CELL) || (is_cell && takes_whole(taken, position)))
            report_at(CELL_GIVEN, argument, {name->text});
    }
}

// Of a function of the file, or of one without a name; its names may not be settled yet.
const TakenPart *taken_by(const Node *function) {
    const Scope *scope = scope_of(function);
    return scope ? scope->taken : nullptr;
}

const TakenPart *taken_by_function(const Node *function) {
    if (function->kind == NODE_ANONYMOUS) return taken_by(function);
    if (function->kind != NODE_HANDLE) return nullptr;
    if (const Node *own = own_definition(function->symbol)) return taken_by(own);
    const FunctionResults *known = outside_results(function->text);
    return known ? known->taken : nullptr;
}

// The function among the arguments that takes elements; null for none.
const Node *find_taker(const Node *arguments) {
    const Node *function = arguments->first_child;
    while (function && !taken_by_function(function)) function = function->next;
    return function;
}

// The same where a function is passed on together with a cell.
void check_passed_on(const Node *name, const Node *arguments) {
    const Node *argument = arguments ? arguments->first_child : nullptr;
    for (; argument; argument = argument->next) {
        const Node *taker = has_flag(argument, GIVES_CELL) ? find_taker(arguments) : nullptr;
        if (!taker) continue;
        report_at(CELL_GIVEN, argument, {taker->kind == NODE_HANDLE ? taker->text : name->text});
    }
}

// Adds the parameters of which elements are taken, and anything where there are none.
void join_taken(const TakenPart **all, const TakenPart *taken) {
    for (; taken; taken = taken->next) {
        bool is_new = taken->path ? !*all : !takes_whole(*all, taken->position);
        if (!is_new) continue;
        TakenPart *joined = AllocRecord<TakenPart>();
        *joined = {taken->position, taken->path, *all};
        *all = joined;
    }
}

// By any of the functions that a variable holds.
const TakenPart *taken_by_any(Symbol *variable) {
    Findings *findings = findings_of(variable);
    if (findings->states[HELD_TAKEN] == IS_FOUND) return findings->taken;
    for (const AssignedValue *value = variable->values; value; value = value->next)
        if (const Node *function = held_function(value))
            join_taken(&findings->taken, taken_by_function(function));
    findings->states[HELD_TAKEN] = IS_FOUND;
    return findings->taken;
}

// A call that the host has not answered.
const char *unanswered_name(const OutsideCall *of) {
    check_eval(of->name);
    const FunctionResults *known = outside_results(of->name->text);
    if (known) check_cells(of->name, of->arguments, known->taken);
    return called_function(of->name, of->may_get_object);
}

mExpr *finish_call(const OutsideCall *of, const vExpr *values);

// The name of the file under way is known, and none at the prompt. Its folder is not: a translation
// is the same wherever the sources lie.
mExpr *new_file_name(const Node *name, const vExpr *arguments) {
    if (arguments || !is_same_text(name->text, "mfilename")) return nullptr;
    if (is_function_of_file(name)) return nullptr;
    return new_leaf(string_text(CurrentFile->stem ? CurrentFile->stem : ""), SCALAR);
}

// true and false are values of the host: an array of them is one of numbers, negated.
mExpr *new_truth_call(const OutsideCall *of, const vExpr *values) {
    const Node *name = of->name;
    if (!values) return new_leaf(name->text);
    Node *numbers = AllocRecord<Node>();
    *numbers = *name;
    numbers->text = intern(name->text[0] == 't' ? "zeros" : "ones");
    OutsideCall call = {numbers, of->arguments, host_name(numbers), 1, of->may_get_object};
    return new_operator1(OP_NOT, finish_call(&call, values));
}

mExpr *finish_call(const OutsideCall *of, const vExpr *values) {
    if (mExpr *call = ask_call(of, values)) return call;
    if (of->answer) return new_call_of(of->answer, values);
    if (is_truth_value(of->name->text)) return new_truth_call(of, values);
    if (mExpr *name = new_file_name(of->name, values)) return name;
    if (mExpr *call = new_library_call(of, values)) return call;
    return new_call_of(unanswered_name(of), values);
}

// An end among the arguments of an unknown name: it is indexed, and the host need not be asked.
mExpr *finish_index(const Node *name, const char *answer, const vExpr *arguments,
                    bool may_get_object) {
    const char *written = answer ? answer : called_function(name, may_get_object);
    vExpr *plain = plain_arguments(arguments);
    mExpr *index = new_index_node(written, VARIABLE_INDEX, plain);
    free_vExpr(plain);
    return index;
}

// Nobody keeps the arguments, but what is in them may change meanwhile.
Holder begin_giving(const Node *name, const Node *arguments) {
    return begin_holding(nullptr, holds_changed_parts(name, arguments) ? arguments : nullptr);
}

mExpr *lower_outside_call(const Node *name, const Node *arguments, bool may_get_object) {
    check_global(name, arguments);
    check_function_texts(name, arguments);
    const char *answer = host_name(name);
    bool is_index = false;
    Holder outer = Lowering.holder;
    bool keeps = keeps_arguments(name);
    if (!keeps) begin_giving(name, arguments);
    ExprList values = lower_arguments(arguments, answer ? answer : name->text, &is_index);
    keeps ? hold_arguments(name, arguments, &values)
          : copy_changed_arguments(name, arguments, &values);
    end_holding(outer);
    rename_fields(name->text, arguments, &values);
    OutsideCall outside = {name, arguments, answer, requested_results(arguments), may_get_object};
    mExpr *call = is_index ? finish_index(name, answer, values.first, may_get_object)
                           : finish_call(&outside, values.first);
    free_vExpr(values.first);
    return call;
}

// A colon is the text ":" to a function.
void spell_colons(ExprList *values) {
    for (vExpr *cell = values->first; cell; cell = cell->next)
        if (is_colon(cell->item)) cell->item = new_leaf("\":\"", SCALAR);
}

}  // namespace

// Arguments of what does not keep them.
static ExprList lower_given(const Node *name, const Node *arguments) {
    Holder outer = begin_giving(name, arguments);
    ExprList values = lower_values(arguments);
    copy_changed_arguments(name, arguments, &values);
    end_holding(outer);
    return values;
}

mExpr *new_procedure_call(const char *procedure, const Node *name, const Node *arguments) {
    ExprList values = lower_given(name, arguments);
    spell_colons(&values);
    mExpr *call = new_call_of(procedure, values.first);
    free_vExpr(values.first);
    return call;
}

// What is called may be any function that the file gives away.
static void check_any_held(const Node *arguments) {
    for (const FileFunction *function = CurrentFile->functions; function;
         function = function->next) {
        const Scope *scope = scope_of(function->node);
        if (scope && (scope->flags & IS_HANDLED))
            check_cells(function->node, arguments, scope->taken);
    }
}

static bool has_cell(const Node *arguments) {
    const Node *argument = arguments->first_child;
    while (argument && kinds_of(value_of(argument)) != MAY_BE_CELL) argument = argument->next;
    return argument;
}

void check_held_call(const Node *reference) {
    const Node *base = reference->first_child;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return;
    const Node *holder = base;
    while (holder->next->next) holder = holder->next;
    const Node *arguments = holder->next;
    if (arguments->kind != NODE_ARGUMENTS || !has_cell(arguments)) return;
    if (holder == base && holds_function(base->symbol)) {
        check_cells(base, arguments, taken_by_any(base->symbol));
    } else if (may_be(value_of(holder), MAY_BE_FUNCTION)) {
        check_any_held(arguments);  // a cell is no index
    }
}

mExpr *lower_call(const Node *name, const Node *arguments) {
    assert(name->kind == NODE_NAME && !is_variable(name->symbol));
    check_passed_on(name, arguments);
    if (const char *own = own_function(name)) {
        const Node *function = own_definition(name->symbol);
        if (function) check_cells(name, arguments, taken_by(function));
        return new_procedure_call(own, name, arguments);
    }
    Dispatch dispatch = dispatch_call(name, arguments);
    if (dispatch.class_name) {
        const char *method = called_method(name, dispatch.class_name, name->text);
        return new_procedure_call(method, name, arguments);
    }
    note_piece(name, CALL_OF_LANGUAGE);
    if (mExpr *test = lower_exist(name, arguments)) return test;
    return lower_outside_call(name, arguments, dispatch.may_get_object);
}

// They stand where the name does.
static const Node *as_arguments(const Node *name, Node *first) {
    Node *arguments = new_text_node(NODE_ARGUMENTS, name->offset, end_of(name), nullptr);
    arguments->first_child = first;
    return arguments;
}

mExpr *call_with_values(const Node *name, Node *first, const vExpr *values, int32_t results) {
    if (const char *own = own_function(name)) return new_call_of(own, values);
    const Node *arguments = as_arguments(name, first);
    Dispatch dispatch = dispatch_call(name, arguments);
    if (dispatch.class_name)
        return new_call_of(called_method(name, dispatch.class_name, name->text), values);
    note_piece(name, CALL_OF_LANGUAGE);
    OutsideCall outside = {name, arguments, host_name(name), results, dispatch.may_get_object};
    return finish_call(&outside, values);
}

// A function without arguments: the host's name of it stands for its value.
static mExpr *lower_bare_call(const Node *name) {
    if (const char *own = own_function(name)) return new_call_of(own, nullptr);
    if (const char *answer = host_name(name)) return new_leaf(answer);
    if (is_truth_value(name->text)) return new_leaf(name->text);
    OutsideCall call = {name, nullptr, nullptr, requested_results(name), false};
    return finish_call(&call, nullptr);
}

mExpr *lower_name(const Node *name) {
    assert(name->kind == NODE_NAME && name->symbol && "names are settled");
    if (is_variable(name->symbol)) return new_leaf(written_name(name->symbol));
    note_piece(name, CALL_OF_LANGUAGE);
    if (is_same_text(name->text, "ans")) {
        report_at(ANS_VALUE, name);
        return new_leaf("ans");
    }
    if (const char *form = fixed_form(name->text)) return new_leaf(form);
    return lower_bare_call(name);
}

// Words stay texts: what a function of the library makes of them nobody can see.
static mExpr *finish_command(const OutsideCall *of, const vExpr *words) {
    if (mExpr *call = ask_call(of, words)) return call;
    return new_call_of(of->answer ? of->answer : unanswered_name(of), words);
}

mExpr *lower_command(const Node *command) {
    const Node *name = command->first_child;
    ExprList words = {};
    note_piece(name, CALL_OF_LANGUAGE);
    const char *own = own_function(name);
    const char *answer = own ? own : host_name(name);
    for (const Node *word = name->next; word; word = word->next)
        append_expr(&words, new_leaf(string_text(word->text), SCALAR));
    OutsideCall outside = {name, nullptr, answer, 0, false};
    mExpr *call = own ? new_call_of(own, words.first) : finish_command(&outside, words.first);
    free_vExpr(words.first);
    return call;
}

mExpr *lower_function_name(const Node *name) {
    if (const char *own = own_function(name)) return new_call_of(own, nullptr);
    note_piece(name, CALL_OF_LANGUAGE);
    const char *answer = host_name(name);
    return new_leaf(answer ? answer : called_function(name));
}
