/* What statements do to variables beside setting their targets. */
#pragma once

#include "syntax/trace/trace.h"

/* A function is begun: no script has been traced, nothing forgotten. */
void begin_effects();
/* A call for its effects: of a script, of what sets variables, of what does not return. */
void note_effects(Node *expression);
/* Whether the flow is in the statements of a called script. */
bool is_in_called_script();
/* clear x y, as a COMMAND or EXPRESSION: they have no values. What a script clears is not kept
 * apart. */
void trace_clear(const Node *statement);
/* A COMMAND: clear x y, load f. */
void trace_command(const Node *command);
