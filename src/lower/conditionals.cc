// if statements.
#include <string.h>

#include "lower/context.h"
#include "lower/lines.h"
#include "lower/short_circuits.h"
#include "lower/statements.h"

namespace {

// Lowers a condition; what it needs in front goes into lines.
const char *lower_test(const Node *condition, Lines *lines) {
    Lines *outer = Lowering.lines;
    Lowering.lines = lines;
    const char *test = test_text(lower_condition(condition)->text);
    Lowering.lines = outer;
    return test;
}

void put_first_branch(const Node *branch) {
    put_line("if %s then", {test_text(lower_condition(branch->first_child)->text)});
}

// A condition that needs lines, in front or for a procedure in it, begins a new if inside of an
// else.
void put_next_branch(const Node *branch) {
    Lines needed = {};
    Lowering.level++;
    const char *test = lower_test(branch->first_child, &needed);
    Lowering.level--;
    if (!needed.first && !strchr(test, '\n')) return put_line("elif %s then", {test});
    put_line("else", {});
    Lowering.level++;
    append_lines(Lowering.lines, &needed);
    put_line("if %s then", {test});
}

}  // namespace

void put_if(const Node *node) {
    int level = Lowering.level;
    bool stays_open = node == Lowering.script.guard;
    for (const Node *branch = node->first_child; branch; branch = branch->next) {
        if (branch == node->first_child) {
            put_first_branch(branch);
        } else if (branch->kind == NODE_ELSE) {
            put_line("else", {});
        } else {
            put_next_branch(branch);
        }
        if (Lowering.gap != MESSAGE_COUNT) break;
        lower_block(branch->kind == NODE_ELSE ? branch->first_child : second_child(branch));
    }
    for (; Lowering.level > level; Lowering.level--) put_line("end if;", {});
    put_line(stays_open ? "else" : "end if;", {});
}
