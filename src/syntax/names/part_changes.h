/* Where parts of variables are set: elements, fields, and what is in them. A part of a value that
 * nobody sets any more may be held by several variables. */
#pragma once

#include "syntax/names/names.h"

/* A part of the variable, the base of target, is set; is_element: an element of what the target's
 * last selector is applied to. */
void note_part_change(Symbol *symbol, const Node *target, bool is_element);
/* What the variable from held is the target's alone: what changes in it changes what it was. */
void pass_part_changes(Symbol *from, const Node *target);
/* Whether something inside of what the place, a NAME or REFERENCE with the variable as its base,
 * holds is set at an offset of the source or after it; so many levels deeper than itself. */
bool changes_inside(const Symbol *symbol, const Node *place, uint32_t deeper, uint32_t since);
