// Loops.
#include <stdlib.h>

#include "lower/calls/exist.h"
#include "lower/conditions/condition_sides.h"
#include "lower/conditions/conditions.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/statements/branches.h"
#include "lower/statements/statements.h"
#include "lower/targets/shared_parts.h"
#include "lower/targets/targets.h"
#include "syntax/tree/value.h"
#include "syntax/values/values.h"

namespace {

// The range of plain numbers that a loop counts over, also in parentheses or alone in brackets;
// null for a value.
const Node *counted_range(const Node *node) {
    for (;;) {
        node = without_parens(node);
        if (node->kind == NODE_RANGE)
            return is_text_range(node) || integer_class(node) ? nullptr : node;
        const Node *row = node->kind == NODE_MATRIX ? node->first_child : nullptr;
        if (!row || row->next || row->first_child->next) return nullptr;
        node = row->first_child;
    }
}

bool reads(const Node *node, const Symbol *symbol) {
    if (is_named(node)) return node->symbol == symbol;
    for (const Node *child = first_child(node); child; child = child->next)
        if (reads(child, symbol)) return true;
    return false;
}

bool is_natural(const Node *node) {
    return node->kind == NODE_NUMBER && has_flag(node, NUMBER_INTEGER);
}

// Whether a loop over literal numbers certainly has a first round.
bool has_first_round(const Node *values) {
    const Node *range = counted_range(values);
    if (!range || third_child(range)) return false;
    const Node *start = range->first_child;
    const Node *stop = start->next;
    return is_natural(start) && is_natural(stop) && atol(start->text) <= atol(stop->text);
}

// A loop as it is put: its node's variable, and what the host counts with.
struct LoopHead {
    const Node *variable;
    const char *counter;
    bool is_kept;  // the variable is not the counter
};

// After a loop without a round its variable is empty.
void put_empty_variable(const LoopHead *head) {
    const Node *variable = head->variable;
    if (!head->is_kept || variable->kind != NODE_NAME || has_first_round(variable->next)) return;
    put_line("%s := Vector();", {written_name(variable->symbol)});
}

// What is read of the variable is read before that.
const char *bound_text(const LoopHead *head, const mExpr *bound, const Node *part) {
    const Node *variable = head->variable;
    if (!head->is_kept || variable->kind != NODE_NAME || !reads(part, variable->symbol))
        return bound->text;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, bound->text});
    return name;
}

void put_counted_head(const LoopHead *head, const Node *node) {
    const mRange *range = lower_range(node)->range;
    const Node *second = second_child(node);
    bool is_unit = has_unit_step(range);
    const char *start = bound_text(head, range->start, node->first_child);
    const char *step = is_unit ? nullptr : bound_text(head, range->step, second);
    const char *stop = bound_text(head, range->stop, second->next ? second->next : second);
    put_empty_variable(head);
    if (is_unit) {
        put_line("for %s from %s to %s do", {head->counter, start, stop});
    } else {
        put_line("for %s from %s to %s by %s do", {head->counter, start, stop, step});
    }
}

// Whether the columns are cells, as the values or the use of the variable show.
bool are_cells(const Node *variable, const Node *values) {
    const Node *value = without_parens(values);
    if (value->kind == NODE_CELL) return true;
    if (value->kind == NODE_NAME && is_cell_variable(value)) return true;
    if (kinds_of(value_of(value)) == MAY_BE_CELL) return true;
    return variable->kind == NODE_NAME && (variable->symbol->flags & SYMBOL_HAS_BRACES);
}

// What is looped over: a variable that the loop does not set as it is, all else by a new name, as
// loops nest.
const char *named_columns(const LoopHead *head) {
    const Node *values = without_parens(head->variable->next);
    const char *value = looped_text(head->variable, lower_expression(values)->text);
    bool is_name = values->kind == NODE_NAME && is_variable(values->symbol);
    if (is_name && is_identifier(value) && !reads(head->variable, values->symbol)) return value;
    const char *columns = form_text("qxrp_A%s", {number_text(++Lowering.column_loops)});
    declare_generated(columns);
    put_line("%s := %s;", {columns, value});
    return columns;
}

// Whether the value is surely a row of numbers or characters, of which one index selects one.
bool is_row(const Node *values) {
    constexpr Value ROWS = ARITHMETIC | MAY_BE_TEXT | ANY_SIGN | MAY_HAVE_COLUMNS | MAY_BE_ARRAY |
                           MAY_BE_FILLED | MAY_BE_EMPTY;
    Value value = value_of(values);
    Value single = kinds_of(value) == MAY_BE_TEXT ? MAY_BE_SINGLE : 0;
    return is_within(value, ROWS | single);
}

