// Functions that are written like other constructs.
#include "lower/library/rewrites.h"

#include <string.h>

#include "lower/calls/calls.h"
#include "lower/calls/keyword_calls.h"
#include "lower/calls/plain_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/library/named_functions.h"
#include "lower/library/needs.h"
#include "lower/library/text_formats.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/targets/shared_parts.h"
#include "support/allocation.h"
#include "support/row_index.h"
#include "syntax/names/names.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/value.h"
#include "translate/indices.h"
#include "translate/package_prefix.h"
#include "translate/text_forms.h"

namespace {

bool is_surely_text(const Node *argument) { return is_surely(value_of(argument), MAY_BE_TEXT); }

// Concatenate takes numbers and cells, not texts.
mExpr *join_along(const char *side, const vExpr *values) {
    const char *prefix = array_tools_prefix();
    return new_call_leaf(form_text("%sConcatenate(%s, %s)", {prefix, side, exprs_text(values)}));
}

mExpr *join_horizontally(const OfferedCall *call) {
    return meets_needs(call, NEEDS_JOINABLE) && call->first ? join_along("2", call->values)
                                                            : nullptr;
}

mExpr *join_vertically(const OfferedCall *call) {
    return meets_needs(call, NEEDS_JOINABLE) && call->first ? join_along("1", call->values)
                                                            : nullptr;
}

// cat(1, ...) and cat(2, ...).
mExpr *join_by_side(const OfferedCall *call) {
    const Node *side = call->first;
    bool is_known = side && side->next && side->kind == NODE_NUMBER && strlen(side->text) == 1 &&
                    (*side->text == '1' || *side->text == '2');
    if (!is_known || !meets_needs(call, NEEDS_JOINABLE)) return nullptr;
    return join_along(side->text, call->values->next);
}

mExpr *call_value(const char *function, const vExpr *values) {
    return new_call_of(function, values);
}

mExpr *call_named(const OfferedCall *call, const Node *text) {
    const Node *name = named_function(text, NODE_NAME);
    return call_with_values(name, text->next, call->values->next, call->results);
}

// Of a handle, of the name of a function, and of a variable that holds a function.
mExpr *call_function(const OfferedCall *call) {
    const Node *function = call->first;
    if (!function) return nullptr;
    if (is_identifier_text(function)) return call_named(call, function);
    bool is_function = function->kind == NODE_HANDLE ||
                       (function->kind == NODE_NAME && is_variable(function->symbol) &&
                        holds_function(function->symbol));
    return is_function ? call_value(call->values->item->text, call->values->next) : nullptr;
}

// The call as it stands in the source.
mExpr *call_builtin(const OfferedCall *call) {
    const Node *function = call->first;
    if (!function || !is_identifier_text(function)) return nullptr;
    const Node *name = named_function(function, NODE_NAME);
    return call_value(host_function(name), call->values->next);
}

// The same with the arguments of the procedure.
mExpr *call_with_all(const OfferedCall *call) {
    if (!meets_needs(call, FOR_LIBRARY)) return nullptr;
    const char *name = host_function(named_function(call->first, NODE_NAME));
    return new_call_leaf(form_text("%s(args)", {name}));
}

// Of a variable, or of what it holds.
bool is_written_field(const OfferedCall *call) {
    if (!is_identifier_text(call->first->next)) return false;
    const Node *base = call->first;
    if (base->kind == NODE_REFERENCE) base = base->first_child;
    return base->kind == NODE_NAME && is_variable(base->symbol);
}

// The second argument is the name of a field, and not the cells of an index.
bool has_field_name(const OfferedCall *call, int count) {
    if (call->count != count) return false;
    return !is_surely(value_of(call->first->next), MAY_BE_CELL | ARITHMETIC);
}

// What a deletion leaves, as the host says it.
mExpr *leave_positions(const OfferedCall *call) {
    return meets_needs(call, FOR_LIBRARY) ? new_keyword_call("setdiff", call->values) : nullptr;
}

// One element of what is no function, as a part of it.
mExpr *take_part(const OfferedCall *call) {
    if (!meets_needs(call, FOR_LIBRARY)) return nullptr;
    const char *position = plain_value(call->values->next->item)->text;
    return new_call_leaf(form_text("%s(%s..%s)", {call->values->item->text, position, position}));
}

// s.name or s.(name).
mExpr *take_field(const OfferedCall *call) {
    if (!has_field_name(call, 2)) return nullptr;
    if (!is_written_field(call)) return new_keyword_call("getfield", call->values);
    const char *field = written_field(intern(call->first->next->text));
    return new_leaf(form_text("%s:-%s", {call->values->item->text, field}));
}

// What s.(name) = value makes of s.
mExpr *set_field(const OfferedCall *call) {
    return has_field_name(call, 3) ? new_keyword_call("setfield", call->values) : nullptr;
}

mExpr *ask_field(const OfferedCall *call) {
    bool is_known = call->count == 2 && is_surely_text(call->first->next);
    return is_known ? new_keyword_call("isfield", call->values) : nullptr;
}

// The numbers of characters, or of truth values.
mExpr *take_numbers(const OfferedCall *call) {
    if (call->count != 1) return nullptr;
    if (is_surely_text(call->first)) return new_keyword_call("double", call->values);
    if (!is_surely(value_of(call->first), MAY_BE_TRUTH)) return nullptr;
    Operand left = without_parentheses(call->values->item);
    Operand right = {new_node(EXPR_INTEGER, "0"), HOST_ATOM};
    Operand sum = new_binary(OPERATOR_PLUS, &left, &right);
    return in_parentheses(&sum);
}

// In a condition a text is compared as by a switch.
mExpr *compare_texts(const OfferedCall *call) {
    bool is_test = call->count == 2 && call->is_tested && Lowering.takes_test;
    if (!is_test || !meets_needs(call, NEEDS_TEXTS)) return nullptr;
    const vExpr *values = call->values;
    Test test = new_test(form_text(
        "%s = %s", {plain_value(values->item)->text, plain_value(values->next->item)->text}));
    return new_tested_value(&test);
}

// The value, or a variable that holds it, which may be written twice.
const char *shared_text(const Node *argument, const char *value) {
    if (is_identifier(value) || argument->kind == NODE_NUMBER) return value;
    const char *shared = new_temporary();
    put_line("%s := %s;", {shared, value});
    return shared;
}

// One value for all results, or one for each.
mExpr *deal_values(const OfferedCall *call) {
    if (call->count == 1 && has_one_result(call)) return call->values->item;
    if (call->results < 1) return nullptr;
    const char *count = number_text(call->results);
    if (call->count == 1) {
        const char *value = shared_text(call->first, call->values->item->text);
        if (needs_copies(call->first)) value = form_text("copy(%s)", {value});
        return new_call_leaf(form_text("seq(%s,qxrp_i=1..%s)", {value, count}));
    }
    if (call->count != call->results) return nullptr;
    const char *all = new_temporary();
    put_line("%s := rtable([%s],subtype='Vector[row]');", {all, exprs_text(call->values)});
    return new_call_leaf(form_text("seq(%s(qxrp_i),qxrp_i=1..%s)", {all, count}));
}

// No struct of any: an array without elements, as a literal is.
mExpr *make_no_structs(const OfferedCall *call) {
    bool is_empty = call->count == 1 && is_empty_matrix(without_parens(call->first));
    return is_empty ? call->values->item : nullptr;
}

struct Rewrite {
    const char *name;
    bool takes_lists; /* of values, whose number nobody knows */
    bool takes_results;
    mExpr *(*rewrite)(const OfferedCall *call);
};

// clang-format off
constexpr Rewrite Rewrites[] = {
    {"horzcat",  true,  false, join_horizontally},
    {"vertcat",  true,  false, join_vertically},
    {"cat",      true,  false, join_by_side},
    {"feval",    false, true,  call_function},
    {"builtin",  false, true,  call_builtin},
    {"given_to", false, true,  call_with_all},
    {"part_at", false, false, take_part},
    {"left_positions", false, false, leave_positions},
    {"getfield", false, false, take_field},
    {"setfield", false, false, set_field},
    {"isfield",  false, false, ask_field},
    {"double",   false, false, take_numbers},
    {"deal",     false, true,  deal_values},
    {"strcmp",   false, false, compare_texts},
    {"sprintf",  false, false, new_formatted_text},
    {"struct",   false, false, make_no_structs},
};
// clang-format on

constexpr auto RewriteIndex = index_rows(Rewrites);

}  // namespace

mExpr *new_rewritten_call(const OfferedCall *call) {
    const Rewrite *row = find_row(Rewrites, RewriteIndex, row_name(call->name->text));
    if (!row) return nullptr;
    bool fits =
        (call->count >= 0 || row->takes_lists) && (has_one_result(call) || row->takes_results);
    return fits ? row->rewrite(call) : nullptr;
}
