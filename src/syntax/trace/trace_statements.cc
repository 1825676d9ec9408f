// The values of variables through the statements of a function.
#include <assert.h>

#include <algorithm>

#include "support/allocation.h"
#include "support/same_text.h"
#include "syntax/trace/effects.h"
#include "syntax/trace/handles.h"
#include "syntax/trace/held_values.h"
#include "syntax/trace/library_values.h"
#include "syntax/trace/parameters.h"
#include "syntax/trace/summaries.h"
#include "syntax/trace/taken_parts.h"
#include "syntax/trace/trace.h"
#include "syntax/trace/trace_function.h"
#include "syntax/values/field_values.h"
#include "syntax/values/numbered_targets.h"

Scope *TracedScope;
const Node *OutermostStatement;
const Node *PutAsElement;

namespace {

void trace_statement(Node *node);

// Whether what is traced stands after a jump, so that no run comes to it. It is traced all the
// same, with the values of the jump, so that its text is the one that it would have elsewhere.
bool IsUnreachable;

bool is_jump(const Node *node) {
    return node->kind == NODE_RETURN || node->kind == NODE_BREAK || node->kind == NODE_CONTINUE;
}

void trace_list(Node *first, bool is_body) {
    bool was_unreachable = IsUnreachable;
    bool has_jump = false;
    for (Node *node = first; node; node = node->next) {
        if (is_body) OutermostStatement = node;
        trace_statement(node);
        if (!is_jump(node) || !node->next) continue;
        has_jump = IsUnreachable = true;
        set_dead(false);
    }
    if (has_jump) end_here();
    IsUnreachable = was_unreachable;
}

void trace_block(Node *block) { trace_list(block->first_child, false); }

// A body that may be left, or begun anew, from inside.
struct Jumps {
    bool breaks;
    bool continues;
};

Jumps *InnermostLoop;
Symbol *LastAnswer;  // the variable ans, where the function has one

void trace_branch(Node *branch, Branches *branches) {
    Node *condition = branch->first_child;
    trace_condition(condition);
    Mark since = mark_flow();
    assume(condition, true);
    trace_block(condition->next);
    end_branch(branches, since);
    assume(condition, false);
}

// What all conditions before say is remembered of the first few only.
constexpr int MOST_ASSUMED = 16;

void trace_if(Node *node) {
    Branches branches;
    begin_branches(&branches);
    Mark assumed = branches.start;
    int count = 0;
    bool has_else = false;
    for (Node *branch = node->first_child; branch; branch = branch->next) {
        if (branch->kind == NODE_BRANCH) {
            trace_branch(branch, &branches);
            if (++count == MOST_ASSUMED) assumed = mark_flow();
            if (count > MOST_ASSUMED) undo_flow(assumed);
        } else if (branch->kind == NODE_ELSE) {
            has_else = true;
            trace_block(branch->first_child);
            end_branch(&branches, branches.start);
        }
    }
    if (!has_else) end_branch(&branches, branches.start);
    join_branches(&branches);
}

void trace_switch(Node *node) {
    Branches branches;
    bool has_otherwise = false;
    trace_condition(node->first_child);
    begin_branches(&branches);
    for (Node *part = node->first_child->next; part; part = part->next) {
        if (part->kind == NODE_COMMENT) continue;
        has_otherwise |= part->kind == NODE_OTHERWISE;
        if (part->kind == NODE_CASE) {
            trace_expression(part->first_child);
            assume_case(node->first_child, part->first_child);
        }
        trace_block(part->kind == NODE_CASE ? second_child(part) : part->first_child);
        end_branch(&branches, branches.start);
    }
    if (!has_otherwise) end_branch(&branches, branches.start);
    join_branches(&branches);
}

// A column of a value. Of several rows it may be one element all the same.
Value value_of_column(const Node *values) {
    Value value = value_of(values) & ANY_VALUE;
    bool has_rows = may_be(value, MAY_HAVE_ROWS);
    if (kinds_of(value) == MAY_BE_CELL || has_rows) return value | MAY_BE_ARRAY | MAY_BE_SINGLE;
    return (value & (ANY_KIND | ANY_SIGN)) | ONE;
}

void set_loop_variable(Node *loop) {
    Node *variable = loop->first_child;
    Value value = value_of_column(variable->next);
    const KnownParts *parts = parts_given(variable->next, 0);
    if (variable->kind == NODE_REFERENCE) trace_selectors(variable);
    trace_target(variable, value, parts, nullptr);
    if (variable->kind == NODE_NAME) variable->symbol->ever |= value;
}

// After a loop without a round its variable is empty, as it is made in the host.
void keep_loop_variable(const Node *loop) {
    const Node *variable = loop->first_child;
    if (variable->kind != NODE_NAME) return;
    Value value = value_now(variable->symbol) & ANY_VALUE;
    Value values = value_of(variable->next) & ANY_VALUE;
    Value none = (values & ~(MAY_BE_SINGLE | MAY_BE_FILLED | ANY_SIGN)) | MAY_BE_ARRAY;
    if (may_be(values, MAY_BE_EMPTY)) value |= MAY_BE_NUMBER | none;
    if (value) assign(variable->symbol, value);
}

// One round of a loop.
void trace_round(Node *loop) {
    switch (loop->kind) {
        case NODE_FOR:
            set_loop_variable(loop);
            trace_block(third_child(loop));
            break;
        case NODE_WHILE:
            trace_condition(loop->first_child);
            assume(loop->first_child, true);
            trace_block(second_child(loop));
            break;
        default: trace_block(loop->first_child); trace_condition(second_child(loop));
    }
}

void trace_loop(Node *loop) {
    Jumps jumps = {false, false};
    Jumps *outer = InnermostLoop;
    InnermostLoop = &jumps;
    if (loop->kind == NODE_FOR) trace_expression(second_child(loop));
    Region *region = begin_region(loop);
    do {
        trace_round(loop);
        note_end(region, jumps.continues);
    } while (begins_again(region));
    end_region(region, jumps.breaks);
    if (loop->kind == NODE_FOR) keep_loop_variable(loop);
    InnermostLoop = outer;
    if (loop->kind == NODE_WHILE && !jumps.breaks) assume(loop->first_child, false);
}

// An error may leave the block anywhere.
void trace_try(Node *node) {
    Region *region = begin_region(node);
    Branches branches;
    begin_branches(&branches);
    trace_block(node->first_child);
    note_changes(region);
    end_branch(&branches, branches.start);
    go_on_anywhere(region);
    Node *rest = node->first_child->next;
    if (has_flag(node, HAS_IDENTIFIER)) {
        trace_target(rest, ANY_VALUE, nullptr, nullptr);
        rest = rest->next;
    }
    for (; rest; rest = rest->next) trace_block(rest);
    end_branch(&branches, branches.start);
    join_branches(&branches);
    leave_region(region);
}

// The cleanup follows on all that happens: an error or a jump may leave the body anywhere.
void trace_unwind(Node *node) {
    Region *region = begin_region(node);
    trace_block(node->first_child);
    bool ends = !is_dead();
    note_changes(region);
    end_region(region, true);
    set_dead(region->was_dead);
    trace_block(second_child(node));
    if (!IsUnreachable) note_function_end(TracedScope, nullptr);
    if (!ends) end_here();
}

// Of a result after the first.
Value value_of_other(Node *expression, int index) {
    LibraryCall call = library_call(expression);
    if (call.function) return library_others(call.function, call.arguments);
    return call.name ? value_of_own(call.name, call.arguments, index) : ANY_VALUE;
}

const KnownParts *parts_of_result(Node *expression, int index) {
    LibraryCall call = library_call(expression);
    return call.name && !call.function ? parts_of_own(call.name, index) : nullptr;
}

bool is_deal(Node *expression) {
    LibraryCall call = library_call(expression);
    return call.function && call.arguments && is_same_text(call.function->name, "deal");
}

// [r, c] = size(x) gives numbers, of which each is one.
Value value_of_first(Node *expression) {
    LibraryCall call = library_call(expression);
    if (!call.name) return ANY_VALUE;
    if (!call.function) return value_of(expression) & ANY_VALUE;
    if (call.function->shape == SHAPE_SIZE) return call.function->others;
    bool is_known = call.function->others || call.function->shape == SHAPE_APPLIED;
    return is_known ? value_of(expression) & ANY_VALUE : ANY_VALUE;
}

// x(k) takes what is in an array, and may be deleted.
bool takes_whole(const Node *target) {
    return target->kind != NODE_REFERENCE || last_selector(target)->kind != NODE_ARGUMENTS;
}

// What a target is given; expression: null where it is not the value of one.
struct GivenResult {
    Value value;
    const KnownParts *parts;
    const Node *expression;
};

constexpr GivenResult ANY_RESULT = {ANY_VALUE, nullptr, nullptr};

GivenResult result_at(Node *expression, int index) {
    Value value = index == 0 ? value_of_first(expression) : value_of_other(expression, index);
    return {value, parts_of_result(expression, index), nullptr};
}

// All are known before one is set, as in [a, b] = deal(b, a). Nothing is known of those from a list
// of values on.
const GivenResult *results_given(Node *expression, int count) {
    size_t size = sizeof(GivenResult) * static_cast<size_t>(count);
    GivenResult *results = static_cast<GivenResult *>(AllocKept(size));
    Node *argument = is_deal(expression) ? second_child(expression)->first_child : nullptr;
    bool is_only = argument && !argument->next;
    bool is_open = false;
    for (int k = 0; k < count; k++) {
        is_open |= argument && !is_only && may_be_list(argument);
        if (is_open) {
            results[k] = ANY_RESULT;
            continue;
        }
        results[k] = argument ? GivenResult{Value(value_of(argument) & ANY_VALUE),
                                            parts_given(argument, 0), is_only ? argument : nullptr}
                              : result_at(expression, k);
        if (argument && !is_only) argument = argument->next;
    }
    return results;
}

// Any of so many results, one at least.
GivenResult joined_results(const GivenResult *results, int count) {
    constexpr Value HOLDERS = MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_FUNCTION;
    GivenResult joined = *results;
    for (int k = 1; k < count; k++) {
        bool has_parts = may_be(joined.value, HOLDERS);
        if (!has_parts) {
            joined.parts = results[k].parts;
        } else if (may_be(results[k].value, HOLDERS)) {
            joined.parts = joined_parts(joined.parts, results[k].parts);
        }
        joined.value |= results[k].value;
    }
    return joined;
}

// Of longer lists nothing is known.
constexpr long LONGEST_LIST = 64;

// How many results the target takes; 0: not known.
int count_taken(const Node *target) {
    if (!is_list_target(target)) return 1;
    Bounds bounds = numbered_bounds(target);
    long count = bounds.last - bounds.first + 1;
    return count > 0 && count <= LONGEST_LIST ? static_cast<int>(count) : 0;
}

// Those of the targets up to one that takes nobody knows how many, and its first.
int count_results(const Node *first) {
    int count = 0;
    for (const Node *target = first; target; target = target->next) {
        int taken = count_taken(target);
        count += std::max(taken, 1);
        if (taken == 0) break;
    }
    return count;
}

void trace_results(Node *first, Node *expression) {
    int count = count_results(first);
    const GivenResult *results = results_given(expression, count);
    bool is_open = false;  // a list has taken nobody knows how many
    for (Node *target = first; target; target = target->next) {
        int taken = is_open ? 0 : count_taken(target);
        is_open |= taken == 0;
        bool is_one = !is_open || results->expression;
        GivenResult given = is_one ? joined_results(results, std::max(taken, 1)) : ANY_RESULT;
        const Node *known = takes_whole(target) ? results->expression : nullptr;
        if (taken > 1 && !known) {
            trace_list_target(target, given.value, given.parts);
        } else {
            trace_target(target, given.value, given.parts, known);
        }
        if (!is_open) results += taken;
    }
}

void trace_multi_assignment(Node *node) {
    Node *targets = node->first_child;
    Value value = trace_expression(targets->next);
    Node *first = targets->first_child;
    for (Node *target = first; target; target = target->next)
        if (target->kind == NODE_REFERENCE) trace_selectors(target);
    bool is_plain = first && !first->next && first->kind == NODE_NAME;
    if (is_plain) return trace_target(first, value, parts_given(targets->next, 0), nullptr);
    if (first) trace_results(first, targets->next);
}

// d = c(k), where d{...} or iscell(d) stands somewhere: c may be a cell, unless something else is
// known of it.
void note_use(const Node *target, Node *value) {
    constexpr uint32_t AS_CELL = SYMBOL_HAS_BRACES | SYMBOL_CELL_ASKED;
    bool is_used = target->kind == NODE_NAME && (target->symbol->flags & AS_CELL);
    if (is_used && value->kind == NODE_REFERENCE) value->flags |= IS_USED_AS_CELL;
}

// x += y: a number, as far as x and y are.
void trace_assignment(Node *node) {
    Node *target = node->first_child;
    note_use(target, target->next);
    if (node->op == OPERATOR_NONE && !takes_whole(target)) PutAsElement = target->next;
    Value value = trace_expression(target->next);
    if (target->kind == NODE_REFERENCE) trace_selectors(target);
    if (node->op != OPERATOR_NONE) value = trace_operator(node->op, target, value);
    trace_target(target, value, parts_given(target->next, 0), target->next);
}

void trace_declaration(Node *declaration) {
    for (Node *child = declaration->first_child; child; child = child->next)
        if (child->kind == NODE_ASSIGN) trace_assignment(child);
}

void trace_arguments(Node *block) {
    for (Node *argument = block->first_child; argument; argument = argument->next)
        if (argument->kind == NODE_ARGUMENT && argument->first_child->next)
            trace_expression(argument->first_child->next);
}

void trace_statement(Node *node) {
    switch (node->kind) {
        case NODE_EXPRESSION:
            trace_expression(node->first_child);
            trace_clear(node);
            if (LastAnswer) assign(LastAnswer, ANY_VALUE | MAY_BE_MISSING);
            return note_effects(node->first_child);
        case NODE_ASSIGN: return trace_assignment(node);
        case NODE_MULTI_ASSIGN: return trace_multi_assignment(node);
        case NODE_COMMAND: return trace_command(node);
        case NODE_IF: return trace_if(node);
        case NODE_FOR:
        case NODE_WHILE:
        case NODE_DO_UNTIL: return trace_loop(node);
        case NODE_SWITCH: return trace_switch(node);
        case NODE_TRY: return trace_try(node);
        case NODE_UNWIND: return trace_unwind(node);
        case NODE_GLOBAL:
        case NODE_PERSISTENT: return trace_declaration(node);
        case NODE_BREAK:
            if (InnermostLoop) InnermostLoop->breaks = true;
            return end_here();
        case NODE_CONTINUE:
            if (InnermostLoop) InnermostLoop->continues = true;
            return end_here();
        case NODE_RETURN:
            if (!IsUnreachable) note_function_end(TracedScope, node);
            return end_here();
        case NODE_ARGUMENT_BLOCK: return trace_arguments(node);
        default: return;
    }
}

// Whether a script may find the variable set: it reads it first, or asks for what is there.
bool may_be_there(const Scope *scope, const Symbol *symbol) {
    return (symbol->flags & SYMBOL_READ_FIRST) || (scope->flags & ASKS_EXIST);
}

bool is_varargin(const Scope *scope, const Symbol *symbol) {
    return (scope->flags & HAS_VARARGIN) && is_same_text(symbol->name, "varargin");
}

bool is_varargout(const Scope *scope, const Symbol *symbol) {
    return (scope->flags & HAS_VARARGOUT) && is_same_text(symbol->name, "varargout");
}

// What a variable is before anything is said of it.
Value value_at_start(const Scope *scope, const Symbol *symbol) {
    if (scope->owner->kind == NODE_FILE && may_be_there(scope, symbol))
        return ANY_VALUE | MAY_BE_MISSING;
    if (symbol->position == 0) {
        if (is_varargin(scope, symbol)) return MAY_BE_CELL | ROW;
        if (is_varargout(scope, symbol)) return MAY_BE_CELL | MAY_BE_ARRAY | MAY_BE_EMPTY;
        return scope->creator ? Value(ANY_VALUE | MAY_BE_MISSING) : Value(MAY_BE_MISSING);
    }
    Value given = value_given(scope, symbol);
    if (given != (ANY_VALUE | MAY_BE_MISSING)) return given;
    bool may_be_missing =
        (scope->flags & (READS_NARGIN | ASKS_EXIST)) || (symbol->flags & SYMBOL_MAY_BE_MISSING);
    return may_be_missing ? Value(ANY_VALUE | MAY_BE_MISSING) : Value(ANY_VALUE);
}

void begin_values(const Scope *scope) {
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        if (!is_variable(symbol)) continue;
        if (give_held_value(symbol)) continue;
        symbol->now = symbol->since = value_at_start(scope, symbol);
        symbol->parts = nullptr;
        bool is_bare = symbol->now == MAY_BE_MISSING || is_varargout(scope, symbol);
        symbol->has_given_parts = !is_bare;
        symbol->ever |= symbol->now;
        const KnownParts *parts =
            is_varargin(scope, symbol) ? parts_of_rest(scope) : parts_of_parameter(scope, symbol);
        if (parts) give_parts(symbol, 0, parts);
        if (is_same_text(symbol->name, "ans")) LastAnswer = symbol;
    }
}

