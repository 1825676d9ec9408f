/* Values that outlive a call of their function. What a persistent variable holds at its start is
 * what any of its calls has given it, whoever has called the function meanwhile. A global may be
 * given anything elsewhere: where a function of the file gives it, or a field of it, a cell, that
 * may be a cell in all of them. */
#pragma once

#include "syntax/trace/trace.h"

/* Persistent variables of the scope have been given nothing so far. */
void begin_held_values(const Scope *scope);
/* A trace begins: a global holds what is known of it, with all that lies inside. False for a
 * variable that is not held. */
bool give_held_value(Symbol *symbol);
/* The trace is over: what it has given to globals is known. */
void join_globals(const Scope *scope);
/* Whether more is known of a global than when the scope was traced. */
bool knows_more_globals(const Scope *scope);
/* The globals of a file of which something is known, one after the other; and what another file
 * knows of some. */
const Symbol *known_globals(const NameMap *globals);
void join_known_globals(NameMap *globals, const Symbol *known);
/* A global of which nothing is known so far, or the field of one. */
Symbol *new_known_global(const char *name);
/* Nothing is known of persistent variables. */
void hold_anything(const Scope *scope);
