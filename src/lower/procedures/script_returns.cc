// The return of a script.
#include "lower/procedures/script_returns.h"

#include <assert.h>

#include "lower/conditions/host_conditions.h"
#include "lower/lines/origins.h"
#include "lower/procedures/procedures.h"
#include "support/allocation.h"

namespace {

// More of them in a row are tested by the variable: they nest.
constexpr int MOST_GUARDS = 20;

bool is_outermost(const OpenRest *rest) {
    return Lowering.script.is_open && rest == &Lowering.script.rest;
}

bool has_statement_after(const Node *node) {
    do node = node->next;
    while (node && (node->kind == NODE_COMMENT || node->kind == NODE_FUNCTION));
    return node != nullptr;
}

// The return that ends the only branch of an if; null for any other statement.
const Node *guarding_return(const Node *node) {
    bool has_one_branch = node->kind == NODE_IF && !node->first_child->next;
    return has_one_branch ? last_return(second_child(node->first_child)) : nullptr;
}

// Its lines come from the current origin.
void open_branch(OpenRest *rest) {
    OpenBranch *branch = AllocRecord<OpenBranch>();
    *branch = {CurrentOrigin, rest->innermost};
    rest->innermost = branch;
    Lowering.level++;
}

void close_branch(OpenRest *rest) {
    assert(rest->innermost && Lowering.level > 0);
    Origin *current = CurrentOrigin;
    CurrentOrigin = rest->innermost->origin;
    rest->innermost = rest->innermost->outer;
    Lowering.level--;
    put_line("end if;", {});
    end_origin(current);
}

// Of tests one is open at a time: they stand side by side.
void put_test(OpenRest *rest) {
    assert(Lowering.script.returned && "a return has been met");
    if (rest->is_tested) close_branch(rest);
    Origin *outer = CurrentOrigin;
    CurrentOrigin = rest->origin;
    put_line("if %s then", {count_condition(Lowering.script.returned, OP_EQ, 0)});
    open_branch(rest);
    end_origin(outer);
    rest->is_tested = true;
    rest->is_pending = false;
}

void choose_form(const OpenRest *rest, const Node *statement) {
    if (!is_outermost(rest)) return;
    ScriptContext *script = &Lowering.script;
    bool is_last = !has_statement_after(statement);
    if (statement->kind == NODE_RETURN && (is_last || rest->guards < MOST_GUARDS))
        script->left_out = statement;
    const Node *found = guarding_return(statement);
    if (!found || (!is_last && rest->guards >= MOST_GUARDS)) return;
    script->left_out = found;
    if (!is_last) script->guard = statement;
}

}  // namespace

void put_script_return(const Node *node) {
    assert(node->kind == NODE_RETURN && Lowering.script.is_open);
    ScriptContext *script = &Lowering.script;
    if (node == script->left_out) return;
    script->returns++;
    if (!script->returned) script->returned = new_temporary();
    put_line("%s := 1;", {script->returned});
    if (script->loops > 0) put_line("break;", {});
}

void put_exit_after_loop() {
    if (Lowering.script.loops == 0) return;
    put_line("if %s then", {count_condition(Lowering.script.returned, OP_EQ, 1)});
    put_inner_line("break;", {});
    put_line("end if;", {});
}

ScriptContext begin_in_rest(OpenRest *rest, const Node *statement) {
    if (rest->is_pending) put_test(rest);
    ScriptContext before = Lowering.script;
    choose_form(rest, statement);
    return before;
}

void start_returned(const OpenRest *rest, const ScriptContext *before, bool is_given_up) {
    ScriptContext *script = &Lowering.script;
    if (is_given_up) {
        script->returned = before->returned;
        script->returns = before->returns;
        if (is_outermost(rest)) script->guard = nullptr;
    }
    if (is_outermost(rest) && script->returned != before->returned)
        put_line("%s := 0;", {script->returned});
}

void end_in_rest(OpenRest *rest, const Node *statement, const ScriptContext *before) {
    assert(Lowering.script.loops == before->loops && Lowering.script.returns >= before->returns);
    ScriptContext *script = &Lowering.script;
    if (script->returns != before->returns && script->loops == 0) {
        rest->is_pending = true;
        rest->origin = CurrentOrigin;
    }
    if (!is_outermost(rest)) return;
    bool is_cut_off = script->left_out == statement && has_statement_after(statement);
    if (is_cut_off) put_line("if false then", {});
    if (is_cut_off || script->guard == statement) {
        open_branch(rest);
        rest->guards++;
        rest->is_tested = rest->is_pending = false;
    }
    script->guard = script->left_out = nullptr;
}

void close_rest(OpenRest *rest) {
    while (rest->innermost) close_branch(rest);
}
