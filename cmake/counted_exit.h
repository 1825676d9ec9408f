/* What all sources of a coverage build include first: the tool's workers end by _exit or by a signal,
 * which leave out what they have run. */
#pragma once

#include <signal.h>
#include <unistd.h>

extern "C" void __gcov_dump();

[[noreturn]] inline void counted_exit(int code) {
    __gcov_dump();
    _exit(code);
}

inline void end_counted(int signal_number) {
    __gcov_dump();
    signal(signal_number, SIG_DFL);
    raise(signal_number);
}

inline const auto counts_ended = signal(SIGTERM, end_counted);

#define _exit counted_exit
