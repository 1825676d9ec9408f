/* The life of a run: what it sets up, and what is released however it ends. */
#pragma once

#include <stdint.h>

#include "support/hash_table.h"

/* Sets up the run's tables and output text and resets the variables of the run state. */
void begin_run();
/* Releases everything that a run holds: its tables, tracked blocks, scanner buffers, parser stacks
 * and open files. Nothing happens when nothing is held. */
void release_run();
/* A table of names, released with the run; never null. */
HashTable *new_name_table(int32_t buckets);
