// Values that the host might share.
#include "lower/targets/shared_parts.h"

#include <algorithm>

#include "lower/expressions/expressions.h"
#include "lower/expressions/value_lists.h"
#include "support/same_text.h"
#include "syntax/names/later_uses.h"
#include "syntax/names/part_changes.h"
#include "syntax/tree/value.h"
#include "syntax/values/shapes.h"
#include "syntax/values/values.h"
#include "translate/text_forms.h"

namespace {

// Whoever else may see a variable: what it holds outlives the function, or changes elsewhere.
constexpr uint32_t SEEN_ELSEWHERE =
    SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
constexpr uint32_t LIVES_ON = SEEN_ELSEWHERE | SYMBOL_OUTPUT | SYMBOL_LIVES_ON;

// The first argument of a call of a function; null for anything else.
const Node *first_argument(const Node *value, const char *function) {
    if (value->kind != NODE_REFERENCE) return nullptr;
    const Node *base = value->first_child;
    bool is_call = base->kind == NODE_NAME && !is_variable(base->symbol) &&
                   base->next->kind == NODE_ARGUMENTS && is_same_text(base->text, function);
    return is_call ? base->next->first_child : nullptr;
}

bool is_transpose(const Node *value) {
    if (value->kind != NODE_CHAIN) return false;
    const Node *second = second_child(value);
    return second->kind == NODE_POSTFIX && !second->next;
}

const Symbol *variable_of(const Node *node) {
    const Node *base = node->kind == NODE_REFERENCE ? node->first_child : node;
    return base->kind == NODE_NAME && is_variable(base->symbol) ? base->symbol : nullptr;
}

bool has_parts(const Symbol *symbol) {
    return symbol->fields || (symbol->flags & SYMBOL_HAS_BRACES);
}

// What is given away is given whole, and not copied there.
bool is_given_on(const Node *target) {
    bool is_one = target && target->kind != NODE_TARGETS && target->kind != NODE_TILDE;
    const Symbol *symbol = is_one ? variable_of(target) : nullptr;
    return symbol && (symbol->flags & SYMBOL_GIVEN_AWAY);
}

// c(k) of a cell takes the elements of one.
bool is_cell_place(const Node *target) {
    return target && target->kind == NODE_REFERENCE &&
           last_selector(target)->kind == NODE_ARGUMENTS && is_cell_base(target);
}

// [x, c] of a cell is one, so x may have been part of one.
bool makes_parts(const Node *value) {
    Value kinds = value && value->kind == NODE_MATRIX ? kinds_of(value_of(value)) : 0;
    return may_be(kinds, MAY_BE_CELL | MAY_BE_RECORD) && !may_be(kinds, ARITHMETIC | MAY_BE_TEXT);
}

// Where the text does not tell, a variable that is used as a cell or a struct is one.
bool may_hold_parts(const Node *value) {
    Value kinds = kinds_of(value_of(value));
    if (!may_be(kinds, MAY_BE_CELL | MAY_BE_RECORD)) return false;
    if (!may_be(kinds, ARITHMETIC | MAY_BE_TEXT)) return true;
    const Node *target = Lowering.holder.target;
    if (is_given_on(target) || is_cell_place(target) || makes_parts(Lowering.holder.value))
        return true;
    bool is_inside = value->kind == NODE_REFERENCE && second_child(value)->next;
    const Symbol *from = is_inside ? nullptr : variable_of(value);
    return (from && has_parts(from)) ||
           (target && target->kind == NODE_NAME && has_parts(target->symbol));
}

// A later command may change the variables of this one.
bool is_left_open(const Symbol *symbol) { return symbol->scope->flags & IS_LEFT_OPEN; }

// Whether anything inside of a part is set from here on, in the order of execution. What an
// anonymous function gives is given at any time.
bool changes_from_here(const Symbol *symbol, const Node *part, uint32_t depth) {
    if (is_left_open(symbol)) return symbol->depth_changed > depth_of(part) + depth;
    const Node *target = Lowering.holder.target;
    const Node *loop = Lowering.outermost_loop;
    Reach reach = {0, nullptr};
    if (target) reach = {target->offset, Lowering.other_branches};
    if (loop) reach.since = std::min(reach.since, loop->offset);
    bool is_ordered = target && Lowering.statement;
    return changes_inside(symbol, part, depth, &reach,
                          is_ordered ? Lowering.statement->offset : UINT32_MAX);
}

bool changes_at(const Node *target, uint32_t depth) {
    const Symbol *symbol = target->kind == NODE_TILDE ? nullptr : variable_of(target);
    return symbol && changes_from_here(symbol, target, depth);
}

bool changes_inside_at(const Node *target) { return changes_at(target, 0); }

// Whether it is so of the target, or of one of several.
bool any_target(const Node *target, bool (*is_so)(const Node *)) {
    if (target->kind != NODE_TARGETS) return is_so(target);
    for (const Node *child = target->first_child; child; child = child->next)
        if (is_so(child)) return true;
    return false;
}

// x(k) of what is used as no cell takes over the characters that are put there.
bool takes_elements(const Node *target) {
    if (target->kind != NODE_REFERENCE || second_child(target)->kind != NODE_ARGUMENTS)
        return false;
    const Node *base = target->first_child;
    return !second_child(target)->next && base->kind == NODE_NAME && !has_parts(base->symbol) &&
           kinds_of(value_of(base)) != MAY_BE_CELL;
}

// Whether characters of the value may be changed, in the variable that it is read from or in the
// one that holds it.
bool changes_characters(const Node *value) {
    const Node *target = Lowering.holder.target;
    const Symbol *from = variable_of(value);
    if (target && takes_elements(target)) return false;
    if (from && changes_from_here(from, value, 0)) return true;
    return target ? any_target(target, changes_inside_at) : Lowering.holder.value != nullptr;
}

// What is held plainly is never changed inside, but for the characters of a text.
bool is_immutable(const Node *node) {
    constexpr Value PLAIN = ARITHMETIC | MAY_BE_TEXT | MAY_BE_FUNCTION;
    Value value = value_of(node);
    if (!is_surely(value, PLAIN) || !is_single(value)) return false;
    return !may_be(value, MAY_BE_TEXT) || !changes_characters(node);
}

bool is_seen_at(const Node *target) {
    const Symbol *symbol = target->kind == NODE_TILDE ? nullptr : variable_of(target);
    return symbol && (symbol->flags & LIVES_ON);
}

// Whether what the holder, or one of several, holds so deep changes, or lives on. The result of an
// anonymous function is anybody's.
bool is_in_danger(uint32_t depth) {
    const Node *target = Lowering.holder.target;
    if (!target) return Lowering.holder.value != nullptr;
    if (target->kind != NODE_TARGETS) return changes_at(target, depth) || is_seen_at(target);
    for (const Node *child = target->first_child; child; child = child->next)
        if (changes_at(child, depth) || is_seen_at(child)) return true;
    return false;
}

int32_t count_reads(const Node *node, const Symbol *symbol) {
    if (is_named(node)) return node->symbol == symbol;
    int32_t count = 0;
    for (const Node *child = first_child(node); child && count < 2; child = child->next)
        count += count_reads(child, symbol);
    return count;
}

bool is_read_once(const Symbol *symbol) {
    Holder *holder = &Lowering.holder;
    if (holder->reads < 0) holder->reads = count_reads(holder->value, symbol);
    return holder->reads < 2;
}

// Whether the value is of what the target replaces, x = x(2:end) or s.f = [s.f, 1], so that nobody
// else has it.
bool is_replaced(const Node *value, const Symbol *from) {
    const Node *target = Lowering.holder.target;
    if (!target || target->kind == NODE_TARGETS || variable_of(target) != from) return false;
    bool may_be_given = target->kind == NODE_NAME && from->position > 0;
    if (may_be_given && !must_own(from)) return false;  // the caller has it
    const Node *place = target->kind == NODE_REFERENCE ? second_child(target) : nullptr;
    const Node *part = value->kind == NODE_REFERENCE ? second_child(value) : nullptr;
    for (; place; place = place->next, part = part->next) {
        bool is_same = part && place->kind == NODE_FIELD && part->kind == NODE_FIELD &&
                       place->text == part->text;
        if (!is_same) return false;
    }
    return is_read_once(from);
}

// Where what is shared lies: so much deeper than the value, and than the target.
struct Depths {
    uint32_t in_value;
    uint32_t in_target;
};

// Whether the target takes the elements of an array, x(:, k) = y, and none of them is shared. Those
// of its own variable, x(end:-1:1) = x, change while they are taken.
bool is_spread(const Node *value) {
    const Node *target = Lowering.holder.target;
    if (!target || target->kind != NODE_REFERENCE) return false;
    if (variable_of(target) == variable_of(value)) return false;
    if (may_be(kinds_of(value_of(value)), MAY_BE_CELL | MAY_BE_RECORD | MAY_BE_OTHER)) return false;
    const Node *last = last_selector(target);
    if (last->kind != NODE_ARGUMENTS) return false;
    for (const Node *index = last->first_child; index; index = index->next)
        if (index->kind == NODE_RANGE || is_colon(index)) return true;
    return false;
}

bool needs_copy(const Node *value, Depths depths) {
    const Symbol *from = variable_of(value);
    if (!Lowering.holder.value || is_replaced(value, from)) return false;
    if (value->is_given_away || is_spread(value)) return false;
    if (value->kind == NODE_NAME && is_left_open(from)) return true;
    return changes_from_here(from, value, depths.in_value) || (from->flags & SEEN_ELSEWHERE) ||
           is_in_danger(depths.in_target);
}

// What an expression may give as it is: x in +x, [x] and full(x); else null.
const Node *kept_value(const Node *value) {
    if (value->kind == NODE_PREFIX && value->op == OPERATOR_PLUS) return value->first_child;
    const Node *inner = value->kind == NODE_MATRIX ? single_element(value) : nullptr;
    if (!inner) inner = first_argument(value, "full");
    if (!inner) inner = first_argument(value, "sparse");
    return inner && !inner->next && !is_value_list(inner, true) ? inner : nullptr;
}

const Node *same_value(const Node *value) {
    value = without_parens(value);
    while (const Node *inner = kept_value(value)) value = without_parens(inner);
    return value;
}

// An index in parentheses makes a new array, which shares what is in it.
bool is_shared(const Node *value) {
    const Symbol *from = variable_of(value);
    if (!from || is_immutable(value) || holds_function(from)) return false;
    if (value->kind == NODE_NAME) return true;
    return last_selector(value)->kind != NODE_ARGUMENTS || may_hold_parts(value);
}

const char *copy_text(const char *text) { return form_text("copy(%s)", {text}); }

// A cell is not what is in it; a struct is an element itself.
uint32_t depth_of_elements(const Node *value) {
    bool may_be_record = may_be(value_of(value), MAY_BE_RECORD);
    const Symbol *from = variable_of(value);
    return may_be_record && (from->fields || !(from->flags & SYMBOL_HAS_BRACES)) ? 0 : 1;
}

const char *shared_text(const Node *value, const char *text, uint32_t in_target) {
    if (!is_shared(value)) return text;
    bool is_name = value->kind == NODE_NAME;
    bool is_selection = !is_name && last_selector(value)->kind == NODE_ARGUMENTS;
    uint32_t depth = is_selection ? depth_of_elements(value) : 0;
    return needs_copy(value, {depth, depth + in_target}) ? copy_text(text) : text;
}

// repmat(c, 1, 2) has each element of the cell twice.
bool shares_itself(const Node *value) {
    const Node *repeated = first_argument(value, "repmat");
    const Node *target = Lowering.holder.target;
    return repeated && target && target->kind != NODE_TARGETS && changes_at(target, 1) &&
           may_hold_parts(without_parens(repeated));
}

// getfield(s, 'f') reads s.f.
const char *field_text(const Node *record, const char *text) {
    record = without_parens(record);
    return is_shared(record) && needs_copy(record, {1, 0}) ? copy_text(text) : text;
}

}  // namespace