// The loop runs over the columns of a value. A range of one column of a cell is a cell, whatever
// its shape.
void put_column_head(const LoopHead *head) {
    const Node *variable = head->variable;
    const Node *values = variable->next;
    const char *columns = named_columns(head);
    const char *column = are_cells(variable, values) ? "qxrp_i..qxrp_i" : "qxrp_i";
    put_empty_variable(head);
    if (is_row(values)) {
        put_line("for %s in seq(%s(qxrp_i),qxrp_i=1..%s) do",
                 {head->counter, columns, last_position_text(columns, 1, 1)});
    } else {
        put_line(
            "for %s in seq(%s(..,%s),qxrp_i=1..mul(qxrp_j,qxrp_j=ArrayTools:-Size(%s)(2..))) do",
            {head->counter, columns, column, columns});
    }
}

// One round: over a single whole number as it is, which may be asked for twice.
bool put_single_head(const LoopHead *head) {
    const Node *values = without_parens(head->variable->next);
    bool is_plain = values->kind == NODE_NUMBER || values->kind == NODE_NAME;
    bool is_number = kinds_of(value_of(values)) == MAY_BE_NUMBER && is_surely_single(values);
    if (!is_plain || !is_number || !is_surely_whole(values)) return false;
    if (values->kind == NODE_NAME && reads(head->variable, values->symbol)) return false;
    const char *text = lower_expression(values)->text;
    put_line("for %s from %s to %s do", {head->counter, text, text});
    return true;
}

void put_head(const LoopHead *head) {
    if (put_single_head(head)) return;
    if (const Node *range = counted_range(head->variable->next)) {
        put_counted_head(head, range);
    } else {
        put_column_head(head);
    }
}

// A variable that is used after the loop, or changed in it, is not the one that the host counts.
void put_variable(const Node *variable, const char *counter) {
    Lowering.level++;
    Target target = lower_target(variable, nullptr);
    put_line("%s := %s;", {target_text(&target), counter});
    finish_target(&target);
    Lowering.level--;
}

bool is_kept(const Node *node) {
    return has_flag(node, KEEPS_VARIABLE) || node->first_child->kind != NODE_NAME;
}

}  // namespace

void put_for(const Node *node) {
    const Node *variable = node->first_child;
    bool has_counter = is_kept(node);
    const char *counter = has_counter ? new_temporary() : lower_target(variable, nullptr).path.text;
    put_presence(variable);
    LoopHead head = {variable, counter, has_counter};
    put_head(&head);
    if (Lowering.gap != MESSAGE_COUNT) return;
    if (has_counter) put_variable(variable, counter);
    lower_block(third_child(node));
    put_line("end do;", {});
}

namespace {

// A condition that needs lines, in front or for a procedure in it, is tested inside of the loop.
void put_while_head(const Node *condition) {
    if (needs_branches(condition)) {
        put_line("while true do", {});
        Lowering.level++;
        put_break_unless(condition);
        Lowering.level--;
        return;
    }
    TestApart apart = lower_test_apart(condition, 1);
    if (apart.is_short) return put_line("while %s do", {test_text(&apart.test)});
    put_line("while true do", {});
    Lowering.level++;
    append_lines(Lowering.lines, &apart.needed);
    Test exit = negate_test(&apart.test);
    put_break(&exit);
    Lowering.level--;
}

}  // namespace

void put_while(const Node *node) {
    put_while_head(node->first_child);
    if (Lowering.gap != MESSAGE_COUNT) return;
    lower_block(second_child(node));
    put_line("end do;", {});
}

namespace {

// Whether a continue of this loop is among the statements.
bool has_continue(const Node *node) {
    if (node->kind == NODE_CONTINUE) return true;
    bool is_loop =
        node->kind == NODE_FOR || node->kind == NODE_WHILE || node->kind == NODE_DO_UNTIL;
    if (is_loop || node->kind < NODE_EXPRESSION) return false;
    for (const Node *child = first_child(node); child; child = child->next)
        if (has_continue(child)) return true;
    return false;
}

// A continue goes on with the condition: it is tested at the start of all rounds but the first.
void put_until_first(const Node *condition, const char *is_later) {
    put_line("if %s then", {count_condition(is_later, OP_EQ, 1)});
    Lowering.level++;
    put_break_where(condition);
    Lowering.level--;
    put_line("end if;", {});
    put_line("%s := 1;", {is_later});
}

}  // namespace

void put_do_until(const Node *node) {
    const Node *block = node->first_child;
    bool tests_first = has_continue(block);
    const char *is_later = tests_first ? new_temporary() : nullptr;
    if (tests_first) put_line("%s := 0;", {is_later});
    put_line("while true do", {});
    Lowering.level++;
    if (tests_first) put_until_first(block->next, is_later);
    lower_block_at(block, Lowering.level);
    if (!tests_first) put_break_where(block->next);
    Lowering.level--;
    put_line("end do;", {});
}
