// The budget of a run.
#include "support/budget.h"

#include <malloc.h>
#include <stdint.h>
#include <stdio.h>

#include "run/run_end.h"

namespace {

constexpr int64_t MEGABYTE = 1 << 20;
constexpr int64_t PER_SOURCE_BYTE = 2000;

constexpr int64_t OF_EVERY_RUN = 256 * MEGABYTE;

int64_t Budget = OF_EVERY_RUN;
int64_t Used;  // below 0 where blocks of nobody's run are given back
bool IsFixed;  // sources do not widen it

// The message itself needs memory: it gets what there is.
[[noreturn]] void end_beyond(const char *form, int64_t bytes) {
    static char message[80];  // read until the next run
    snprintf(message, sizeof message, form, static_cast<long>(bytes / MEGABYTE));
    Budget = INT64_MAX;
    end_run_in_place({message, RUN_IS_TOO_LARGE});
}

}  // namespace

void begin_budget() {
    Budget = OF_EVERY_RUN;
    Used = 0;
    IsFixed = false;
}

void set_budget(long megabytes) {
    Budget = megabytes * MEGABYTE;
    IsFixed = true;
}

void widen_budget(size_t bytes) {
    if (!IsFixed) Budget += PER_SOURCE_BYTE * static_cast<int64_t>(bytes);
}

void check_budget(size_t bytes, void *other) {
    int64_t rest = Budget - Used + static_cast<int64_t>(malloc_usable_size(other));
    if (static_cast<int64_t>(bytes) <= rest) return;
    end_beyond("the translation takes more than %ld MB of memory", Budget);
}

void count_block(void *block) { Used += static_cast<int64_t>(malloc_usable_size(block)); }

void discount_block(void *block) { Used -= static_cast<int64_t>(malloc_usable_size(block)); }

int64_t longest_text() { return Budget / 2; }

void check_text(size_t bytes) {
    if (static_cast<int64_t>(bytes) <= longest_text()) return;
    end_beyond("the translation is longer than %ld MB", longest_text());
}
