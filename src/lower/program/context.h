/* What is being lowered now: the function or script, and the statement in it. */
#pragma once

#include <stdint.h>

#include <initializer_list>

#include "diagnose/message_table.h"
#include "lower/lines/lines.h"

struct Scope;
struct EndBase;
struct Node;
struct OtherBranches;
struct Symbol;

/* A name that the front end has made up. */
struct GeneratedName {
    const char *text;
    GeneratedName *next;
};

/* A variable that begins in front of an outermost statement. */
struct StartedName {
    const char *name;
    const char *start; /* what it begins as */
    StartedName *next;
};

struct Origin;

/* A branch and where its end comes from. */
struct OpenBranch {
    Origin *origin;
    OpenBranch *outer;
};

/* Branches that stay open after statements of a list which may have returned from a script: what
 * follows belongs into them. */
struct OpenRest {
    OpenBranch *innermost;
    int guards;      /* of them, those that an if has opened which returns */
    bool is_tested;  /* the innermost one is of a test whether a return was met */
    bool is_pending; /* such a test goes in front of the next statement */
    Origin *origin;  /* of that test: the end of the statement that may have returned */
};

/* The script whose statements are being lowered, the main one or a called one; at first {}. */
struct ScriptContext {
    bool is_open;         /* it is a script's statements, and no function's */
    int loops;            /* of it around the current statement */
    int32_t returns;      /* met so far */
    const char *returned; /* host variable: whether one was met; null when none needs it */
    const Node *guard;    /* an IF, after the branch of which the rest of the script goes */
    const Node *left_out; /* a RETURN that needs no line */
    OpenRest rest;        /* of its outermost statements */
};

/* Where the value goes that is being lowered (shared_parts.h). */
struct Holder {
    const Node *target;
    const Node *value;
    int32_t reads; /* in the value, of the target's variable: at most 2; -1 when not counted */
};

struct LoweringContext {
    const Node *statement;    /* innermost one that is being lowered; null for none */
    const Scope *scope;       /* of the function, anonymous function or script */
    Lines *lines;             /* where the current statement, and what it needs first, is put */
    int level;                /* of those lines */
    int32_t temporaries;      /* names qxrp_N made so far */
    int32_t column_loops;     /* names qxrp_AN made so far */
    GeneratedName *generated; /* names made so far, which the procedure declares; in order */
    GeneratedName *generated_last;
    const EndBase *end_base; /* innermost index of a variable, for end; null outside */
    const Symbol *single; /* a struct a field of which gets the value being lowered, so that it is
                             no array; null for none */
    const Node *tested;   /* NAME of a function: only whether its value is true matters; or null */
    bool is_denied;       /* it stands after ~, which the test of an array takes in */
    bool takes_test;      /* a test may stand for the value of that call */
    const Node *asked;    /* ANONYMOUS of which several results are asked; null for none */
    int32_t results;      /* how many */
    MessageId gap;        /* why the current statement is given up; else MESSAGE_COUNT */
    Lines *in_front;      /* lines in front of the outermost statement; null outside of one */
    int front_level;      /* of those lines */
    int32_t inner_procedures; /* of several lines, that the texts of expressions hold so far */
    StartedName *started;     /* variables that begin there without elements */
    bool is_read_too;         /* the target being lowered is read before it is set: x(f()) += e */
    const Node *assigned;   /* the value of the assignment whose target is being lowered, or null */
    bool in_comment;        /* the lines become comments */
    Holder holder;          /* of the value being lowered; {} for none */
    const Node *asked_call; /* the call that is asked for asked_results; null for none */
    int32_t asked_results;
    const char *results_procedure; /* the host procedure that gives the results; null for none */
    ScriptContext script;
    uint32_t defaults_end; /* no statement from this byte on gives a parameter its value */
    Symbol *first_default; /* parameters that have their values from statements, or null */
    Symbol *last_default;
    Symbol *taken; /* parameters that are read under the head's names, or null */
    int taken_count;
    const Node *outermost_loop;          /* around the current statement; null for none */
    const OtherBranches *other_branches; /* than that of the current statement, not in a loop */
    int32_t clearing_cost;               /* of clear so far (clears.cc) */
};

/* Saved by value, and restored, around a function inside another. */
extern LoweringContext Lowering;
/* Switch variables made so far in the run. */
extern int32_t SwitchVariables;

/* Begins a function or script: all cleared but the arguments. Answers what was there before. */
LoweringContext begin_lowering(const Scope *scope, Lines *lines, int level);

/* Enters a name into those that the procedure declares. */
void declare_generated(const char *name);
/* A new name qxrp_N, declared. */
const char *new_temporary();
/* Puts a line (form_text) after those of the current statement. */
void put_line(const char *form, std::initializer_list<const char *> operands);
/* The same inside of what the lines before have begun. */
void put_inner_line(const char *form, std::initializer_list<const char *> operands);
