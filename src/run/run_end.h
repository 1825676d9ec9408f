/* Ending a run from below. */
#pragma once

/* Raises message to the host. When the host's error operation returns, the run is given up: the
 * entry releases it and answers null. Never returns to its caller, whose frames are not unwound
 * and must therefore hold no object with a destructor. */
[[noreturn]] void end_run(const char *message);
/* Messages: the system gives no more memory; a source, or a text made from one, is too long, as
 * only sources that double their texts on purpose become. */
constexpr char OUT_OF_MEMORY[] = "system memory exhausted";
constexpr char TEXT_TOO_LONG[] = "text of 2 GB or more";
/* The same, with the place in the source that has been reached, where there is one. */
[[noreturn]] void end_run_in_place(const char *message);
/* Raises message with that place; set by the front end while a run has one, else null. */
extern void (*RaiseInPlace)(const char *message);
/* Gives the run up in the same way after an error that has been raised. */
[[noreturn]] void abandon_run();
