// Targets of an unknown number.
#include "lower/targets/dealt_targets.h"

#include <assert.h>
#include <string.h>

#include "lower/expressions/expressions.h"
#include "lower/expressions/value_lists.h"
#include "lower/expressions/value_runs.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/targets/shared_parts.h"
#include "lower/targets/targets.h"
#include "syntax/names/names.h"
#include "translate/text_forms.h"

namespace {

// What deal hands out; null for another value.
const Node *dealt_argument(const Node *value) {
    if (value->kind != NODE_REFERENCE) return nullptr;
    const Node *base = value->first_child;
    const Node *arguments = base->next;
    bool is_deal = base->kind == NODE_NAME && !is_variable(base->symbol) &&
                   strcmp(base->text, "deal") == 0 && arguments->kind == NODE_ARGUMENTS;
    const Node *first = is_deal && !arguments->next ? arguments->first_child : nullptr;
    return first && !first->next ? first : nullptr;
}

// Whether fields are those of an array: an index of one element selects a struct.
bool is_open_target(const Node *target) {
    if (target->kind != NODE_REFERENCE) return false;
    if (is_value_list(target, false)) return true;
    ListEnd end = list_end(target);
    return end.last->kind == NODE_FIELD && is_value_list(target, true);
}

// The value of each target, the number of which is a host text.
const char *single_value(const Node *value) {
    const mExpr *expr = lower_expression(value);
    if (without_parens(value)->kind == NODE_NAME) return held_text(value, expr->text);
    if (expr->scalar) return expr->text;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, expr->text});
    return needs_copies(value) ? form_text("copy(%s)", {name}) : name;
}

void put_loop(const ValueRun *targets, const char *number, const char *value) {
    put_line("for %s from %s to %s do", {number, targets->from, targets->to});
    Lowering.level++;
    put_line("%s := %s;", {element_of(targets, number), value});
    Lowering.level--;
    put_line("end do;", {});
}

bool starts_at_one(const ValueRun *run) { return strcmp(run->from, "1") == 0; }

}  // namespace

bool is_dealt(const Node *assignment) {
    const Node *targets = assignment->first_child;
    const Node *target = targets->first_child;
    if (!target || target->next || !is_open_target(target)) return false;
    const Node *value = targets->next;
    return dealt_argument(value) || is_value_list(value, false);
}

void put_dealt(const Node *assignment) {
    assert(is_dealt(assignment));
    const Node *targets = assignment->first_child;
    const Node *target = targets->first_child;
    const Node *value = dealt_argument(targets->next);
    if (!value) value = targets->next;
    note_fields(target);
    lower_target(target, second_child(target));  // its variable may have to begin
    ValueRun run = new_run(target);
    const char *number = new_temporary();
    if (!is_value_list(value, false)) return put_loop(&run, number, single_value(value));
    ValueRun values = new_run(without_parens(value));
    if (!starts_at_one(&run) || !starts_at_one(&values))
        return report_gap(TARGET_VALUES_GAP, target);
    put_loop(&run, number, held_text(targets->next, element_of(&values, number)));
}
