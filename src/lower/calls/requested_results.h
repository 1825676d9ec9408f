/* How many results a call is asked for, which the host may read when it is asked for the call. */
#pragma once

#include "syntax/tree/tree.h"

/* The value, if it is a call, is asked for so many results (RequestedResults in mtranslate.h says
 * which others there are). All other calls are asked for one. */
void request_results(const Node *value, int32_t results);
/* How many results the call with this ARGUMENTS node, or of this NAME alone, is asked for. */
int32_t requested_results(const Node *call);
