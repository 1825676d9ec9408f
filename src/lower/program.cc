// Whole programs.
#include "lower/program.h"

#include <assert.h>

#include "diagnose/messages.h"
#include "emit/output.h"
#include "lower/classes/methods.h"
#include "lower/library/source_calls.h"
#include "lower/lines/gaps.h"
#include "lower/lines/origins.h"
#include "lower/procedures/procedures.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/program/outside_functions.h"
#include "lower/program/packages.h"
#include "lower/program/settled_functions.h"
#include "lower/statements/statements.h"
#include "lower/targets/part_starts.h"
#include "run/run_state.h"
#include "support/observers.h"

namespace {

// What a called script adds to the program, at most this often in a run: scripts that call others
// twice double with every level.
constexpr int MOST_SCRIPT_CALLS = 10000;
int ScriptCalls;
int ScriptDepth;

// The statements there are never run: one message is about all of them.
void report_outside(const Node *first, const Node *after) {
    const Node *node = first;
    while (node != after && !is_statement(node)) node = node->next;
    if (node != after) report_at(OUTSIDE_GAP, node);
}

void write_outside(const Node *first, const Node *after) {
    report_outside(first, after);
    Lines lines = {};
    LoweringContext outer = begin_lowering(nullptr, &lines, 0);
    lower_siblings(first, after, 0);
    Lowering = outer;
    if (lines.first && after) add_line(&lines, 0, "");
    write_lines(&lines);
}

// The functions of the current file. In a script the rest is left to it; else comments stay where
// they are, and so does the source of what could not be read or is never run.
void write_functions(bool is_script) {
    settle_functions(is_script);
    const Node *start = CurrentFile->tree->first_child;
    for (const FileFunction *function = CurrentFile->functions; function;
         function = function->next) {
        const Node *comments = comments_above(start, function->node);
        if (!is_script) write_outside(start, comments);
        Lines lines = {};
        start = after_trailing_comments(function->node);
        lower_function(function, comments, &lines);
        write_lines(&lines);
    }
    if (!is_script) write_outside(start, nullptr);
}

void lower_script(Scope *scope, Lines *lines) {
    CallsFromProcedure = false;
    LoweringContext outer = begin_lowering(scope, lines, 0);
    Lowering.script.is_open = true;
    put_starts(scope);
    put_pieces(scope->owner->first_child);
    Lowering = outer;
}

// Whether a procedure that has been lowered since uses a variable's name.
bool must_rename(const Scope *scope) {
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (is_variable(symbol) && symbol->written == symbol->name && must_change_name(symbol))
            return true;
    return false;
}

void write_called_files() {
    while (SourceFile *file = take_called_file()) {
        CurrentFile = file;
        write_functions(file->is_script);
    }
}

void write_script(const PackageFlags *used, const Lines *lines) {
    Lines head = {};
    if (FileMode && used->array_tools) add_line(&head, 0, "with(ArrayTools):");
    if (FileMode && used->linear_algebra) add_line(&head, 0, "with(LinearAlgebra):");
    write_lines(&head);
    write_lines(lines);
}

// The statements are lowered before the files that they call and written after them.
void translate_script(SourceFile *file) {
    Scope *scope = settle_statements();
    PackageFlags outer = begin_packages();
    Lines lines = {};
    lower_script(scope, &lines);
    PackageFlags used = end_packages(outer);
    write_called_files();
    CurrentFile = file;
    if (must_rename(scope)) {
        lines = {};
        // anew: a procedure may have called the same scripts, with variables of its own
        lower_script(settle_statements(), &lines);
        write_called_files();
    }
    write_script(&used, &lines);
}

const char *script_refusal(const SourceFile *file) {
    if (file->is_open) return "it calls itself";
    if (ScriptDepth == DEEPEST_SCRIPT) return "more than 20 scripts call each other";
    return ScriptCalls == MOST_SCRIPT_CALLS ? "10000 scripts have been put already" : nullptr;
}

}  // namespace

void begin_program(SourceLanguage language) {
    begin_messages();
    begin_syntax();
    begin_files(language);
    begin_origins();
    begin_calls();
    begin_outside_functions();
    begin_source_calls();
    begin_methods();
    begin_procedures();
    ScriptCalls = ScriptDepth = 0;
    SwitchVariables = 0;
}

void lower_program(const char *path, const char *text, uint32_t length) {
    SourceFile *file = read_main_file(path, text, length);
    if (Observing.tree) Observing.tree(Observing.context, file->tree);
    if (Observing.only_reads) return;
    file->is_open = true;
    if (Observing.holds_library) call_all_sources();
    bool is_script = has_statements(file->tree) || !file->functions;
    write_functions(is_script);
    if (is_script)
        translate_script(file);
    else
        write_called_files();
    assert(ScriptDepth == 0 && !CallingOrigin);
    if (Observing.program) Observing.program(Observing.context, file);
}

const char *lower_script_call(const Node *name) {
    SourceFile *file = file_of_script(name);
    if (!file) return "its name leads elsewhere from the script that calls it";
    if (const char *refusal = script_refusal(file)) return refusal;
    SourceFile *outer = CurrentFile;
    CurrentFile = file;
    file->is_open = true;
    ScriptCalls++;
    ScriptDepth++;
    Origin *calling_origin = CallingOrigin;
    CallingOrigin = CurrentOrigin;
    ScriptContext calling = Lowering.script;
    Lowering.script = {};
    Lowering.script.is_open = true;
    put_pieces(file->tree->first_child);
    Lowering.script = calling;
    CallingOrigin = calling_origin;
    ScriptDepth--;
    file->is_open = false;
    CurrentFile = outer;
    return nullptr;
}
