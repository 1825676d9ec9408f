// Several targets whose number is known at run time only.
#include "lower/targets/counted_targets.h"

#include <assert.h>
#include <string.h>

#include <algorithm>

#include "lower/calls/requested_results.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/value_lists.h"
#include "lower/expressions/value_runs.h"
#include "lower/lines/text_list.h"
#include "lower/procedures/procedures.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/statements/raised_errors.h"
#include "lower/targets/assignments.h"
#include "lower/targets/targets.h"
#include "support/allocation.h"
#include "translate/host_queries.h"
#include "translate/text_forms.h"

namespace {

// Results that are asked of a function with an unknown number of them, and of any.
constexpr int MOST_UNKNOWN = 8;
constexpr int MOST_KNOWN = 32;

// A target besides the list.
struct OtherTarget {
    const char *text;
    Target target;
    OtherTarget *next;
};

struct Counted {
    const Node *call;
    const char *value;
    OtherTarget *others;  // all of them
    const Node *list;
    int before;          // of the others, how many stand in front of the list
    int count;           // of the others
    ValueRun run;        // of the list
    const char *length;  // of the list: a host name
    int most;            // results that there may be
    bool is_known;       // the function has that many, and no more
};

const Node *called_name(const Node *value) {
    const Node *base = value->kind == NODE_REFERENCE ? value->first_child : value;
    return base->kind == NODE_NAME ? base : nullptr;
}

bool is_call(const Node *value) {
    const Node *name = called_name(value);
    if (!name) return false;
    bool is_function = !is_variable(name->symbol) || holds_function(name->symbol);
    bool is_plain = name == value || (name->next->kind == NODE_ARGUMENTS && !name->next->next);
    // a parameter may hold a function: [c{1:n}] = f(x)
    bool may_be_function = name != value && name->symbol->position > 0;
    return is_plain && (is_function || may_be_function);
}

// The target that is a list, if one is.
const Node *only_list(const Node *targets) {
    const Node *found = nullptr;
    for (const Node *target = targets->first_child; target; target = target->next) {
        if (!is_value_list(target, false)) continue;
        if (found) return nullptr;
        found = target;
    }
    return found;
}

OtherTarget *lower_other(const Node *node) {
    OtherTarget *other = AllocRecord<OtherTarget>();
    *other = {nullptr, {}, nullptr};
    if (node->kind == NODE_TILDE) {
        other->text = new_temporary();
    } else {
        other->target = lower_target(node, nullptr);
        other->text = target_text(&other->target);
    }
    return other;
}

void lower_others(Counted *counted, const Node *targets) {
    OtherTarget **last = &counted->others;
    for (const Node *node = targets->first_child; node; node = node->next) {
        if (node == counted->list) {
            counted->before = counted->count;
            continue;
        }
        *last = lower_other(node);
        last = &(*last)->next;
        counted->count++;
    }
}

// The texts of all targets, the list having so many.
const char *targets_text(const Counted *counted, int listed) {
    TextList texts = {};
    const OtherTarget *other = counted->others;
    for (int k = 0; k < counted->before; k++, other = other->next) append_text(&texts, other->text);
    for (int k = 1; k <= listed; k++)
        append_text(&texts, element_of(&counted->run, number_text(k)));
    for (; other; other = other->next) append_text(&texts, other->text);
    return join_texts(&texts);
}

void put_results(const Counted *counted, int listed) {
    int targets = counted->count + listed;
    Lowering.level++;
    if (targets == 0) {
        put_line("%s;", {counted->value});
    } else {
        const char *form = targets == 1 ? "%s := %s;" : "(%s) := %s;";
        put_line(form, {targets_text(counted, listed), counted->value});
    }
    Lowering.level--;
}

bool is_nresults(const char *length) { return strcmp(length, "_nresults") == 0; }

const char *length_condition(const char *length, int listed) {
    if (is_nresults(length)) return form_text("_nresults = %s", {number_text(listed)});
    return count_condition(length, OP_EQ, listed);
}

// [varargout{1:nargout}]: where the caller asks for one result or none there are as many as the
// function gives.
bool is_varargout(const Counted *counted) {
    bool is_whole = counted->count == 0 && is_nresults(counted->length);
    bool has_cell = Lowering.scope->flags & HAS_VARARGOUT;
    return is_whole && has_cell && !*counted->run.field &&
           strcmp(counted->run.base, varargout_name(Lowering.scope)) == 0;
}

int put_first_branch(const Counted *counted) {
    int first = is_varargout(counted) ? 2 : 1;
    put_line("if %s then", {count_condition(counted->length, OP_LT, first)});
    if (first == 2) {
        put_inner_line("%s := rtable([%s],subtype='Vector[row]');",
                       {counted->run.base, counted->value});
    } else {
        put_results(counted, 0);
    }
    return first;
}

void put_branches(const Counted *counted) {
    int listed = put_first_branch(counted);
    for (; counted->count + listed <= counted->most; listed++) {
        put_line("elif %s then", {length_condition(counted->length, listed)});
        put_results(counted, listed);
    }
    put_line("else", {});
    const char *most = number_text(counted->most);
    put_raised_error(called_name(counted->call),
                     counted->is_known
                         ? "Too many output arguments."
                         : form_text("More than %s results are not translated.", {most}));
    put_line("end if;", {});
}

void set_most(Counted *counted) {
    const Node *name = called_name(counted->call);
    int outputs = is_variable(name->symbol) ? -1 : count_outputs(name);
    counted->is_known = outputs >= 0 && outputs <= MOST_KNOWN;
    counted->most = counted->is_known ? outputs : MOST_UNKNOWN;
}

// A run from another number is one over the positions.
void begin_at_one(ValueRun *run) {
    if (strcmp(run->from, "1") == 0) return;
    run->positions = new_temporary();
    put_line("%s := Vector[row]([seq(%s..%s)]);", {run->positions, run->from, run->to});
    run->from = "1";
    run->to = form_text("ArrayNumElems(%s,'All')", {run->positions});
}

// A name or _nresults, as it is asked for several times.
const char *length_of(const ValueRun *run) {
    if (is_identifier(run->to) || is_nresults(run->to)) return run->to;
    const char *name = new_temporary();
    put_line("%s := %s;", {name, run->to});
    return name;
}

}  // namespace

bool is_counted(const Node *assignment) {
    const Node *targets = assignment->first_child;
    return is_call(without_parens(targets->next)) && only_list(targets);
}

void put_counted(const Node *assignment) {
    assert(is_counted(assignment));
    const Node *targets = assignment->first_child;
    Counted counted = {};
    counted.call = without_parens(targets->next);
    counted.list = only_list(targets);
    set_most(&counted);
    note_fields(counted.list);
    lower_target(counted.list, second_child(counted.list));  // its variable may have to begin
    counted.run = new_run(counted.list);
    begin_at_one(&counted.run);
    counted.length = length_of(&counted.run);
    lower_others(&counted, targets);
    request_results(counted.call, HOST_RESULTS_VARY);
    counted.value = lower_for_results(counted.call, std::max(counted.most, 2));
    put_branches(&counted);
    for (const OtherTarget *other = counted.others; other; other = other->next)
        if (other->target.pending) finish_target(&other->target);
}
