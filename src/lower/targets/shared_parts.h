/* Values that the host might share where MATLAB copies. What is held in a variable, an element or a
 * field belongs to it alone, unless nothing that shares it ever changes. */
#pragma once

#include "lower/program/context.h"
#include "syntax/names/names.h"

/* The value that is being lowered goes into target: NAME, REFERENCE or TARGETS; null for the result
 * of an anonymous function. value null: nobody keeps it. Answers what it was before. */
Holder begin_holding(const Node *target, const Node *value);
void end_holding(const Holder &outer);

/* The text of a value as it is held: a copy where it, or what is in it, might be shared. */
const char *held_text(const Node *value, const char *text);
/* The same of an element or a field of what is held. */
const char *held_element_text(const Node *value, const char *text);
/* The same of each value of a list: an element, or with deal what a target holds itself. */
const char *listed_text(const Node *list, const char *text);
/* The same of a value whose elements become elements of what is held, as in [a, b]. */
const char *joined_text(const Node *value, const char *text);
/* The same of what a loop runs over. */
const char *looped_text(const Node *variable, const char *text);
/* The same of an argument, parts of which change during its call. */
const char *given_text(const Node *argument, const char *text);
/* Whether a parameter is one that others may see, or that changes inside. */
bool must_own(const Symbol *parameter);
/* Whether what an anonymous function of this scope gives may change, or be seen elsewhere. */
bool may_change_results(const Scope *scope);
/* Whether what is handed out to each of several targets must be a copy. */
bool needs_copies(const Node *value);
