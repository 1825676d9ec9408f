// switch statements: an if chain over the value, or over a variable that holds it.
#include <assert.h>
#include <string.h>

#include "lower/calls/keyword_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/comments.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/lines/origins.h"
#include "lower/program/context.h"
#include "lower/statements/statements.h"
#include "syntax/values/values.h"

namespace {

const char *new_switch_variable() {
    const char *name = form_text("switch_condition%s", {number_text(SwitchVariables++)});
    declare_generated(name);
    return name;
}

// The values of a case in braces, in all its rows, or its single value.
ExprList lower_case_values(const Node *value) {
    ExprList values = {};
    if (value->kind != NODE_CELL) {
        if (may_be_cell(value)) report_at(CELL_CASE, value);
        append_expr(&values, lower_expression(value));
        return values;
    }
    for (const Node *row = value->first_child; row; row = row->next)
        for (const Node *element = row->first_child; element; element = element->next)
            append_expr(&values, lower_expression(element));
    return values;
}

void put_clause_head(const char *word, const char *variable, const ExprList *values) {
    if (!values->first) return put_line("%s false then", {word});
    if (values->first == values->last)
        return put_line("%s %s = %s then", {word, variable, values->first->item->text});
    put_line("%s %s in {%s} then", {word, variable, exprs_text(values->first)});
}

// What the values need in front goes in front of the whole chain, into lines.
ExprList lower_in_front(const Node *value, Lines *lines) {
    Lines *outer = Lowering.lines;
    Lowering.lines = lines;
    ExprList values = lower_case_values(value);
    Lowering.lines = outer;
    return values;
}

void put_clause(const Node *node, const char *word, const char *variable, Lines *in_front) {
    assert(node->kind == NODE_CASE);
    ExprList values = lower_in_front(node->first_child, in_front);
    put_clause_head(word, variable, &values);
    free_vExpr(values.first);
    lower_block(second_child(node));
}

// After clauses it is left out where nothing is to be done.
void put_otherwise(const Node *block, bool has_clauses) {
    Line *before = Lowering.lines->last;
    put_line(has_clauses ? "else" : "if true then", {});
    lower_block(block);
    if (has_clauses && is_bare_after(Lowering.lines, before)) drop_after(Lowering.lines, before);
}

void put_chain(const Node *first, const char *variable, Lines *in_front) {
    for (const Node *node = first; node; node = node->next) {
        if (node->kind == NODE_OTHERWISE) {
            put_otherwise(node->first_child, node != first);
        } else {
            put_clause(node, node == first ? "if" : "elif", variable, in_front);
        }
    }
    put_line("end if;", {});
}

}  // namespace

// One in front of the cases.
static void put_switch_comment(const Node *comment, Line *head, bool is_first) {
    bool is_trailing = has_flag(comment, TRAILING);
    if (!is_trailing && !is_first && has_flag(comment, BLANK_BEFORE)) put_line("", {});
    put_comment(comment, is_trailing ? head : nullptr);
}

namespace {

// Longer texts are not repeated, or not put into a head.
constexpr size_t LONGEST_SUBJECT = 24;
constexpr size_t LONGEST_IN_HEAD = 60;

// Whether the cases change nothing.
bool do_nothing(const Node *first) {
    for (const Node *node = first; node; node = node->next)
        if (node->kind == NODE_CASE && may_act(node->first_child)) return false;
    return true;
}

// A field, or the element of a variable at one place.
bool is_plain_selector(const Node *selector) {
    if (selector->kind == NODE_FIELD) return true;
    const Node *index = selector->first_child;
    bool is_index = selector->kind == NODE_ARGUMENTS || selector->kind == NODE_BRACES;
    return is_index && index && !index->next && is_surely_single(index) &&
           (index->kind == NODE_NUMBER || index->kind == NODE_NAME);
}

bool is_count(const Node *name) {
    return strcmp(name->text, "nargin") == 0 || strcmp(name->text, "nargout") == 0;
}

// Whether the value may be asked for in each case: nothing changes it between them.
bool is_plain_subject(const Node *subject) {
    subject = without_parens(subject);
    if (subject->kind == NODE_NAME) return is_variable(subject->symbol) || is_count(subject);
    const Node *base = subject->kind == NODE_REFERENCE ? subject->first_child : nullptr;
    if (!base || base->kind != NODE_NAME || !is_variable(base->symbol)) return false;
    for (const Node *before = base; before->next; before = before->next)
        if (!is_plain_selector(before->next) || may_be_called(before)) return false;
    return true;
}

const Node *first_clause(const Node *subject) {
    const Node *first = subject->next;
    while (first && first->kind == NODE_COMMENT) first = first->next;
    return first;
}

// What stands in front of the first case: the value in a variable, if it needs one. Answers what
// the cases compare with.
const char *put_subject(const Node *subject, const Node *first) {
    const char *text = lower_expression(subject)->text;
    bool is_asked = first && first->kind == NODE_CASE && do_nothing(first);
    bool is_alone = is_asked && (!first->next || first->next->kind == NODE_OTHERWISE);
    bool is_once = is_alone && without_parens(subject)->kind == NODE_REFERENCE;
    if (is_once && strlen(text) <= LONGEST_IN_HEAD) return text;
    if (is_asked && strlen(text) <= LONGEST_SUBJECT && is_plain_subject(subject)) return text;
    const char *variable = new_switch_variable();
    put_line("%s := %s;", {variable, text});
    return variable;
}

}  // namespace

void put_switch(const Node *node) {
    assert(node->kind == NODE_SWITCH);
    const Node *subject = node->first_child;
    const Node *first = first_clause(subject);
    const Line *before = Lowering.lines->last;
    const char *variable = put_subject(subject, first);
    Line *head = Lowering.lines->last == before ? nullptr : Lowering.lines->last;
    for (const Node *comment = subject->next; comment != first; comment = comment->next)
        put_switch_comment(comment, head, comment == subject->next);
    if (!first) return;
    if (head) {
        end_head(end_of(subject));
        begin_rest(first->offset);
    }
    Lines *front = Lowering.lines;
    Lines chain = {};
    Lowering.lines = &chain;
    put_chain(first, variable, front);
    Lowering.lines = front;
    append_lines(front, &chain);
}
