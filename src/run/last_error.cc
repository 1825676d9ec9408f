// Raising errors, and keeping the last.
#include "run/last_error.h"

#include "run/host_kernel.h"
#include "run/run_state.h"

ErrorRecord LastError = {nullptr, nullptr, 0, -1};

HostValue raise_error(const char *message, HostValue value) {
    LastError = {message, InputFileName, 0, -1};
    return HostKernel->RaiseError(message, value);
}

HostValue raise_framed_error(const ErrorRecord *error, const char *text) {
    LastError = *error;
    return HostKernel->RaiseError(text, 0);
}