Holder begin_holding(const Node *target, const Node *value) {
    Holder outer = Lowering.holder;
    Lowering.holder = {target, value, -1};
    return outer;
}

void end_holding(const Holder &outer) { Lowering.holder = outer; }

// Most values of large literals are numbers, which nobody shares.
static bool is_number(const Node *value) { return value->kind == NODE_NUMBER; }

const char *held_text(const Node *value, const char *text) {
    if (is_number(value)) return text;
    value = same_value(value);
    if (is_transpose(value)) return joined_text(value->first_child, text);
    if (shares_itself(value)) return copy_text(text);
    if (const Node *record = first_argument(value, "getfield")) return field_text(record, text);
    return shared_text(value, text, 0);
}

const char *held_element_text(const Node *value, const char *text) {
    if (is_number(value)) return text;
    return shared_text(same_value(value), text, 1);
}

const char *listed_text(const Node *list, const char *text) {
    const Node *value = Lowering.holder.value;
    bool is_dealt = value && first_argument(without_parens(value), "deal");
    return shared_text(same_value(list), text, is_dealt ? 0 : 1);
}

const char *joined_text(const Node *value, const char *text) {
    if (is_number(value)) return text;
    value = same_value(value);
    if (!is_shared(value) || !may_hold_parts(value)) return text;
    uint32_t depth = depth_of_elements(value);
    return needs_copy(value, {depth, depth}) ? copy_text(text) : text;
}

