/* The functions of a file and the calls among them, as far as they have been traced. */
#pragma once

#include "syntax/trace/trace.h"

/* What the calls of a function give for a parameter, joined. */
struct GivenValue {
    Value value;             /* MAY_BE_MISSING where one gives nothing; 0 where none is known */
    const KnownParts *parts; /* of its inside; null: nothing is known, or nothing is given */
    bool has_parts;          /* something that may have an inside has been given */
};

/* The calls of one function in another one, or in itself, together. */
struct TracedCalls {
    Summary *caller;
    Summary *callee;
    uint32_t trace;    /* moment of the caller's trace: the last one counts */
    GivenValue *given; /* for each parameter, and for all elements of varargin */
    TracedCalls *next; /* of the caller */
    TracedCalls *next_of_callee;
};

/* What is known of a function. */
struct Summary {
    Scope *scope;
    Summary *added;          /* next one in the file */
    Summary *next;           /* in the order of the first traces: after what it calls */
    Summary *before;         /* the other way */
    Summary *below;          /* that waits for it, while they are brought into order */
    const Symbol *symbol;    /* names up to it have been looked at for that */
    bool has_place;          /* it is, or waits to be, in the order */
    bool is_open;            /* others may call it, with anything */
    TracedCalls *calls;      /* in the last trace */
    TracedCalls *callers;    /* calls of it, also of earlier traces */
    const GivenValue *given; /* at its start; null: nothing is known */
    bool is_stale;           /* more is known of what it calls */
    uint32_t traced;         /* moment of the last trace; 0 for none */
    uint32_t grown;          /* moment at which more has been found of its results */
};

/* The function of the file that a name means; null for any other. */
Summary *summary_of(const Symbol *symbol);
/* Traces it anew with what is known of its parameters now: its results may be known better, so that
 * those who call it are stale. */
void retrace(Summary *summary);
