/* What a list of values runs over: the elements that one argument of an index selects. */
#pragma once

#include "lower/expressions/operands.h"
#include "syntax/tree/tree.h"

struct ValueRun {
    const char *base;
    const Node *index; /* the selector; null: the base itself, element by element */
    int argument;      /* number of the argument that gives several, from 1 */
    int count;         /* of the arguments */
    const char *from;
    const char *to;
    const char *positions; /* variable with the positions; null: they are from..to themselves */
    const char *field;     /* after the element: ":-f", or nothing */
};

/* What a list of values (value_lists.h) runs over; may put lines. */
ValueRun new_run(const Node *node);
/* The text of an element, its number in from..to given as a host text. */
const char *element_of(const ValueRun *run, const char *number);
