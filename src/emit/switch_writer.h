/* Writing switch statements. */
#pragma once

#include "emit/statements.h"
#include "emit/waiting.h"

/* Number of the next switch variable. Counts on over all runs while the library is loaded, so
 * that the variables of two translations never meet. */
extern int32_t SwitchCounter;

/* Writes a switch as an assignment of its value to a variable and an if chain over the variable,
 * or, for a record without a subject, a case clause and what follows it in the chain. What follows
 * the first line waits. */
void write_switch(mSwitch *record, int level, Walk *walk);
