// Parameters: how they get into the variables of the function.
#include "lower/procedures/preludes.h"

#include <assert.h>

#include "diagnose/messages.h"
#include "lower/calls/exist.h"
#include "lower/conditions/host_conditions.h"
#include "lower/lines/origins.h"
#include "lower/lines/text_list.h"
#include "lower/procedures/argument_counts.h"
#include "lower/procedures/defaults.h"
#include "lower/procedures/given_parameters.h"
#include "lower/procedures/procedures.h"
#include "lower/procedures/taken_parameters.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/program/program_files.h"
#include "lower/statements/statements.h"
#include "lower/targets/part_starts.h"
#include "lower/targets/shared_parts.h"
#include "syntax/tree/new_nodes.h"

namespace {

const Node *parameters_of(const Scope *scope) {
    const Node *child = scope->owner->first_child;
    while (child->kind != NODE_PARAMETERS) child = child->next;
    return child;
}

// A parameter without a name gets one that nothing else has.
const char *head_text(const Node *parameter) {
    if (parameter->kind == NODE_TILDE)
        return form_text("qxrp_%s", {number_text(++Lowering.temporaries)});
    if (parameter->kind == NODE_DEFAULT) parameter = parameter->first_child;
    return head_name(parameter->symbol);
}

// Whether the function asks for it, sets it first, or is called without it in its file.
bool may_be_missing(const Scope *scope, const Symbol *parameter) {
    if ((scope->flags & READS_NARGIN) || (parameter->flags & SYMBOL_MAY_BE_MISSING)) return true;
    const Node *function = scope->owner;
    return function->kind == NODE_FUNCTION &&
           fewest_arguments(CurrentFile, function->text) < parameter->position;
}

// Whether the function always sets the parameter before it uses it, all that may use it being seen.
bool is_set_first(const Scope *scope, const Symbol *parameter) {
    bool is_seen = CurrentFile->source->errors == 0 && !scope->creator;
    return is_seen && !(parameter->flags & SYMBOL_GIVEN_COUNTS);
}

// The branch stays open.
void put_if_given(Symbol *parameter) {
    put_line("if %s then", {count_condition("nargs", OP_GE, parameter->position)});
    Lowering.level++;
    put_given_value(parameter);
    Lowering.level--;
}

void put_copy(const Prelude *prelude, Symbol *parameter) {
    const Scope *scope = prelude->scope;
    if (is_set_first(scope, parameter)) return;
    if (is_given_after(&prelude->check, scope, parameter)) return;
    bool is_plain = !may_be_missing(scope, parameter) || is_read_at_once(prelude->first, parameter);
    if (is_plain) return find_taking(scope, parameter) ? void() : put_given_value(parameter);
    if (find_default(scope, parameter)) return;
    put_if_given(parameter);
    bool is_asked = scope->flags & READS_NARGIN;
    if (parameter->start && (!is_asked || (parameter->flags & SYMBOL_MAY_BE_MISSING))) {
        put_line("else", {});
        put_inner_line("%s := %s;", {written_name(parameter), start_text(parameter->start, false)});
    }
    put_line("end if;", {});
}

// What is changed in the arguments are copies of them.
void put_varargin(const Scope *scope, Symbol *varargin) {
    int first = scope->parameters + 1;
    const char *values =
        first == 1 ? "args" : form_text("seq(args[qxrp_i],qxrp_i=%s..nargs)", {number_text(first)});
    bool changes = varargin->depth_changed > 1;
    put_line(changes ? "%s := copy(rtable([%s],subtype='Vector[row]'));"
                     : "%s := rtable([%s],subtype='Vector[row]');",
             {written_name(varargin), values});
}

void put_parameter(const Prelude *prelude, const Node *parameter) {
    if (parameter->kind == NODE_TILDE) return;
    bool has_value = parameter->kind == NODE_DEFAULT;
    Symbol *symbol = (has_value ? parameter->first_child : parameter)->symbol;
    if (symbol->position == 0) return put_varargin(prelude->scope, symbol);
    if (symbol->flags & SYMBOL_OPTIONS) return put_line("%s := Vector();", {written_name(symbol)});
    if (!is_copied_parameter(symbol)) return;
    if (!has_value) put_copy(prelude, symbol);
    if (symbol->last_asked == 0) return;
    put_presence_variable(symbol, count_comparison("nargs", OP_GE, symbol->position)->text);
}

// An assignment of the value after the target, when the parameter has not been given. has_given:
// else of what has been given.
void put_default(Node *target, Symbol *parameter, bool has_given) {
    assert(target->next && !target->next->next && "a target and its value");
    Node *assignment = new_parent(NODE_ASSIGN, target);
    assignment->length = end_of(target->next) - target->offset;
    bool is_option = target->kind != NODE_NAME;
    if (is_option) return lower_siblings(assignment, nullptr, Lowering.level);
    put_line("if %s then", {count_condition("nargs", OP_LT, parameter->position)});
    lower_siblings(assignment, nullptr, Lowering.level + 1);
    if (has_given) {
        put_line("else", {});
        Lowering.level++;
        put_given_value(parameter);
        Lowering.level--;
    }
    put_line("end if;", {});
}

// The arguments from a position on are pairs of a name and a value.
void put_options(Symbol *options) {
    const char *name = written_name(options);
    const char *counter = new_temporary();
    put_line("for %s from %s to nargs by 2 do", {counter, number_text(options->position)});
    put_inner_line("%s := setfield(%s, args[%s], args[%s+1]);", {name, name, counter, counter});
    put_line("end do;", {});
}

Symbol *base_symbol(const Node *target) {
    if (target->kind == NODE_REFERENCE) target = target->first_child;
    return target->kind == NODE_NAME ? target->symbol : nullptr;
}

// The options of one parameter stand side by side.
void put_argument(const Node *argument) {
    Node *target = argument->first_child;
    Symbol *symbol = base_symbol(target);
    if (target->next && symbol) put_default(target, symbol, symbol->default_in == argument);
    if (!symbol || !(symbol->flags & SYMBOL_OPTIONS)) return;
    const Node *next = next_statement(argument->next);
    if (!next || base_symbol(next->first_child) != symbol) put_options(symbol);
}

void put_argument_block(const Node *block) {
    assert(block->kind == NODE_ARGUMENT_BLOCK);
    bool has_checks = false;
    for (const Node *child = block->first_child; child; child = child->next) {
        if (child->kind == NODE_COMMENT) {
            lower_more_siblings(child, child->next);
            continue;
        }
        has_checks |= has_flag(child, HAS_CHECKS);
        Origin *outer = begin_origin(PRELUDE_LINES, child);
        if (!has_flag(block, FOR_OUTPUTS)) put_argument(child);
        end_origin(outer);
    }
    if (has_checks) report(ARGUMENT_CHECKS, CurrentFile->source, block->offset, block->length);
}

}  // namespace

