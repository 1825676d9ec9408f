// Ending a run from below: a jump back to the entry.
#include "run/run_end.h"

#include "run/last_error.h"

void (*RaiseInPlace)(const RunEnd &end);

void end_run_in_place(const RunEnd &end) {
    if (!RaiseInPlace) end_run(end);
    RaiseInPlace(end);
    abandon_run();
}

void end_run(const RunEnd &end) {
    raise_error(end, 0);
    abandon_run();
}
