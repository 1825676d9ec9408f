// Ending a run from below: a jump back to the entry.
#include "run/run_end.h"

#include <setjmp.h>

#include "run/last_error.h"

// Where end_run goes when the host's error operation returns.
static jmp_buf RunExit;

void end_run(const char *message) {
    raise_error(message, 0);
    abandon_run();
}

void abandon_run() { longjmp(RunExit, 1); }

uintptr_t run_to_end(uintptr_t (*body)(uintptr_t), uintptr_t argument) {
    if (setjmp(RunExit)) return 0;
    return body(argument);
}
