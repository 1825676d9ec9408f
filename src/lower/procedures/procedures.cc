// Procedures.
#include "lower/procedures/procedures.h"

#include <assert.h>
#include <algorithm>

#include "diagnose/messages.h"
#include "lower/calls/exist.h"
#include "lower/lines/origins.h"
#include "lower/lines/text_list.h"
#include "lower/procedures/script_returns.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/program/packages.h"
#include "lower/program/settled_functions.h"
#include "lower/statements/statements.h"
#include "lower/targets/part_starts.h"
#include "syntax/scan/spellings.h"
#include "translate/text_forms.h"

namespace {

// What stands in front of the procedure that is being lowered.
Lines *BeforeProcedure;

void add_uses(Lines *lines, int level, PackageFlags used) {
    TextList packages = {};
    if (used.array_tools) append_text(&packages, "ArrayTools");
    if (used.linear_algebra) append_text(&packages, "LinearAlgebra");
    if (packages.first) add_line(lines, level, form_text("uses %s;", {join_texts(&packages)}));
}

bool is_nested_function(const Symbol *symbol) {
    return symbol->definition && symbol->definition->kind == NODE_FUNCTION;
}

bool is_local(const Symbol *symbol) {
    if (symbol->flags & (SYMBOL_GLOBAL | SYMBOL_PERSISTENT)) return false;
    if (symbol->position > 0) return is_copied_parameter(symbol);
    return is_variable(symbol) || is_nested_function(symbol);
}

// The outputs are the first symbols of a scope.
void add_local(Lines *lines, int level, const Scope *scope, const GeneratedName *generated) {
    TextList names = {};
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (is_local(symbol)) append_text(&names, written_name(symbol));
    for (; generated; generated = generated->next) append_text(&names, generated->text);
    if (names.first) add_line(lines, level, form_text("local %s;", {join_texts(&names)}));
}

void add_global(Lines *lines, int level, const Scope *scope) {
    if (!scope->globals) return;
    TextList names = {};
    for (const SymbolCell *cell = scope->globals; cell; cell = cell->next) {
        const char *name = written_name(cell->symbol);
        append_text(&names, name);
        note_global(intern(name));
    }
    add_line(lines, level, form_text("global %s;", {join_texts(&names)}));
    add_line(lines, level, "");
}

// What could not be read, and commands, may assign them.
void report_outputs(const Scope *scope, const Node *outputs) {
    if (CurrentFile->source->errors > 0) return;
    for (const Node *output = outputs->first_child; output; output = output->next) {
        constexpr uint32_t SET = SYMBOL_VARIABLE & ~uint32_t(SYMBOL_OUTPUT);
        if (output->symbol->flags & SET) continue;
        if (creator_of(scope, output->text, UINT32_MAX)) continue;
        report(UNASSIGNED_OUTPUT, CurrentFile->source, output->offset, output->length,
               {output->text});
    }
}

void report_outer_settings(const Scope *scope) {
    for (const NodeCell *cell = scope->settings; cell; cell = cell->next) {
        const Node *name = cell->node;
        report(SHARED_VARIABLE, CurrentFile->source, name->offset, name->length, {name->text});
    }
}

// qxrp_FILE_f_n: the function's name tells the variables of two functions apart.
void name_persistent(const Scope *scope, const char *function) {
    const char *stem = CurrentFile->stem;
    const char *file = stem && is_identifier(stem) ? form_text("%s_", {stem}) : "";
    for (const SymbolCell *cell = scope->globals; cell; cell = cell->next)
        if ((cell->symbol->flags & SYMBOL_PERSISTENT) && cell->symbol->scope == scope)
            cell->symbol->written =
                claim_name(form_text("qxrp_%s%s_%s", {file, function, cell->symbol->name}));
}

// Headers are asked for in the order of the text.
void ask_header_names(const Scope *scope) {
    constexpr uint32_t HEADER = SYMBOL_OUTPUT | SYMBOL_PARAMETER;
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (symbol->flags & HEADER) written_name(symbol);
}

void add_procedure(Lines *lines, int level, const Node *function, const char *name);

// The nested functions of a body, each with the comments above it.
void put_nested_functions(const Node *first) {
    const Node *start = first;
    for (const Node *node = first; node; node = node->next) {
        if (node->kind != NODE_FUNCTION) continue;
        lower_more_siblings(comments_above(start, node), node);
        start = node->next;
        Symbol *name = child_of_kind(node, NODE_NAME)->symbol;
        add_procedure(Lowering.lines, Lowering.level, node, written_name(name));
        lower_siblings(node->next, after_trailing_comments(node), Lowering.level);
        add_line(Lowering.lines, Lowering.level, "");
    }
}

const Node *after_comments(const Node *first) {
    while (first && first->kind == NODE_COMMENT) first = first->next;
    return first;
}

// After the help text: in front of the comments inside of the first statement, and of those right
// above it when an empty line stands above them.
const Node *after_help(const Node *first) {
    const Node *statement = after_comments(first);
    if (statement && statement->kind == NODE_FUNCTION) return comments_above(first, statement);
    const Node *remark = nullptr;
    const Node *node = first;
    for (; node != statement && !has_flag(node, INSIDE); node = node->next)
        if (has_flag(node, BLANK_BEFORE) && !has_flag(node, TRAILING)) remark = node;
    return node && remark && !has_flag(node, BLANK_BEFORE) ? remark : node;
}

// The parameters that are checked first get their values in between.
void put_statements(const Prelude *prelude, const Node *first) {
    const Node *check = prelude->check.statement;
    if (!check) return put_pieces(first);
    const Node *rest = after_trailing_comments(check);
    lower_more_siblings(first, rest);
    put_checked_parameters(prelude);
    put_pieces(rest);
}

// Help text, nested functions, what the parameters need, the body, the results.
void put_body(const Node *block, const Scope *scope) {
    const Node *first = block->first_child;
    const Node *rest = after_help(first);
    lower_siblings(first, rest, Lowering.level);
    put_nested_functions(rest);
    Prelude prelude = begin_prelude(scope, rest);
    put_prelude(&prelude);
    put_starts(scope);
    put_absences(scope);
    put_results_procedure();
    put_statements(&prelude, put_argument_blocks(rest));
    if (last_return(block)) return;
    Origin *outer = begin_origin(RESULT_LINES, scope->owner->first_child);
    put_return(block);
    end_origin(outer);
}

// Up to the end of what its parentheses hold.
Origin *begin_function(const Node *function) {
    const Node *name = child_of_kind(function, NODE_NAME);
    const Node *parameters = child_of_kind(function, NODE_PARAMETERS);
    uint32_t end = std::max(end_of(name), end_of(parameters));
    return begin_origin(FUNCTION_LINES, function->offset, end);
}

// The end is a word, or does not stand in the source.
void add_end(Lines *lines, int level, const Node *function) {
    const Node *block = child_of_kind(function, NODE_BLOCK);
    bool has_end = has_flag(function, CLOSED_BY_END);
    Origin *outer = begin_origin(END_LINES, function);
    begin_rest(has_end ? end_of(block) : end_of(function));
    add_line(lines, level, "end proc;");
    end_origin(outer);
}

void add_procedure(Lines *lines, int level, const Node *function, const char *name) {
    const Scope *scope = scope_of(function);
    assert(scope && "its names are settled");
    const Node *outputs = function->first_child;
    report_outputs(scope, outputs);
    report_outer_settings(scope);
    PackageFlags outer_flags = begin_packages();
    Origin *outer_origin = begin_function(function);
    Lines body = {};
    LoweringContext outer = begin_lowering(scope, &body, level + 1);
    name_persistent(scope, name);
    ask_header_names(scope);
    add_line(lines, level, form_text("%s := proc( %s )", {name, parameter_list(scope)}));
    put_body(child_of_kind(function, NODE_BLOCK), scope);
    add_uses(lines, level + 1, end_packages(outer_flags));
    add_local(lines, level + 1, scope, Lowering.generated);
    add_global(lines, level + 1, scope);
    append_lines(lines, &body);
    add_end(lines, level, function);
    end_origin(outer_origin);
    Lowering = outer;
}

void add_comments(Lines *lines, const Node *comments, const Node *after) {
    LoweringContext outer = begin_lowering(nullptr, lines, 0);
    lower_siblings(comments, after, 0);
    Lowering = outer;
}

}  // namespace

