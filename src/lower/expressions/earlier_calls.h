/* Calls in the order of the source: lines that an operand or argument needs in front of its
 * statement come before the statement's own calls, so that what has been lowered already gets a
 * name first. */
#pragma once

#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "syntax/tree/tree.h"
#include "translate/expressions.h"

/* Whether the evaluation may do more than give a value: it calls a function that is not known. */
bool may_act(const Node *node);

/* The end of the current lines. */
struct LinesEnd {
    Lines *lines;
    Line *last; /* null: they are none */
};
inline LinesEnd end_of_lines() { return {Lowering.lines, Lowering.lines->last}; }
inline bool has_more_lines(const LinesEnd *end) { return end->lines->last != end->last; }
/* Puts name := text at that end, in front of the lines put since, and moves the end after it.
 * Answers the name; a text that is a name stays. */
const char *name_earlier(LinesEnd *end, const char *text);
/* The same of an element or argument, if it may act; a list of values stays what it is. */
void name_call(LinesEnd *end, const Node *node, vExpr *value);
/* The same of arguments from one on, those that have values; ranges stay what they are. */
void name_calls(LinesEnd *end, const Node *argument, vExpr *values);
