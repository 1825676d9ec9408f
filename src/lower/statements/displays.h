/* What a statement without a semicolon displays. The host is asked for a form where the run's
 * option says so (Displays in run/run_state.h); without one nothing is displayed. */
#pragma once

#include "syntax/tree/tree.h"

/* Puts the displaying of what an ASSIGN or MULTI_ASSIGN has set, whole variables. */
void put_displayed_targets(const Node *assignment);
/* The displaying of the value, a host text, of an EXPRESSION; null where it stands undisplayed: of
 * a call nobody knows whether it has one. */
const char *displayed_value(const Node *statement, const char *value);
