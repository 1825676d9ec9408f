/* Ending a run from below. */
#pragma once

#include <stdint.h>

/* Raises message to the host. When the host's error operation returns, the run is given up: the
 * entry releases it and answers null. Never returns to its caller, whose frames are not unwound
 * and must therefore hold no object with a destructor. */
[[noreturn]] void end_run(const char *message);
/* Gives the run up in the same way behind an error that has been raised. */
[[noreturn]] void abandon_run();
/* Runs body(argument), or answers null in its place when end_run is called in it and the host's
 * error operation returns. */
uintptr_t run_to_end(uintptr_t (*body)(uintptr_t), uintptr_t argument);
