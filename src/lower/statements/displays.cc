// Displayed values.
#include "lower/statements/displays.h"

#include "lower/calls/keyword_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "run/run_state.h"
#include "syntax/names/names.h"

namespace {

bool is_displayed(const Node *statement) { return Displays && has_flag(statement, PRINTS); }

// What the host displays the value of a name by, or null.
const char *ask_display(const char *name, const char *value) {
    ExprList arguments = {};
    append_expr(&arguments, new_leaf(string_text(name)));
    append_expr(&arguments, new_leaf(value));
    const mExpr *answer = ask_host("display", arguments.first, 0);
    free_vExpr(arguments.first);
    return answer ? answer->text : nullptr;
}

void put_displayed_target(const Node *target) {
    const Node *base = target->kind == NODE_REFERENCE ? target->first_child : target;
    if (base->kind != NODE_NAME) return;
    const char *display = ask_display(base->text, written_name(base->symbol));
    if (display) put_line("%s;", {display});
}

bool may_have_no_value(const Node *expression) {
    expression = without_parens(expression);
    if (expression->kind == NODE_REFERENCE) expression = expression->first_child;
    if (expression->kind == NODE_REFERENCE || expression->kind == NODE_PARENS) return true;
    return expression->kind == NODE_NAME &&
           (!is_variable(expression->symbol) || holds_function(expression->symbol));
}

}  // namespace

void put_displayed_targets(const Node *assignment) {
    if (!is_displayed(assignment)) return;
    const Node *targets = assignment->first_child;
    if (assignment->kind == NODE_ASSIGN) return put_displayed_target(targets);
    for (const Node *target = targets->first_child; target; target = target->next)
        put_displayed_target(target);
}

const char *displayed_value(const Node *statement, const char *value) {
    const Node *expression = without_parens(statement->first_child);
    if (!is_displayed(statement) || may_have_no_value(expression)) return nullptr;
    return ask_display(expression->kind == NODE_NAME ? expression->text : "ans", value);
}
