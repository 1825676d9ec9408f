/* What a run may take of memory: so much for each byte of its sources that no program that people
 * write comes near, so that a source that means harm costs its own run and nothing else.
 *
 * Counted are tracked blocks and those of the plain heap, by the sizes that the system gives them.
 * A tracked block or a text that would go beyond ends the run, with an error at the place that has
 * been reached; a plain one does not, as what takes it may have to give other things back first. */
#pragma once

#include <stddef.h>
#include <stdint.h>

constexpr long LARGEST_BUDGET = 1 << 20; /* MB */

/* A new run: 256 MB, and 2,000 bytes for each byte of a source that is read. */
void begin_budget();
/* So many MB in place of that. */
void set_budget(long megabytes);
/* So many bytes of a source have been read. */
void widen_budget(size_t bytes);

/* A block of so many bytes is about to be taken, in the place of another or of null. Ends the run
 * where it would be beyond. */
void check_budget(size_t bytes, void *other);
/* The block has been taken, or is about to be given back; null is none. */
void count_block(void *block);
void discount_block(void *block);
/* How many bytes a growing text may have: half of the budget. */
int64_t longest_text();
/* A growing text is about to get so long; ends the run beyond longest_text. */
void check_text(size_t bytes);
