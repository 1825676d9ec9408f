/* A call of a function of MATLAB's library. */
#pragma once

#include "syntax/tree/tree.h"
#include "translate/expressions.h"

struct OfferedCall {
    const Node *name;
    const Node *first;   /* argument, or null */
    const vExpr *values; /* the arguments' texts */
    int count;           /* of the arguments; -1 where a list of values or a colon is among them */
    int32_t results;     /* that it is asked for, as requested_results says */
    bool is_tested;      /* only whether its value is true matters */
};

/* Whether one result is all that can be asked for; that of a statement is unused. */
inline bool has_one_result(const OfferedCall *call) {
    return call->results == 0 || call->results == 1;
}
