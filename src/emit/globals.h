/* Global declarations of the function being parsed. */
#pragma once

#include "support/hash_table.h"

/* Names declared global since the last procedure or script was written; null for none. */
extern HashTable *GlobalNames;

/* Records names as globals of the function being parsed, and as known variables. */
void register_global(const char *const *names, int count);
/* Visitor of GlobalNames: writes the name after "global", or after the names before it. first is
 * a flag (int), set until the first name is written. 1. */
int write_global_name(const char *name, HashValue value, void *first);
/* Writes the global line of a procedure, if there are globals. */
void write_globals();
/* Forgets the names. */
void drop_globals();
