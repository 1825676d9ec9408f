/* Where parts of variables are set: elements, fields, and what is in them. A part of a value that
 * nobody sets any more may be held by several variables. */
#pragma once

#include "syntax/names/names.h"

/* Branches of an if or switch that are taken instead of one: bytes of the source. */
struct OtherBranches {
    uint32_t from;
    uint32_t to;
    const OtherBranches *outer; /* of the statement around, or null */
};

/* What may be executed after a place: what follows it in the source and all of the outermost loop
 * around, but no branch that is taken instead. */
struct Reach {
    uint32_t since;              /* offset */
    const OtherBranches *others; /* not of what is in that loop; null for none */
};

/* A part of the variable, the base of target, is set; is_element: an element of what the target's
 * last selector is applied to. */
void note_part_change(Symbol *symbol, const Node *target, bool is_element);
/* The numbers of what that changes, a bit each: as LaterUse has them. */
uint64_t changes_at_target(const Symbol *symbol, const Node *target);
/* What the value, a NAME or REFERENCE, held is the target's alone: what changes in it changes what
 * its variable was. Answers whether any of it was not known. */
bool pass_part_changes(const Node *value, const Node *target);
/* Whether something inside of what the place, a NAME or REFERENCE with the variable as its base,
 * holds is set within reach; so many levels deeper than itself, and after the
 * statement of that offset; UINT32_MAX: by the reach alone. */
bool changes_inside(const Symbol *symbol, const Node *place, uint32_t deeper, const Reach *reach,
                    uint32_t statement);
