/* What waits to be written while a block is: the writers of control structures say what follows
 * their heads instead of calling each other, so that blocks as deep as the parser takes them need
 * none of the machine's stack. */
#pragma once

#include "emit/statements.h"

/* A line, and statements after it. */
struct Waiting {
    const char *line; /* with its line end; null for none, or when it is written */
    mStat *list;      /* null for none */
    int level;        /* of the statements; the line stands one to the left */
    Waiting *next;    /* written after this */
};

/* One walk over statements, innermost first. Records are kept until the run ends and used again. */
struct Walk {
    Waiting *first;
    Waiting *unused;
};

/* Have something written in front of what waits already: of several, the last comes first. */
void wait_with_line(Walk *walk, const char *line, int level);
void wait_with_list(Walk *walk, mStat *list, int level);
/* The line at level, then the list one deeper. */
void wait_with_branch(Walk *walk, const char *line, mStat *list, int level);
/* The next statement, with its level in *level; null at the end. Writes the lines in front of it.
 */
mStat *next_statement(Walk *walk, int *level);
