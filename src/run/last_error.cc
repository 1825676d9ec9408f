// Raising errors, and keeping the last.
#include "run/last_error.h"

#include "run/host_kernel.h"
#include "run/run_state.h"
#include "run/run_turn.h"

ErrorRecord LastError = {nullptr, nullptr, 0, -1, GIVEN_IS_WRONG};

static HostValue raise(const char *text, HostValue value) {
    const HostKernelTable *kernel = HostKernel;  // from begin_raise on another run may set it
    RunTurn *turn = begin_raise();
    HostValue result = kernel->RaiseError(text, value);
    end_raise(turn);
    return result;
}

HostValue raise_error(const RunEnd &end, HostValue value) {
    LastError = {end.message, InputFileName, 0, -1, end.cause, end.reason};
    return raise(end.message, value);
}

HostValue raise_framed_error(const ErrorRecord *error, const char *text) {
    LastError = *error;
    return raise(text, 0);
}
