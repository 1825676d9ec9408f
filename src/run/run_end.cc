// Ending a run from below: a jump back to the entry.
#include "run/run_end.h"

#include "run/last_error.h"

void (*RaiseInPlace)(const char *message);

void end_run_in_place(const char *message) {
    if (!RaiseInPlace) end_run(message);
    RaiseInPlace(message);
    abandon_run();
}

void end_run(const char *message) {
    raise_error(message, 0);
    abandon_run();
}
