/* A call of a function that is not the program's own. */
#pragma once

#include "syntax/tree/tree.h"

struct OutsideCall {
    const Node *name;
    const Node *arguments; /* their node, or null: there are none, or they are words of a command */
    const char *answer;    /* the host's name of the function, or null */
    int32_t results;       /* that it is asked for, as requested_results says */
    bool may_get_object;   /* an argument may be an object, a class of which has the function */
};
