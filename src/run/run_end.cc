// Ending a run from below: a jump back to the entry.
#include "run/run_end.h"

#include "run/last_error.h"

void end_run(const char *message) {
    raise_error(message, 0);
    abandon_run();
}