void put_pieces(const Node *first) {
    const Node *start = first;
    for (const Node *node = first; node; node = node->next) {
        if (node->kind != NODE_FUNCTION) continue;
        lower_more_siblings(start, comments_above(start, node));
        start = after_trailing_comments(node);
    }
    lower_more_siblings(start, nullptr);
    close_rest(&Lowering.script.rest);
}

const Node *last_return(const Node *body) {
    const Node *last = nullptr;
    for (const Node *node = body->first_child; node; node = node->next)
        if (node->kind != NODE_FUNCTION && node->kind != NODE_COMMENT) last = node;
    return last && last->kind == NODE_RETURN ? last : nullptr;
}

const Node *after_trailing_comments(const Node *node) {
    const Node *next = node->next;
    while (next && next->kind == NODE_COMMENT && has_flag(next, TRAILING)) next = next->next;
    return next;
}

const Node *comments_above(const Node *first, const Node *function) {
    const Node *above = function;
    for (const Node *node = first; node != function; node = node->next) {
        assert(node && "it stands in front of the function");
        bool is_above = node->kind == NODE_COMMENT && !has_flag(node, TRAILING);
        if (!is_above) above = function;
        if (is_above && above == function) above = node;
    }
    return above;
}

void begin_procedures() {
    Lowering = {};
    BeforeProcedure = nullptr;
}

void lower_function(const FileFunction *function, const Node *comments, Lines *lines) {
    assert(!BeforeProcedure && "functions of a file are lowered one after the other");
    const Node *node = function->node;
    settle_late(function);
    Lines before = {};
    Lines procedure = {};
    BeforeProcedure = &before;
    CallsFromProcedure = true;
    add_procedure(&procedure, 0, node, function->written);
    BeforeProcedure = nullptr;
    add_comments(lines, comments, node);
    if (comments != node && has_flag(node, BLANK_BEFORE)) add_line(lines, 0, "");
    append_lines(lines, &before);
    append_lines(lines, &procedure);
    add_comments(lines, node->next, after_trailing_comments(node));
    add_line(lines, 0, "");
}

// Their values stay from call to call: they are global in the host, empty at first.
void lower_persistent(const Node *declaration) {
    if (!BeforeProcedure) return;
    LoweringContext inside = Lowering;
    Lowering.lines = BeforeProcedure;
    Lowering.level = 0;
    for (const Node *child = declaration->first_child; child; child = child->next) {
        if (child->kind == NODE_NAME)
            put_line("%s := Vector();", {written_name(child->symbol)});
        else
            lower_siblings(child, child->next, 0);
    }
    inside.temporaries = Lowering.temporaries;
    Lowering = inside;
}