// Variables that have not been followed to the end may have been anything.
void finish_values(const Scope *scope) {
    if (!is_given_up()) return;
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        if (is_variable(symbol)) symbol->ever |= ANY_VALUE | MAY_BE_MISSING;
}

void trace_defaults(const Node *parameters) {
    for (Node *parameter = parameters->first_child; parameter; parameter = parameter->next) {
        if (parameter->kind != NODE_DEFAULT) continue;
        Value value = trace_expression(second_child(parameter));
        assign(parameter->first_child->symbol, ANY_VALUE | value);
    }
}

void trace_body(Node *first) { trace_list(first, true); }

void trace_owner(const Node *owner) {
    if (owner->kind == NODE_FILE) return trace_body(owner->first_child);
    const Node *parameters = owner->first_child;
    while (parameters->kind != NODE_PARAMETERS) parameters = parameters->next;
    trace_defaults(parameters);
    trace_body(parameters->next->first_child);
    note_function_end(TracedScope, parameters->next);
}

void forget_values(Node *first) {
    for (Node *node = first; node; node = node->next) {
        node->value = 0;
        if (node->kind != NODE_ROW) set_gives_cell(node, false);
        if (node->kind != NODE_FUNCTION) forget_values(first_child(node));
    }
}

}  // namespace

