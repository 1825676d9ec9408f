// Checks of the number of arguments or results. As calls they could not see those of their caller:
// they become tests of the host's counts.
#include "lower/statements/argument_checks.h"

#include <string.h>
#include <strings.h>

#include "lower/calls/calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/operands.h"
#include "lower/lines/pieces.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/statements/raised_errors.h"
#include "support/same_text.h"
#include "syntax/names/names.h"
#include "translate/operators.h"
#include "translate/text_forms.h"

namespace {

// How many arguments or results there are, and may be.
struct Check {
    const Node *name;  // of the function that raises the error
    const Node *least;
    const Node *most;
    const char *count;  // host text
    const char *kind;
};

bool is_call_of(const Node *node, const char *function) {
    if (node->kind != NODE_REFERENCE) return false;
    const Node *base = node->first_child;
    bool is_named = base->kind == NODE_NAME && is_same_text(base->text, function);
    bool is_call = is_named && base->next->kind == NODE_ARGUMENTS && !base->next->next;
    return is_call && !is_variable(base->symbol) && !own_function(base);
}

const Node *arguments_of(const Node *call) { return second_child(call)->first_child; }

// The two bounds of the call.
bool read_bounds(const Node *call, Check *check) {
    check->least = arguments_of(call);
    check->most = check->least ? check->least->next : nullptr;
    return check->most != nullptr;
}

// narginchk(least, most)
bool read_own_count(const Node *call, Check *check) {
    bool is_in = is_call_of(call, "narginchk");
    if (!is_in && !is_call_of(call, "nargoutchk")) return false;
    if (!read_bounds(call, check) || check->most->next) return false;
    check->name = call->first_child;
    check->count = is_in ? "nargs" : "_nresults";
    check->kind = is_in ? "input" : "output";
    return true;
}

// Asked for twice.
const char *count_text(const Node *count) {
    const char *text = lower_expression(count)->text;
    if (is_identifier(text) || is_same_text(text, "_nresults")) return text;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, text});
    return name;
}

// error(nargchk(least, most, count)), perhaps with 'struct' after
bool read_given_count(const Node *call, Check *check) {
    if (!is_call_of(call, "error")) return false;
    const Node *value = arguments_of(call);
    if (!value || value->next) return false;
    bool is_in = is_call_of(value, "nargchk");
    if (!is_in && !is_call_of(value, "nargoutchk")) return false;
    const Node *count = read_bounds(value, check) ? check->most->next : nullptr;
    if (!count) return false;
    note_piece(value->first_child, CALL_OF_LANGUAGE);
    check->name = call->first_child;
    check->count = count_text(count);
    check->kind = is_in ? "input" : "output";
    return true;
}

const char *comparison(const Check *check, int op, const Node *bound) {
    Test test = new_relation(check->count, op, lower_expression(bound)->text, true);
    return test_text(&test);
}

bool is_zero(const Node *bound) {
    return bound->kind == NODE_NUMBER && is_same_text(bound->text, "0");
}

bool is_infinite(const Node *bound) {
    return bound->kind == NODE_NAME && !is_variable(bound->symbol) &&
           strcasecmp(bound->text, "inf") == 0;
}

void put_error(const Check *check, const char *amount) {
    put_raised_error(check->name, form_text("%s %s arguments.", {amount, check->kind}));
}

void put_tests(const Check *check) {
    const char *low = is_zero(check->least) ? nullptr : comparison(check, OP_LT, check->least);
    const char *high = is_infinite(check->most) ? nullptr : comparison(check, OP_GT, check->most);
    if (low) {
        put_line("if %s then", {low});
        put_error(check, "Not enough");
    }
    if (high) {
        put_line("%s %s then", {low ? "elif" : "if", high});
        put_error(check, "Too many");
    }
    if (low || high) put_line("end if;", {});
}

}  // namespace

bool put_argument_check(const Node *expression) {
    if (Lowering.scope->owner->kind != NODE_FUNCTION) return false;
    Check check = {};
    if (!read_own_count(expression, &check) && !read_given_count(expression, &check)) return false;
    put_tests(&check);
    return true;
}
