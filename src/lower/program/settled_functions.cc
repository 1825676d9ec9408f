// Names and values of a file's functions.
#include "lower/program/settled_functions.h"

#include "lower/program/called_functions.h"
#include "lower/program/outside_functions.h"
#include "run/run_state.h"
#include "syntax/trace/summaries.h"
#include "syntax/trace/trace_function.h"

namespace {

FunctionFinders finders() {
    return {has_function, own_definition, outside_results, &CurrentFile->globals};
}

bool HasScripts;  // the function being settled calls some

Node *find_called_script(const Node *name) {
    Node *script = find_script(name);
    HasScripts |= script != nullptr;
    return script;
}

// The statements of the run's own script call its functions, and nobody else does: later commands
// do not, nor do those of a file that calls it. Null where they call scripts, too: what the
// statements give to globals is known all the same.
Scope *settle_callers() {
    if (!CurrentFile->functions || !CurrentFile->is_open) return nullptr;
    HasScripts = false;
    Scope *scope = settle_script(CurrentFile->tree, {find_called_script, has_function, !FileMode});
    bool are_callers = FileMode && !HasScripts;
    if (are_callers || scope->globals) read_outside_functions(scope);
    if (are_callers) return scope;
    if (scope->globals) trace_function(scope, finders());
    return nullptr;
}

}  // namespace

// Names are settled, and other files read, before the first one is added.
void settle_functions(bool is_script) {
    Scope *callers = is_script ? settle_callers() : nullptr;
    for (FileFunction *function = CurrentFile->functions; function; function = function->next) {
        HasScripts = false;
        read_outside_functions(settle_function(function->node, {find_called_script, has_function}));
        function->is_traced = !HasScripts;
    }
    begin_summaries();
    bool may_know_calls = !is_script || callers;
    if (callers) add_function(callers);
    for (FileFunction *function = CurrentFile->functions; function; function = function->next) {
        if (function->is_traced) add_function(scope_of(function->node));
        may_know_calls &= function->is_traced;
    }
    trace_functions(finders(), may_know_calls);
}

void settle_late(const FileFunction *function) {
    if (!function->is_traced)
        trace_function(settle_function(function->node, {find_script, has_function}), finders());
}

Scope *settle_statements() {
    Scope *scope = settle_script(CurrentFile->tree, {find_script, has_function, !FileMode});
    if (!FileMode) scope->flags |= IS_LEFT_OPEN;
    read_outside_functions(scope);
    trace_function(scope, finders());
    return scope;
}
