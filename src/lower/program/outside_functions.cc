// Functions of other files, read for what they give.
#include "lower/program/outside_functions.h"

#include <string.h>

#include "lower/classes/class_folders.h"
#include "lower/program/called_functions.h"
#include "lower/program/program_files.h"
#include "lower/program/result_texts.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "syntax/scan/spellings.h"
#include "syntax/trace/held_values.h"
#include "syntax/trace/summaries.h"

namespace {

FunctionFinders finders() { return {has_function, own_definition, nullptr, &CurrentFile->globals}; }
constexpr FunctionResults NOTHING = {0, nullptr, {ANY_VALUE, nullptr}, nullptr, nullptr};

NameMap ResultsByPath;  // FunctionResults; NOTHING for files that tell nothing
bool HasScripts;        // the function being settled calls some

// None is put into the place of its call.
Node *note_script(const Node *name) {
    bool may_be = !strchr(name->text, '@') && !own_definition(name->symbol);
    HasScripts |= may_be && means_script(name);
    return nullptr;
}

// Of a file that has been read without errors.
const FunctionResults *trace_file(const SourceFile *file) {
    begin_summaries();
    bool may_know_calls = true;
    const Scope *first = nullptr;
    for (const FileFunction *function = file->functions; function; function = function->next) {
        HasScripts = false;
        Scope *scope = settle_function(function->node, {note_script, has_function});
        may_know_calls &= !HasScripts;
        if (!HasScripts) add_function(scope);
        if (!HasScripts && function == file->functions) first = scope;
    }
    if (!first) return &NOTHING;
    trace_functions(finders(), may_know_calls);
    return keep_results(results_of(first));
}

const FunctionResults *read_results(const char *path) {
    SourceFile *file = look_into_file(path);
    if (!file || file->is_script || !file->functions) return &NOTHING;
    SourceFile *outer = CurrentFile;
    CurrentFile = file;
    const FunctionResults *results = trace_file(file);
    CurrentFile = outer;
    return results;
}

// As an earlier run has found them, or as the file tells now.
const FunctionResults *find_results(const char *path) {
    const char *known = Observing.recall ? Observing.recall(Observing.context, path) : nullptr;
    if (const FunctionResults *results = known ? results_in(known) : nullptr) return results;
    const FunctionResults *results = read_results(path);
    if (Observing.remember) Observing.remember(Observing.context, path, text_of_results(results));
    return results;
}

const FunctionResults *results_at(const char *path) {
    const char *key = intern(path);
    void *known = find_name(&ResultsByPath, key);
    if (known) return static_cast<const FunctionResults *>(known);
    const FunctionResults *results = find_results(key);
    enter_name(&ResultsByPath, key, const_cast<FunctionResults *>(results));
    return results;
}

// Whether the name means a function of another file, and of no class, whatever it is given.
bool is_outside(Symbol *symbol) {
    if (is_variable(symbol) || symbol->definition || !symbol->last_named) return false;
    if (strchr(symbol->name, '@') || own_definition(symbol)) return false;
    Node *name = const_cast<Node *>(symbol->last_named);
    return !library_of(name) && !find_method(nullptr, symbol->name) &&
           !find_constructor(symbol->name);
}

void read_called(Symbol *symbol) {
    NameMap *known = &CurrentFile->outside;
    if (find_name(known, symbol->name) || !is_outside(symbol)) return;
    const char *path = path_of_function(symbol->last_named);
    const FunctionResults *results = path ? results_at(path) : &NOTHING;
    enter_name(known, symbol->name, const_cast<FunctionResults *>(results));
    join_known_globals(&CurrentFile->globals, results->globals);
}

}  // namespace

void begin_outside_functions() { ResultsByPath = {}; }

void read_outside_functions(const Scope *scope) {
    if (!AddTranslator || CurrentFile->is_library) return;
    Finders = finders();
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) read_called(symbol);
    for (const NodeCell *nested = scope->nested; nested; nested = nested->next)
        read_outside_functions(scope_of(nested->node));
}

const FunctionResults *outside_results(const char *name) {
    return static_cast<const FunctionResults *>(find_name(&CurrentFile->outside, name));
}
