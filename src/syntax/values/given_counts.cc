// How many arguments have been given.
#include "syntax/values/given_counts.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "syntax/names/names.h"
#include "syntax/tree/value.h"

namespace {

bool is_nargin(const Node *node) {
    return node->kind == NODE_NAME && strcmp(node->text, "nargin") == 0 &&
           !is_variable(node->symbol);
}

OperatorId mirrored(OperatorId op) {
    switch (op) {
        case OPERATOR_LESS: return OPERATOR_GREATER;
        case OPERATOR_LESS_EQUAL: return OPERATOR_GREATER_EQUAL;
        case OPERATOR_GREATER: return OPERATOR_LESS;
        case OPERATOR_GREATER_EQUAL: return OPERATOR_LESS_EQUAL;
        default: return op;
    }
}

OperatorId negated(OperatorId op) {
    switch (op) {
        case OPERATOR_LESS: return OPERATOR_GREATER_EQUAL;
        case OPERATOR_LESS_EQUAL: return OPERATOR_GREATER;
        case OPERATOR_GREATER: return OPERATOR_LESS_EQUAL;
        case OPERATOR_GREATER_EQUAL: return OPERATOR_LESS;
        case OPERATOR_EQUAL: return OPERATOR_NOT_EQUAL;
        default: return OPERATOR_EQUAL;
    }
}

GivenCounts given_by(OperatorId op, int32_t count) {
    switch (op) {
        case OPERATOR_LESS: return {0, count - 1};
        case OPERATOR_LESS_EQUAL: return {0, count};
        case OPERATOR_GREATER: return {count + 1, INT32_MAX};
        case OPERATOR_GREATER_EQUAL: return {count, INT32_MAX};
        case OPERATOR_EQUAL: return {count, count};
        default: return count == 0 ? GivenCounts{1, INT32_MAX} : ANY_COUNTS;
    }
}

// A count as it stands in the source, or -1.
int32_t count_of(const Node *node) {
    bool is_count =
        node->kind == NODE_NUMBER && has_flag(node, NUMBER_INTEGER) && strlen(node->text) < 6;
    return is_count ? static_cast<int32_t>(atol(node->text)) : -1;
}

GivenCounts given_in_comparison(const Node *chain, bool is_true) {
    const Node *left = without_parens(chain->first_child);
    const Node *right = without_parens(second_child(chain));
    OperatorId op = chain->op;
    if (second_child(chain)->next) return ANY_COUNTS;
    if (is_nargin(right)) {
        std::swap(left, right);
        op = mirrored(op);
    }
    int32_t count = is_nargin(left) ? count_of(right) : -1;
    return count < 0 ? ANY_COUNTS : given_by(is_true ? op : negated(op), count);
}

// Where all sides of the chain are true, or false.
GivenCounts given_in_sides(const Node *chain, bool is_true) {
    GivenCounts given = ANY_COUNTS;
    for (const Node *side = chain->first_child; side; side = side->next) {
        GivenCounts one = given_where(side, is_true);
        given = {std::max(given.least, one.least), std::min(given.most, one.most)};
    }
    return given;
}

bool is_call_of(const Node *node, const char *function) {
    if (node->kind != NODE_REFERENCE) return false;
    const Node *name = node->first_child;
    return name->kind == NODE_NAME && !is_variable(name->symbol) &&
           strcmp(name->text, function) == 0 && name->next->kind == NODE_ARGUMENTS &&
           !name->next->next;
}

}  // namespace

GivenCounts given_where(const Node *condition, bool is_true) {
    condition = without_parens(condition);
    if (!is_true && may_be(value_of(condition), MAY_BE_EMPTY)) return ANY_COUNTS;
    if (condition->kind == NODE_PREFIX && condition->op == OPERATOR_NOT)
        return given_where(condition->first_child, !is_true);
    if (condition->kind != NODE_CHAIN) return ANY_COUNTS;
    switch (condition->op) {
        case OPERATOR_AND_THEN:
        case OPERATOR_AND: return is_true ? given_in_sides(condition, true) : ANY_COUNTS;
        case OPERATOR_OR_ELSE:
        case OPERATOR_OR: return is_true ? ANY_COUNTS : given_in_sides(condition, false);
        case OPERATOR_LESS:
        case OPERATOR_LESS_EQUAL:
        case OPERATOR_EQUAL:
        case OPERATOR_NOT_EQUAL:
        case OPERATOR_GREATER_EQUAL:
        case OPERATOR_GREATER: return given_in_comparison(condition, is_true);
        default: return ANY_COUNTS;
    }
}

GivenCounts given_after(const Node *call) {
    bool is_own = is_call_of(call, "narginchk");
    if (!is_own && is_call_of(call, "error")) {
        call = second_child(call)->first_child;
        if (!call || call->next || !is_call_of(call, "nargchk")) return ANY_COUNTS;
    } else if (!is_own) {
        return ANY_COUNTS;
    }
    const Node *least = second_child(call)->first_child;
    const Node *most = least ? least->next : nullptr;
    if (!most || (is_own ? most->next != nullptr : !most->next || !is_nargin(most->next)))
        return ANY_COUNTS;
    int32_t limit = count_of(most);
    return {std::max(count_of(least), 0), limit < 0 ? INT32_MAX : limit};
}
