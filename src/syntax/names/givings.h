/* Variables that are given away: y = x where x is not used again, or where y is an output and
 * nobody changes either of them, so that y may hold what x held and nobody needs a copy. The walk
 * over the statements reports what may be such an assignment, and what may use variables without
 * naming them. */
#pragma once

#include "syntax/names/names.h"

struct Giving;
struct OtherBranches;

/* Where the walk is; at first {}. */
struct Givings {
    Giving *last;                /* in the text, or null */
    uint32_t last_unseen;        /* offset of the last name that may use any variable */
    const OtherBranches *others; /* than the branch, outside of loops; null for none */
};

/* A plain assignment has been walked; loop is the innermost one around it, and outermost the
 * outermost, or both null. */
void note_giving(Givings *givings, const Node *assignment, const Node *loop, const Node *outermost);
/* A function is named: whether it uses variables that the text does not name is known by that. */
void note_unseen_uses(Givings *givings, const Node *name);
/* A branch of an if or switch ends before which the last giving was another one: what the variable
 * is used for in the branches after it does not count. */
void end_giving_branch(const Givings *givings, const Giving *before);
/* The same of the whole statement. */
void end_giving_branches(const Givings *givings, const Giving *before);
/* All that may use the function's variables has been walked: marks the values that are given away,
 * and tells their variables what the takers do with them. */
void finish_givings(const Givings *givings, const Scope *scope);
