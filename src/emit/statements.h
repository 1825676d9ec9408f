/* Statement records. Statements cannot be written when they are parsed, as their text depends on
 * their depth and on what follows, so the parser builds these records and the writers walk them
 * once the function or script is complete.
 *
 * Records are kept until the run ends; texts and expressions in them are shared, never copied. */
#pragma once

#include <stdint.h>

#include "translate/expressions.h"

/* Kinds of statements and their payloads. */
enum StatementKind {
    STAT_EXPR = 100,   /* expression, assignment, command, break, continue: mExpr */
    STAT_GLOBAL = 101, /* global declaration: none, its names are registered already */
    STAT_FOR = 102,    /* mFor */
    STAT_IF = 103,     /* an if, or an elseif branch: mIf */
    STAT_SWITCH = 104, /* a switch, or a case clause: mSwitch */
    STAT_WHILE = 105,  /* mWhile */
    STAT_RETURN = 106  /* mReturn */
};

struct mStat {
    int32_t kind;
    void *payload;
    vExpr *comments; /* those before the statement, newest first; null for none */
    mStat *next;     /* following statement of the list, or null */
};

/* Whether an if statement begins or goes on. */
enum { IF_HEAD = 0, ELSEIF_BRANCH = 1 };

struct mIf {
    mStat *then_body;
    mStat *else_part; /* null; an elseif branch; or the first statement of the else branch */
    mExpr *condition;
    int32_t is_elseif; /* IF_HEAD or ELSEIF_BRANCH */
};

struct mFor {
    mStat *body;
    mExpr *variable;
    mExpr *range; /* a range with parts counts; any other value gives its columns */
};

struct mWhile {
    mStat *body;
    mExpr *condition;
};

/* A switch (its subject is set) or one of its case clauses. */
struct mSwitch {
    mStat *body;                /* clause: its statements; null for none */
    mStat *next_clause;         /* null; a case clause; or the first statement of otherwise */
    mExpr *subject;             /* switch: its value; clause: null */
    const char *condition_name; /* variable that holds the value; set when it is written */
    vExpr *values;              /* clause: the case's values in source order */
    int32_t is_first;           /* 1 in the clause that opens the chain; set when it is written */
};

/* What a return writes depends on the procedure alone. */
struct mReturn {
    int32_t unused;
};

struct mProc {
    const char *name;
    vExpr *outputs; /* in source order; null for none */
    vExpr *params;  /* in source order; null for none */
    mStat *body;
};

/* A new statement of a kind, all else empty. */
mStat *alloc_mStat(int kind);
/* New payloads; mSwitch is cleared where the writers look, the others not at all. */
mIf *alloc_mIf();
mFor *alloc_mFor();
mWhile *alloc_mWhile();
mSwitch *alloc_mSwitch();
mReturn *alloc_mReturn();
/* A new function without a body. */
mProc *alloc_mProc(const char *name, vExpr *outputs, vExpr *params);

/* Statements with their payloads. */
mStat *new_expression_stat(mExpr *expr);
mStat *new_for_stat(mExpr *variable, mExpr *range, mStat *body);
mStat *new_if_stat(mExpr *condition, mStat *then_body, mStat *else_part, int is_elseif);
mStat *new_switch_stat(mExpr *subject, vExpr *comments, mStat *first_clause);
mStat *new_case_clause(vExpr *values, mStat *body, mStat *next_clause);
mStat *new_while_stat(mExpr *condition, mStat *body);
mStat *new_return_stat();

/* The list of stat and rest (not null), with the comments between them. Answers stat. */
mStat *link_statements(mStat *stat, vExpr *comments, mStat *rest);
/* Gives the comments to the first statement of a body, if it has one. Answers the body. */
mStat *comment_body(mStat *body, vExpr *comments);