void put_given_value(Symbol *parameter) {
    put_line(must_own(parameter) ? "%s := copy(%s);" : "%s := %s;",
             {written_name(parameter), head_name(parameter)});
}

void put_value_if_given(Symbol *parameter) {
    put_if_given(parameter);
    put_line("end if;", {});
}

const char *parameter_list(const Scope *scope) {
    TextList names = {};
    const Node *parameter = parameters_of(scope)->first_child;
    for (; parameter; parameter = parameter->next) {
        bool is_varargin = !parameter->next && (scope->flags & HAS_VARARGIN);
        if (!is_varargin) append_text(&names, head_text(parameter));
    }
    return join_texts(&names);
}

Prelude begin_prelude(const Scope *scope, const Node *first) {
    return {scope, first, find_given_check(scope, first)};
}

void put_prelude(const Prelude *prelude) {
    const Scope *scope = prelude->scope;
    const Node *parameters = parameters_of(scope);
    const Node *first = parameters->first_child;
    Origin *outer = begin_origin(PRELUDE_LINES, parameters);
    for (const Node *parameter = first; parameter; parameter = parameter->next)
        put_parameter(prelude, parameter);
    if (scope->flags & HAS_VARARGOUT)
        put_line("%s := rtable([],subtype='Vector[row]');", {varargout_name(scope)});
    for (const Node *parameter = first; parameter; parameter = parameter->next) {
        if (parameter->kind != NODE_DEFAULT) continue;
        Symbol *symbol = parameter->first_child->symbol;
        put_default(parameter->first_child, symbol,
                    !is_given_after(&prelude->check, scope, symbol));
    }
    end_origin(outer);
}

void put_checked_parameters(const Prelude *prelude) {
    const Scope *scope = prelude->scope;
    const Node *parameters = parameters_of(scope);
    Origin *outer = begin_origin(PRELUDE_LINES, parameters);
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next) {
        bool is_set_here = symbol->position > 0 && is_copied_parameter(symbol) &&
                           !is_set_first(scope, symbol) &&
                           is_given_after(&prelude->check, scope, symbol);
        if (is_set_here && !find_taking(scope, symbol)) put_given_value(symbol);
    }
    end_origin(outer);
}

const Node *put_argument_blocks(const Node *first) {
    const Node *rest = first;
    for (const Node *node = first; node; node = node->next) {
        if (node->kind == NODE_COMMENT) continue;
        if (node->kind != NODE_ARGUMENT_BLOCK) break;
        lower_more_siblings(rest, node);
        put_argument_block(node);
        rest = node->next;
    }
    return rest;
}
