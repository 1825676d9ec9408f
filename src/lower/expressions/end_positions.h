/* Positions in an index, and what end stands for there. */
#pragma once

#include "lower/calls/keyword_calls.h"
#include "lower/expressions/expressions.h"

/* The index that end belongs to: argument number (from 1) of count after base, a host text. */
struct EndBase {
    const char *base;
    int argument;
    int count;
    bool *is_used;            /* set when end is lowered; null when nobody asks */
    bool may_be_call = false; /* a function may get the arguments: ranges are values */
};

/* Last position of an argument, from 1, of count after base. */
const char *last_position_text(const char *base, int argument, int count);
/* An END as a value. */
mExpr *lower_end(const Node *node);

/* The arguments of an index after base: ARGUMENTS or BRACES. Ranges keep their parts, colons and
 * end stand for themselves (indices.h). The cells are the caller's. */
ExprList lower_index(const Node *selector, const char *base, bool may_be_call = false);
/* The arguments of a call, as values; an end among them belongs to the index around the call. */
ExprList lower_values(const Node *arguments);
/* The arguments of what may be a call or an index, as nobody knows the name: after a variable's
 * index the same as lower_values; else *is_index is set when an end is among them, which makes it
 * an index of name. */
ExprList lower_arguments(const Node *arguments, const char *name, bool *is_index);
/* One argument of an index. */
mExpr *lower_position(const Node *node, const EndBase *at);
/* Whether the argument of an index is written as a range of positions, a..b. */
bool is_host_range(const Node *argument);
/* Number of children. */
int count_children(const Node *node);
