/* Loops whose variable lives on: it is read after the loop, or assigned in it. The host's loop
 * variable has no value after the loop and must not be changed in it, so such a loop counts with a
 * name of its own.
 *
 * The walk over the statements tells what it meets; time is counted in moments, one for each
 * event. Where the way of the control flow is not plain, a variable is taken to live on. */
#pragma once

#include "syntax/names/names.h"

struct LoopEntry;

/* A loop that has ended and whose variable nobody has surely set since; or a setting, which hides
 * the loops that ended before it until the block ends that it stands in. */
struct EndedLoop {
    Node *loop; /* null for a setting, and for one whose block has ended */
    uint32_t ended;
    bool hides;            /* a setting whose block goes on */
    EndedLoop *next;       /* ended before */
    EndedLoop *same_block; /* for a setting: one before in its block */
};

/* An open loop; lies in the walk's frame. */
struct OpenLoop {
    Node *loop;
    Symbol *symbol; /* null for a while loop */
    uint32_t start;
    OpenLoop *outer;      /* around it, or null */
    OpenLoop *outer_same; /* innermost one around it with the same variable, or null */
    EndedLoop *ended;     /* of the variable, when it began */
    uint32_t read_before; /* the variable's last reading in outer_same before it */
    uint32_t jump_before; /* LoopWalk's last_jump then */
};

/* Of a variable that loops have. */
struct LoopUse {
    OpenLoop *open;      /* innermost open one, or null */
    EndedLoop *ended;    /* newest first */
    uint32_t inner_read; /* moment of the last reading in an open one */
};

/* Where the walk is; at first {}. */
struct LoopWalk {
    uint32_t clock;       /* the last moment */
    uint32_t block_start; /* moment in which the innermost block began */
    EndedLoop *settings;  /* of the innermost block that hide loops, newest first */
    uint32_t last_jump;   /* moment of the last break or continue of the innermost loop */
    OpenLoop *innermost;  /* open loop, or null */
    uint32_t loop_start;  /* start of the outermost open loop; 0 outside of loops */
    LoopEntry *entries;   /* all loops with a variable */
};

/* A block begins and ends. Answers what the end needs. */
EndedLoop *begin_loop_block(LoopWalk *walk);
void end_loop_block(LoopWalk *walk, EndedLoop *outer);
/* A loop over symbol, or null, begins: its range has been walked, its block not. */
void begin_loop(LoopWalk *walk, OpenLoop *open, Node *loop, Symbol *symbol);
void end_loop(LoopWalk *walk, OpenLoop *open);
/* The variable is read, set as a whole, or changed in a part. */
void note_reading(LoopWalk *walk, Symbol *symbol);
void note_setting(LoopWalk *walk, Symbol *symbol);
void note_change(LoopWalk *walk, Symbol *symbol);
/* A break or continue. */
void note_jump(LoopWalk *walk);
/* All has been walked: flags the loops over variables that others see. */
void finish_loops(LoopWalk *walk);
