// & and | of arrays in conditions.
#include "lower/expressions/elementwise.h"

#include "lower/conditions/condition_sides.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/operands.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"

static bool is_put(const Node *side) { return is_elementwise(side) && any_side_can_fail(side); }

static const char *side_text(const Node *side) {
    const Node *inner = without_parens(side);
    return is_put(inner) ? put_elementwise(inner) : lower_expression(side)->text;
}

// Out of line: the frames of nested conditions stay small.
[[gnu::noinline]] const char *put_elementwise(const Node *chain) {
    const Node *first = without_parens(chain->first_child);
    bool is_nested = is_put(first);
    const char *name = is_nested ? put_elementwise(first) : new_temporary();
    if (!is_nested) put_line("%s := %s;", {name, lower_expression(chain->first_child)->text});
    Test test = test_of_value(name);
    Test is_open = is_and(chain) ? test : negate_test(&test);
    for (const Node *side = second_child(chain); side; side = side->next) {
        put_line("if %s then", {test_text(&is_open)});
        Lowering.level++;
        Operand left = {new_leaf(name), HOST_ATOM};
        Operand right = {new_leaf(side_text(side)), HOST_ATOM};
        put_line("%s := %s;", {name, new_binary(chain->op, &left, &right).expr->text});
        Lowering.level--;
        put_line("end if;", {});
    }
    return name;
}