const char *given_text(const Node *argument, const char *text) {
    const Node *value = same_value(argument);
    const Symbol *from = variable_of(value);
    Value known = value_of(value);
    bool is_plain = is_surely(known, ARITHMETIC | MAY_BE_FUNCTION) && is_single(known);
    if (!from || is_plain || holds_function(from)) return text;
    bool is_part = value->kind == NODE_NAME || last_selector(value)->kind != NODE_ARGUMENTS;
    return is_part || may_hold_parts(value) ? copy_text(text) : text;
}

const char *looped_text(const Node *variable, const char *text) {
    const Node *value = without_parens(variable->next);
    const Symbol *from = variable_of(value);
    if (!from || is_immutable(value)) return text;
    Holder outer = begin_holding(variable, value);
    bool changes = changes_from_here(from, value, 0) || (from->flags & SEEN_ELSEWHERE) ||
                   (may_hold_parts(value) && is_in_danger(0));
    end_holding(outer);
    return changes ? copy_text(text) : text;
}

bool needs_copies(const Node *value) { return !is_immutable(value) && is_in_danger(0); }

bool may_change_results(const Scope *scope) {
    while (scope->outer) scope = scope->outer;
    return (scope->flags & CHANGES_PARTS) || scope->owner->kind == NODE_FUNCTION;
}

bool must_own(const Symbol *parameter) {
    return owns_given_value(parameter) || (parameter->flags & (SEEN_ELSEWHERE | SYMBOL_LIVES_ON));
}
