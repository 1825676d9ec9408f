// if statements.
#include "lower/conditions/condition_sides.h"
#include "lower/conditions/conditions.h"
#include "lower/expressions/fallible.h"
#include "lower/lines/lines.h"
#include "lower/procedures/defaults.h"
#include "lower/program/context.h"
#include "lower/statements/alternatives.h"
#include "lower/statements/branches.h"
#include "lower/statements/statements.h"

namespace {

// Whether nothing is to be done where the condition of the first branch is false.
bool is_alone(const Node *node) {
    return !node->first_child->next && node != Lowering.script.guard;
}

bool is_second(const Node *node, const Node *branch) { return branch == node->first_child->next; }

// What follows parameters that take their values is an if of its own.
BranchWord word_of(const Node *node, const Node *branch) {
    bool is_first = branch == node->first_child || (is_second(node, branch) && takes_in_else(node));
    return is_first ? BRANCH_IF : BRANCH_ELIF;
}

// A condition that is not the last one is one test: what comes after it stands in its else.
void put_branch_head(const Node *node, const Node *branch) {
    const Node *condition = branch->first_child;
    BranchWord word = word_of(node, branch);
    bool is_last = !branch->next && node != Lowering.script.guard;
    if (is_last) {
        open_branches(word, condition, true);
        return;
    }
    TestApart apart = branch_test(condition, true, word);
    put_branch_test(word, &apart);
}

// Answers the last branch that has been put.
const Node *put_branch(const Node *node, const Node *branch) {
    const Node *condition = branch->first_child;
    const Node *block = second_child(branch);
    const Node *next = branch->next;
    BranchWord word = word_of(node, branch);
    bool is_free = node != Lowering.script.guard;
    bool is_last = !next && !has_given_values(node);
    bool has_values = branch == node->first_child && has_given_values(node);
    if (is_free && !(has_values && takes_in_branch(node)) &&
        may_be_alternatives(condition, block, is_last)) {
        put_alternatives(word, condition, block);
        return branch;
    }
    bool has_else = next && next->kind == NODE_ELSE;
    if (is_free && has_else && !has_values && may_have_each_else(condition, next->first_child)) {
        int outermost = open_branches(word, condition, true);
        if (Lowering.gap != MESSAGE_COUNT) return next;
        lower_block(block);
        put_each_else(next->first_child, outermost);
        return next;
    }
    put_branch_head(node, branch);
    if (Lowering.gap != MESSAGE_COUNT) return branch;
    if (has_values) put_values_in_branch(node);
    lower_block(block);
    return branch;
}

// Nothing has to be done there: the word goes, too.
void put_else(const Node *branch) {
    Line *before = Lowering.lines->last;
    put_line("else", {});
    lower_block(branch->first_child);
    if (is_bare_after(Lowering.lines, before)) drop_after(Lowering.lines, before);
}

// Whether an only branch has statements, but none that the host needs: x = full(x). It may go where
// its condition does nothing.
bool is_idle(const Node *node, const Line *before) {
    const Node *branch = node->first_child;
    if (branch->next || has_given_values(node) || Lowering.gap != MESSAGE_COUNT) return false;
    const Node *condition = branch->first_child;
    return second_child(branch)->first_child && is_bare_after(Lowering.lines, before) &&
           !can_fail(condition, nullptr);
}

void close_if(int level) {
    for (; Lowering.level > level; Lowering.level--) put_line("end if;", {});
    put_line("end if;", {});
}

// The rest of the if stands after the values. Answers the level of what is to be closed.
void put_values_and_rest(const Node *node, const Node *second, int level) {
    if (are_after_branch(node)) {
        close_if(level);
        return put_values_after_branch(node);
    }
    put_values_in_else(node);
    if (second->kind == NODE_ELSE) return lower_block(second->first_child);
    Lowering.level++;
}

}  // namespace

// The branch of a script's return that does nothing else has no lines: the rest stands in its
// place.
static bool guards_only(const Node *node) {
    const Node *only = second_child(node->first_child)->first_child;
    return node == Lowering.script.guard && only == Lowering.script.left_out && !only->next;
}

static void put_guard(const Node *node) {
    Test test = lower_test(node->first_child->first_child);
    Test opposite = negate_test(&test);
    put_line("if %s then", {test_text(&opposite)});
    lower_block(second_child(node->first_child));
}

void put_if(const Node *node) {
    if (guards_only(node)) return put_guard(node);
    if (put_asked_default(node)) return;
    int level = Lowering.level;
    bool stays_open = node == Lowering.script.guard;
    Line *before = Lowering.lines->last;
    for (const Node *branch = node->first_child; branch; branch = branch->next) {
        bool has_values = is_second(node, branch) && takes_in_else(node);
        if (has_values) put_values_and_rest(node, branch, level);
        if (branch->kind != NODE_ELSE)
            branch = put_branch(node, branch);
        else if (!has_values)
            put_else(branch);
        if (Lowering.gap != MESSAGE_COUNT) break;
    }
    bool has_values = is_alone(node) && takes_in_else(node);
    if (has_values && !are_after_branch(node)) put_values_in_else(node);
    if (stays_open) {
        for (; Lowering.level > level; Lowering.level--) put_line("end if;", {});
        return put_line("else", {});
    }
    if (is_idle(node, before)) return drop_after(Lowering.lines, before);
    close_if(level);
    if (has_values && are_after_branch(node)) put_values_after_branch(node);
}
