// if statements.
#include "lower/conditions/condition_sides.h"
#include "lower/conditions/conditions.h"
#include "lower/lines/lines.h"
#include "lower/procedures/defaults.h"
#include "lower/program/context.h"
#include "lower/statements/branches.h"
#include "lower/statements/statements.h"

namespace {

// Whether nothing is to be done where the condition of the first branch is false.
bool is_alone(const Node *node) {
    return !node->first_child->next && node != Lowering.script.guard;
}

void put_head(const char *word, const Test *test) {
    put_line("%s %s then", {word, test_text(test)});
}

void put_first_branch(const Node *node) {
    const Node *condition = node->first_child->first_child;
    if (is_alone(node)) return open_branches(condition);
    Test test = lower_test(condition);
    put_head("if", &test);
}

void open_else() {
    put_line("else", {});
    Lowering.level++;
}

// A condition that needs lines, in front or for a procedure in it, begins a new if inside of an
// else.
void put_next_branch(const Node *branch) {
    const Node *condition = branch->first_child;
    if (!branch->next && needs_branches(condition)) {
        open_else();
        return open_branches(condition);
    }
    TestApart apart = lower_test_apart(condition);
    if (apart.is_short) return put_head("elif", &apart.test);
    open_else();
    append_lines(Lowering.lines, &apart.needed);
    put_head("if", &apart.test);
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
    put_head("if", &opposite);
    lower_block(second_child(node->first_child));
}

void put_if(const Node *node) {
    if (guards_only(node)) return put_guard(node);
    int level = Lowering.level;
    bool stays_open = node == Lowering.script.guard;
    for (const Node *branch = node->first_child; branch; branch = branch->next) {
        if (branch == node->first_child) {
            put_first_branch(node);
        } else if (branch->kind == NODE_ELSE) {
            put_line("else", {});
        } else {
            put_next_branch(branch);
        }
        if (Lowering.gap != MESSAGE_COUNT) break;
        lower_block(branch->kind == NODE_ELSE ? branch->first_child : second_child(branch));
    }
    if (is_alone(node) && Lowering.level == level) put_given_values(node);
    for (; Lowering.level > level; Lowering.level--) put_line("end if;", {});
    put_line(stays_open ? "else" : "end if;", {});
}