void forget_trace(Scope *scope) {
    scope->taken = nullptr;
    forget_values(scope->owner->first_child);
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        symbol->ever = 0;
        symbol->start = symbol->starts_in = nullptr;
        symbol->starts_in_front = false;
    }
}

static void trace_once(Scope *scope) {
    TracedScope = scope;
    InnermostLoop = nullptr;
    LastAnswer = nullptr;
    begin_effects();
    begin_flow();
    begin_values(scope);
    trace_owner(scope->owner);
    assert(!is_in_region() && "all regions are left");
    finish_values(scope);
}

// Until nothing new comes of what the scope's variables hold from call to call.
static void trace_held(Scope *scope) {
    constexpr int MOST_ROUNDS = 4;
    begin_held_values(scope);
    for (int round = 0;; round++) {
        trace_once(scope);
        if (!scope->globals) return;
        join_globals(scope);
        bool is_same = !has_held_more() && !knows_more_globals(scope) && !is_given_up();
        if (is_same || round > MOST_ROUNDS) return;
        if (is_given_up() || round + 1 == MOST_ROUNDS) {
            hold_anything(scope);
            round = MOST_ROUNDS;
        }
        forget_trace(scope);
    }
}

void trace_alone(Scope *scope) {
    begin_handles(false);
    trace_held(scope);
    if (tell_handles()) {
        begin_handles(true);
        forget_trace(scope);
        trace_held(scope);
    }
    end_handles();
}

void trace_function(Scope *scope, FunctionFinders finders) {
    Finders = finders;
    trace_alone(scope);
    for (const NodeCell *nested = scope->nested; nested; nested = nested->next)
        trace_function(scope_of(nested->node), finders);
}

void trace_script(Node *file) {
    for (Node *node = file->first_child; node; node = node->next) trace_statement(node);
}
