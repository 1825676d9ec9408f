// Branches of conditions.
#include "lower/statements/branches.h"

#include "lower/conditions/condition_sides.h"
#include "lower/conditions/conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"

namespace {

void open_where(const Node *condition, bool is_true);

void close_branches(int outermost) {
    for (; Lowering.level > outermost; Lowering.level--) put_line("end if;", {});
    put_line("end if;", {});
}

void open_if(const Test *test) { put_line("if %s then", {test_text(test)}); }

Test test_where(const Node *condition, bool is_true) {
    Test test = lower_test(condition);
    return is_true ? test : negate_test(&test);
}

bool is_asked_apart(const Node *chain, const Node *side) {
    return can_side_fail(chain, side) || needs_branches(side);
}

// One if for a side and those after it that cannot fail, up to the side end. Answers the next one.
const Node *open_together(const Node *chain, const Node *side, bool is_true, const Node *end) {
    JoinedTests joined = {};
    joined.is_and = true;
    do {
        Test test = test_where(side, is_true);
        append_test(&joined, &test);
        side = side->next;
    } while (side != end && !is_asked_apart(chain, side));
    Test test = join_tests(&joined);
    open_if(&test);
    return side;
}

// Up to the side end (not included; null for all). What puts lines is out of line: the frames of
// nested conditions stay small.
[[gnu::noinline]] void open_sides(const Node *chain, bool is_true, const Node *end) {
    for (const Node *side = chain->first_child; side != end;) {
        if (side != chain->first_child) Lowering.level++;
        if (needs_branches(side)) {
            open_where(side, is_true);
            side = side->next;
        } else {
            side = open_together(chain, side, is_true, end);
        }
    }
}

// Opens ifs in which the condition is true, or is not.
void open_where(const Node *node, bool is_true) {
    node = without_parens(node);
    if (is_negation(node)) return open_where(node->first_child, !is_true);
    if (needs_branches(node) && is_and(node) == is_true) return open_sides(node, is_true, nullptr);
    Test test = test_where(node, is_true);
    open_if(&test);
}

// A variable that holds one value where the condition is true, else the other.
[[gnu::noinline]] const char *put_decision(const Node *condition, const char *yes, const char *no) {
    bool is_conjunction = is_and(condition);
    const char *name = new_temporary();
    put_line("%s := %s;", {name, is_conjunction ? no : yes});
    int level = Lowering.level;
    open_where(condition, is_conjunction);
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
    open_where(node, is_true);
    put_inner_line("break;", {});
    close_branches(level);
}

// The last side decides in the innermost branch.
const char *decide_by_last(const Node *chain, const Node *last) {
    const char *name = new_temporary();
    put_line("%s := %s;", {name, is_and(chain) ? "false" : "true"});
    int level = Lowering.level;
    open_sides(chain, is_and(chain), last);
    Lowering.level++;
    const char *value = lower_tested(last)->text;
    put_line("%s := %s;", {name, is_truth(last) ? value : value_condition(value)});
    Lowering.level--;
    close_branches(level);
    return name;
}

}  // namespace

void open_branches(const Node *condition) { open_where(condition, true); }

void put_break_unless(const Node *condition) { put_break_if(condition, false); }
void put_break_where(const Node *condition) { put_break_if(condition, true); }

void put_break(const Test *test) {
    open_if(test);
    put_inner_line("break;", {});
    put_line("end if;", {});
}

Test decide(const Node *condition) { return flag_test(put_decision(condition, "1", "0")); }

Operand lower_branched_value(const Node *chain) {
    const Node *last = chain->first_child;
    while (last->next) last = last->next;
    bool decides = can_side_fail(chain, last) && !needs_branches(last);
    const char *name = decides ? decide_by_last(chain, last) : put_decision(chain, "true", "false");
    return {new_leaf(name), HOST_ATOM};
}
