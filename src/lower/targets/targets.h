/* Targets of assignments. */
#pragma once

#include "lower/expressions/paths.h"

/* A structure's field of a name that is known at run time only: it is read into a temporary, and
 * set again when the temporary has been changed. */
struct PendingField {
    const char *base;   /* the structure: where it goes */
    const char *source; /* and where it comes from */
    const char *name;
    const char *value; /* the temporary */
    PendingField *outer;
};

/* Where a value goes. */
struct Target {
    Path path;
    const char *source;    /* of the structure at path, where that is read before its field .(e) is
                              set, if it may not be there; else null */
    const char *field;     /* of the path, when that is a field .(e): its name; else null */
    PendingField *pending; /* innermost first; null for none */
};

/* A NAME, or the selectors of a REFERENCE up to end (not included; null for all). */
Target lower_target(const Node *node, const Node *end);
/* The target as a value. */
const char *target_value(const Target *target);
/* A text that can stand on the left of an assignment: of a field .(e), a temporary. */
const char *target_text(Target *target);
/* Puts the assignment, and what has been left to do when the target has its value. */
void put_value(const Target *target, const char *value);
/* The same, deeper by a level. */
void put_inner_value(const Target *target, const char *value);
/* What is left to do after an assignment to target_text. */
void finish_target(const Target *target);
