/* Ending a run from below. */
#pragma once

#include <stdint.h>

enum EndCause : uint8_t {
    GIVEN_IS_WRONG, /* a source, or the arguments */
    FILE_IS_UNREADABLE,
    RUN_IS_TOO_LARGE,
    SYSTEM_LACKS_MEMORY
};

struct RunEnd {
    const char *message;
    EndCause cause;
    int reason = 0; /* errno of a file that cannot be opened, where the message lacks it */
};

/* Raises the message to the host. When the host's error operation returns, the run is given up: the
 * entry releases it and answers null. Never returns to its caller, whose frames are not unwound
 * and must therefore hold no object with a destructor. */
[[noreturn]] void end_run(const RunEnd &end);
/* The system gives no more memory; a source, or a text made from one, is too long, as only sources
 * that double their texts on purpose become. */
constexpr RunEnd OUT_OF_MEMORY = {"system memory exhausted", SYSTEM_LACKS_MEMORY};
constexpr RunEnd TEXT_TOO_LONG = {"text of 2 GB or more", RUN_IS_TOO_LARGE};
/* The same, with the place in the source that has been reached, where there is one. */
[[noreturn]] void end_run_in_place(const RunEnd &end);
/* Raises the message with that place; set by the front end while a run has one, else null. */
extern void (*RaiseInPlace)(const RunEnd &end);
/* Gives the run up in the same way after an error that has been raised. */
[[noreturn]] void abandon_run();
