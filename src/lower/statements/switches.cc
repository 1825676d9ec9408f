// switch statements: an if chain over a variable that holds the value.
#include <assert.h>

#include "lower/calls/keyword_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/comments.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/lines/origins.h"
#include "lower/program/context.h"
#include "lower/statements/statements.h"

namespace {

const char *new_switch_variable() {
    const char *name = form_text("switch_condition%s", {number_text(SwitchVariables++)});
    declare_generated(name);
    return name;
}

bool may_be_cell(const Node *value) {
    value = without_parens(value);
    return value->kind == NODE_NAME || value->kind == NODE_REFERENCE;
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

void put_otherwise(const Node *block, bool has_clauses) {
    put_line(has_clauses ? "else" : "if true then", {});
    lower_block(block);
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

void put_switch(const Node *node) {
    assert(node->kind == NODE_SWITCH);
    const Node *subject = node->first_child;
    const char *variable = new_switch_variable();
    put_line("%s := %s;", {variable, lower_expression(subject)->text});
    Line *head = Lowering.lines->last;
    const Node *first = subject->next;
    for (; first && first->kind == NODE_COMMENT; first = first->next)
        put_switch_comment(first, head, first == subject->next);
    if (!first) return;
    end_head(end_of(subject));
    begin_rest(first->offset);
    Lines *front = Lowering.lines;
    Lines chain = {};
    Lowering.lines = &chain;
    put_chain(first, variable, front);
    Lowering.lines = front;
    append_lines(front, &chain);
}
