// Branches of conditions.
#include "lower/statements/branches.h"

#include "lower/conditions/condition_sides.h"
#include "lower/conditions/conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"

namespace {

void close_branches(int outermost) {
    for (; Lowering.level > outermost; Lowering.level--) put_line("end if;", {});
    put_line("end if;", {});
}

void open_if(const Test *test) { put_line("if %s then", {test_text(test)}); }

bool is_asked_apart(const Node *chain, const Node *side) {
    return can_side_fail(chain, side) || needs_branches(side);
}

int open_where(BranchWord word, const Node *condition, bool is_true);

// Up to the side end (not included; null for all). What puts lines is out of line: the frames of
// nested conditions stay small.
[[gnu::noinline]] int open_sides(BranchWord word, const Node *chain, bool is_true,
                                 const Node *end) {
    int outermost = -1;
    for (const Node *side = chain->first_child; side != end; word = BRANCH_IF) {
        if (outermost >= 0) Lowering.level++;
        int level;
        if (needs_branches(side)) {
            level = open_where(word, side, is_true);
            side = side->next;
        } else {
            TestApart apart = side_tests(chain, &side, is_true, true, word, end);
            level = put_branch_test(word, &apart);
        }
        if (outermost < 0) outermost = level;
    }
    return outermost;
}

[[gnu::noinline]] int open_one(BranchWord word, const Node *condition, bool is_true) {
    TestApart apart = branch_test(condition, is_true, word);
    return put_branch_test(word, &apart);
}

// Opens branches in which the condition is true, or is not. Answers the level of the outermost.
int open_where(BranchWord word, const Node *node, bool is_true) {
    node = without_parens(node);
    if (is_negation(node)) return open_where(word, node->first_child, !is_true);
    if (needs_branches(node) && is_and(node) == is_true)
        return open_sides(word, node, is_true, nullptr);
    return open_one(word, node, is_true);
}

// A variable that holds one value where the condition is true, else the other.
[[gnu::noinline]] const char *put_decision(const Node *condition, const char *yes, const char *no) {
    bool is_conjunction = is_and(condition);
    const char *name = new_temporary();
    put_line("%s := %s;", {name, is_conjunction ? no : yes});
    int level = Lowering.level;
    open_where(BRANCH_IF, condition, is_conjunction);
    put_inner_line("%s := %s;", {name, is_conjunction ? yes : no});
    close_branches(level);
    return name;
}

// Sides that are asked one after the other have a break each.
void put_break_if(const Node *node, bool is_true) {
    node = without_parens(node);
    if (is_negation(node)) return put_break_if(node->first_child, !is_true);
    if (needs_branches(node) && is_and(node) != is_true) {
        for (const Node *side = node->first_child; side; side = side->next)
            put_break_if(side, is_true);
        return;
    }
    int level = Lowering.level;
    open_where(BRANCH_IF, node, is_true);
    put_inner_line("break;", {});
    close_branches(level);
}

// The last side decides in the innermost branch, by what put_last puts there.
const char *decide_by_last(const Node *chain, const Node *last,
                           void (*put_last)(const char *name, const Node *last, bool is_and)) {
    const char *name = new_temporary();
    put_line("%s := %s;", {name, is_and(chain) ? "false" : "true"});
    int level = Lowering.level;
    open_sides(BRANCH_IF, chain, is_and(chain), last);
    Lowering.level++;
    put_last(name, last, is_and(chain));
    Lowering.level--;
    close_branches(level);
    return name;
}

void put_last_value(const char *name, const Node *last, bool) {
    const char *value = lower_tested(last)->text;
    put_line("%s := %s;", {name, is_truth(last) ? value : value_condition(value)});
}

// What tells the truth is taken as it is.
void put_last_test(const char *name, const Node *last, bool is_and) {
    Test test = lower_test(last);
    bool is_truth = test.text && test.level == TEST_ATOM;
    if (is_truth) return put_line("%s := %s;", {name, test.text});
    if (!is_and) test = negate_test(&test);
    open_if(&test);
    put_inner_line("%s := %s;", {name, is_and ? "true" : "false"});
    put_line("end if;", {});
}

const Node *last_side(const Node *chain) {
    const Node *last = chain->first_child;
    while (last->next) last = last->next;
    return last;
}

bool decides_alone(const Node *chain, const Node *last) {
    return can_side_fail(chain, last) && !needs_branches(last);
}

}  // namespace

TestApart branch_test(const Node *condition, bool is_true, BranchWord word) {
    TestApart apart = lower_test_apart(condition, word == BRANCH_ELIF);
    if (!is_true) apart.test = negate_test(&apart.test);
    return apart;
}

TestApart side_tests(const Node *chain, const Node **side, bool is_true, bool is_and,
                     BranchWord word, const Node *end) {
    TestApart apart = branch_test(*side, is_true, word);
    JoinedTests joined = {};
    joined.is_and = is_and;
    append_test(&joined, &apart.test);
    while ((*side = (*side)->next) != end && !is_asked_apart(chain, *side)) {
        TestApart next = branch_test(*side, is_true, word);
        append_test(&joined, &next.test);
        append_lines(&apart.needed, &next.needed);
        apart.is_short &= next.is_short;
    }
    apart.test = join_tests(&joined);
    return apart;
}

int put_branch_test(BranchWord word, TestApart *apart) {
    if (word == BRANCH_ELIF && apart->is_short) {
        put_line("elif %s then", {test_text(&apart->test)});
        return Lowering.level;
    }
    if (word == BRANCH_ELIF) {
        put_line("else", {});
        Lowering.level++;
    }
    append_lines(Lowering.lines, &apart->needed);
    open_if(&apart->test);
    return Lowering.level;
}

int open_branches(BranchWord word, const Node *condition, bool is_true) {
    return open_where(word, condition, is_true);
}

void put_break_unless(const Node *condition) { put_break_if(condition, false); }
void put_break_where(const Node *condition) { put_break_if(condition, true); }

void put_break(const Test *test) {
    open_if(test);
    put_inner_line("break;", {});
    put_line("end if;", {});
}

Test decide(const Node *condition) {
    const Node *last = last_side(condition);
    return new_test(decides_alone(condition, last) ? decide_by_last(condition, last, put_last_test)
                                                   : put_decision(condition, "true", "false"));
}

Operand lower_branched_value(const Node *chain) {
    const Node *last = last_side(chain);
    return {new_leaf(decides_alone(chain, last) ? decide_by_last(chain, last, put_last_value)
                                                : put_decision(chain, "true", "false")),
            HOST_ATOM};
}
