// Characters as numbers.
#include "lower/expressions/characters.h"

#include "lower/calls/keyword_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/lines/lines.h"
#include "syntax/values/shapes.h"
#include "translate/text_forms.h"

namespace {

bool is_comparison(OperatorId op) { return op >= OPERATOR_LESS && op <= OPERATOR_GREATER; }

// A string object is compared, and joined, as a whole.
bool is_object(Value value) { return kinds_of(value) == (MAY_BE_TEXT | MAY_BE_OTHER); }

bool is_text(Value value) { return kinds_of(value) == MAY_BE_TEXT; }

// What may be a text beside a text, and what is one on some of the ways to this place.
bool needs_numbers(Value value, Value other) {
    if (!may_be(value, MAY_BE_TEXT)) return false;
    return is_known_text(value) || is_text(other);
}

bool is_one_of_text(Value value) { return is_text(value) && is_one_character(value); }

// The character of a literal of one, or a backslash and it; -1 for anything else.
int literal_character(const mExpr *expr) {
    const char *text = expr->text;
    if (expr->kind != EXPR_STRING || *text != '"') return -1;
    if (*++text == '\\') text++;
    return text[0] && text[1] == '"' && !text[2] ? static_cast<unsigned char>(*text) : -1;
}

void spell(Operand *operand) {
    int character = literal_character(operand->expr);
    mExpr *numbers = character >= 0 ? new_node(EXPR_INTEGER, number_text(character))
                                    : new_keyword_call("double", {operand->expr->text});
    *operand = {numbers, HOST_ATOM};
}

}  // namespace

void spell_prefixed(Operand *operand, Value value) {
    if (is_known_text(value)) spell(operand);
}

void spell_characters(OperatorId op, Operand *left, Value left_value, Operand *right,
                      Value right_value) {
    if (is_object(left_value) || is_object(right_value)) return;
    if (is_comparison(op) && is_one_of_text(left_value) && is_one_of_text(right_value)) return;
    bool spells_left = needs_numbers(left_value, right_value);
    bool spells_right = needs_numbers(right_value, left_value);
    if (spells_left) spell(left);
    if (spells_right) spell(right);
}
