// Statements.
#include "lower/statements/statements.h"

#include <assert.h>

#include "lower/calls/calls.h"
#include "lower/calls/exist.h"
#include "lower/calls/keyword_calls.h"
#include "lower/calls/requested_results.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/comments.h"
#include "lower/lines/gaps.h"
#include "lower/lines/origins.h"
#include "lower/procedures/defaults.h"
#include "lower/procedures/procedures.h"
#include "lower/procedures/script_returns.h"
#include "lower/procedures/taken_parameters.h"
#include "lower/program.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/statements/argument_checks.h"
#include "lower/statements/clears.h"
#include "lower/statements/displays.h"
#include "lower/targets/assignments.h"
#include "syntax/names/part_changes.h"

namespace {

bool is_script(const Node *expression) {
    if (expression->kind != NODE_NAME) return false;
    const Node *definition = expression->symbol->definition;
    return definition && definition->kind == NODE_FILE;
}

void put_script(const Node *name) {
    const char *refusal = lower_script_call(name);
    if (refusal) report_gap(SCRIPT_CALL_GAP, name, {name->text, refusal});
}

void put_expression(const Node *node) {
    const Node *expression = node->first_child;
    if (is_script(expression)) return put_script(expression);
    if (put_argument_check(expression) || put_clear(node)) return;
    report_loading(node);
    request_results(expression, 0);
    const char *value = lower_expression(expression)->text;
    const char *display = displayed_value(node, value);
    put_line("%s;", {display ? display : value});
}

void put_command(const Node *node) {
    if (put_clear(node)) return;
    report_loading(node);
    put_line("%s;", {lower_command(node)->text});
}

void put_system(const Node *node) {
    put_line("%s;", {new_keyword_call("system", {string_text(node->text)})->text});
}

// The cleanup's comments stay in front of its statements.
void put_unwind(const Node *node) {
    assert(!third_child(node));
    report_at(UNWIND_PROTECT, node);
    lower_block_at(node->first_child, Lowering.level);
    lower_block_at(second_child(node), Lowering.level);
}

void put_initial_values(const Node *declaration) {
    for (const Node *child = declaration->first_child; child; child = child->next)
        if (child->kind == NODE_ASSIGN) put_assignment(child);
}

void put_return_statement(const Node *node) {
    if (Lowering.script.is_open) return put_script_return(node);
    put_return(node);
}

void put_assigned(const Node *node) {
    if (node->kind == NODE_ASSIGN) {
        put_assignment(node);
        put_displayed_targets(node);
        return put_presence(node->first_child);
    }
    put_multi_assignment(node);
    put_displayed_targets(node);
    for (const Node *target = node->first_child->first_child; target; target = target->next)
        put_presence(target);
}

// A return of a script inside of the loop leaves the loops around it too.
void put_loop(const Node *node, void (*put)(const Node *)) {
    int32_t returns = Lowering.script.returns;
    const Node *outermost = Lowering.outermost_loop;
    if (!outermost) Lowering.outermost_loop = node;
    Lowering.script.loops++;
    put(node);
    Lowering.script.loops--;
    Lowering.outermost_loop = outermost;
    if (Lowering.script.returns != returns) put_exit_after_loop();
}

void put_read_statement(const Node *node) {
    switch (node->kind) {
        case NODE_EXPRESSION: return put_expression(node);
        case NODE_ASSIGN:
        case NODE_MULTI_ASSIGN: return put_assigned(node);
        case NODE_COMMAND: return put_command(node);
        case NODE_SYSTEM: return put_system(node);
        case NODE_IF: return put_if(node);
        case NODE_FOR: return put_loop(node, put_for);
        case NODE_WHILE: return put_loop(node, put_while);
        case NODE_DO_UNTIL: return put_loop(node, put_do_until);
        case NODE_SWITCH: return put_switch(node);
        case NODE_TRY: return put_try(node);
        case NODE_UNWIND: return put_unwind(node);
        case NODE_GLOBAL: return put_initial_values(node);
        case NODE_PERSISTENT: return lower_persistent(node);
        case NODE_BREAK: return put_line("break;", {});
        case NODE_CONTINUE: return put_line("next;", {});
        case NODE_RETURN: return put_return_statement(node);
        default: return;  // what a head declares
    }
}

// Outside of every function and script names mean nothing.
void put_statement(const Node *node) {
    if (node->kind == NODE_BAD)
        put_bad(node);
    else if (Lowering.scope)
        put_read_statement(node);
    else
        Lowering.gap = OUTSIDE_GAP;
}

// A statement that cannot be translated is given up as a whole, with the lines that it has so far.
// Answers whether its source stands there instead.
bool put_or_give_up(const Node *node, Lines *lines) {
    MessageId outer = Lowering.gap;
    Lowering.gap = MESSAGE_COUNT;
    if (Lowering.scope) put_values_before(node);
    put_statement(node);
    assert(Lowering.lines == lines && "what a statement changes it puts back");
    bool is_given_up = Lowering.gap != MESSAGE_COUNT;
    if (is_given_up) {
        *lines = {nullptr, nullptr};
        put_untaken(node);
        if (Lowering.scope) put_untaken_values(node);
        put_gap(node, Lowering.gap);
    }
    Lowering.gap = outer;
    return is_given_up || node->kind == NODE_BAD;
}

// A list of statements while it is put.
struct Siblings {
    Lines *lines;
    Line *trailed;        // last line of the statement or head before; null when that has none
    bool has_any;         // a statement or comment has been put
    bool blank_pending;   // an empty line goes in front of what is put next
    const Node *next;     // the next statement, or null when it is not known
    bool has_inside;      // comments from inside of it have been put
    Line *before_inside;  // the line in front of them, or null
    OpenRest *rest;       // branches of the list
};

void note_inside(Siblings *siblings, const Node *comment) {
    if (siblings->has_inside || !has_flag(comment, INSIDE)) return;
    if (!siblings->next) siblings->next = next_statement(comment);
    if (!siblings->next || comment->offset < siblings->next->offset) return;
    siblings->has_inside = true;
    siblings->before_inside = siblings->lines->last;
}

// The source of a statement that is given up holds its comments.
void drop_inside(Siblings *siblings) {
    if (siblings->has_inside) drop_after(siblings->lines, siblings->before_inside);
}

void put_blank(Siblings *siblings) {
    if (siblings->blank_pending && siblings->has_any) add_line(siblings->lines, 0, "");
    siblings->blank_pending = false;
    siblings->has_any = true;
}

void put_one_comment(Siblings *siblings, const Node *comment) {
    bool is_trailing = siblings->trailed && has_flag(comment, TRAILING);
    if (is_trailing) {
        siblings->has_any = true;
    } else {
        put_blank(siblings);
        siblings->trailed = nullptr;  // a trailing one after it follows it
    }
    note_inside(siblings, comment);
    put_comment(comment, siblings->trailed);
}

// Lowers the statement into lines; answers what it needs in front, when it is an outermost one.
Lines put_into(const Node *node, Lines *own, bool *is_given_up) {
    Lines in_front = {};
    bool is_outermost = !Lowering.in_front;
    if (is_outermost) {
        Lowering.in_front = &in_front;
        Lowering.front_level = Lowering.level;
    }
    Lowering.lines = own;
    const Node *outer = Lowering.statement;
    Lowering.statement = node;
    *is_given_up = put_or_give_up(node, own);
    Lowering.statement = outer;
    if (is_outermost) Lowering.in_front = nullptr;
    return in_front;
}

void put_one_statement(Siblings *siblings, const Node *node) {
    Lines own = {};
    bool is_given_up;
    if (siblings->rest->is_pending) put_blank(siblings);
    ScriptContext before = begin_in_rest(siblings->rest, node);
    Origin *outer = begin_origin(STATEMENT_LINES, node);
    Origin *head = CurrentOrigin;
    Lines in_front = put_into(node, &own, &is_given_up);
    Origin *last = CurrentOrigin;
    Lowering.lines = siblings->lines;
    if (is_given_up) drop_inside(siblings);
    siblings->next = nullptr;
    siblings->has_inside = false;
    siblings->trailed = own.last;
    if (own.first) put_blank(siblings);
    CurrentOrigin = head;
    start_returned(siblings->rest, &before, is_given_up);
    append_lines(siblings->lines, &in_front);
    append_lines(siblings->lines, &own);
    CurrentOrigin = last;
    const OpenBranch *innermost = siblings->rest->innermost;
    end_in_rest(siblings->rest, node, &before);
    if (siblings->rest->innermost != innermost) siblings->has_any = false;
    end_origin(outer);
}

void lower_list(const Node *first, const Node *end, OpenRest *rest, bool has_any) {
    Siblings siblings = {
        Lowering.lines, Lowering.lines->last, has_any, false, nullptr, false, nullptr, rest};
    for (const Node *node = first; node != end; node = node->next) {
        if (has_flag(node, BLANK_BEFORE)) siblings.blank_pending = true;
        if (node->kind == NODE_COMMENT) {
            put_one_comment(&siblings, node);
        } else if (node->kind != NODE_FUNCTION) {
            put_one_statement(&siblings, node);
        }
    }
}

}  // namespace

void lower_siblings(const Node *first, const Node *end, int level) {
    int outer = Lowering.level;
    Lowering.level = level;
    OpenRest rest = {};
    lower_list(first, end, &rest, false);
    close_rest(&rest);
    Lowering.level = outer;
}

void lower_more_siblings(const Node *first, const Node *end) {
    const Line *last = Lowering.lines->last;
    lower_list(first, end, &Lowering.script.rest, last && *last->text);
}

void lower_block_at(const Node *block, int level) {
    assert(block->kind == NODE_BLOCK);
    end_head(block->offset);
    const OtherBranches *outer = Lowering.other_branches;
    const Node *statement = Lowering.statement;
    OtherBranches others = {end_of(block), statement ? end_of(statement) : 0, outer};
    bool is_branch = statement && (statement->kind == NODE_IF || statement->kind == NODE_SWITCH);
    if (is_branch && !Lowering.outermost_loop) Lowering.other_branches = &others;
    lower_siblings(block->first_child, nullptr, level);
    Lowering.other_branches = outer;
    begin_rest(end_of(block));
}

void lower_block(const Node *block) { lower_block_at(block, Lowering.level + 1); }
