/* Targets of an unknown number, [s.f] and [c{:}], which get their values one by one. */
#pragma once

#include "syntax/tree/tree.h"

/* Whether a MULTI_ASSIGN has one such target, and as its value deal(v), deal(c{:}) or a list. */
bool is_dealt(const Node *assignment);
/* Puts the loop over the targets. */
void put_dealt(const Node *assignment);
