/* Host text of operands, and the parentheses that keep it together. */
#pragma once

#include <stdint.h>

#include "translate/expressions.h"

/* Levels of the host's infix and prefix forms, loosest first; each groups to the left. */
enum HostLevel : uint8_t {
    HOST_SUM,     /* + - +~ -~ */
    HOST_PRODUCT, /* . * / *~ /~ */
    HOST_SIGN,    /* prefix - and + */
    HOST_POWER,   /* ^ ^~ */
    HOST_ATOM     /* names, numbers, calls, and whatever stands in parentheses */
};

/* A value and the level of its text. */
struct Operand {
    mExpr *expr;
    HostLevel level;
};

/* A record that is no operator's: builders leave its text alone. */
mExpr *new_leaf(const char *text, int32_t scalar = NOT_SCALAR);
/* The same of a call or an index: a literal of this element alone keeps its brackets. */
mExpr *new_call_leaf(const char *text);

/* The operand as the left or right one, or the one after the sign, of a form: in parentheses where
 * the host would group otherwise. Functional forms, HOST_ATOM, never need them. */
const mExpr *left_of(const Operand *operand, HostLevel form);
const mExpr *right_of(const Operand *operand, HostLevel form);
const mExpr *after_sign(const Operand *operand);

/* The operand as a text that can stand anywhere, in parentheses where it has operators of its own;
 * what it was is still known. */
mExpr *in_parentheses(const Operand *operand);
/* What it was: any other is an atom. */
Operand without_parentheses(mExpr *value);
inline mExpr *plain_value(mExpr *value) { return without_parentheses(value).expr; }
