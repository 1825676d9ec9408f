/* Which variables are surely set where they are read: some whole or partial assignment stands in
 * front, in the same block or one around, or in all branches of an if or switch. The walk over the
 * statements reports what it meets, in source order. */
#pragma once

#include "syntax/names/names.h"

struct SetCell;
struct SetBranchCell;

/* Where the walk is; at first {}. */
struct SetWalk {
    SetCell *in_block; /* set in the innermost block, the last one first */
    uint32_t clock;
    uint32_t last_return; /* moment of it; 0 for none */
};

/* SetBranches of a statement under way; at first {}. */
struct SetBranches {
    SetBranchCell *sets; /* set in one of them */
    int32_t count;       /* that go on after the statement */
    bool is_whole;       /* one of them runs surely */
};

/* The variable is read: a parameter is flagged where its given value counts. */
void note_set_reading(Symbol *symbol);
/* It is assigned as a whole, or an element or field of it: a parameter is flagged where that is a
 * part of its given value. */
void note_whole_set(SetWalk *walk, Symbol *symbol);
void note_part_set(SetWalk *walk, Symbol *symbol);
/* A return, written or at the function's end: outputs are read. */
void note_set_return(SetWalk *walk);

/* A block begins; answers what ends it: a loop's or another one that may not run. */
SetCell *begin_set_block(SetWalk *walk);
void end_set_block(SetWalk *walk, SetCell *outer);
/* The same of a branch. */
void end_set_branch(SetWalk *walk, SetCell *outer, SetBranches *branches, const Node *block);
/* After all branches: what all of them set is set. */
void end_set_branches(SetWalk *walk, const SetBranches *branches);
/* The function ends. */
void finish_sets(SetWalk *walk, const Scope *scope);
