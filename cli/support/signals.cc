/* Holding and handling the signals that end the process. */
#include "cli/support/signals.h"

#include <array>
#include <cerrno>

namespace mtranslate {

namespace {

constexpr std::array ENDING_SIGNALS = {SIGHUP, SIGINT, SIGTERM};

void (*last_call)();

void end(int signal) {
    last_call();
    raise(signal);  // ends the process when this returns: the handler has been taken back
}

}  // namespace

sigset_t ending_signals() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : ENDING_SIGNALS) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler != SIG_IGN) sigaddset(&ending, signal);
    }
    return ending;
}

HeldSignals::HeldSignals() {
    const sigset_t ending = ending_signals();
    sigprocmask(SIG_BLOCK, &ending, &before_);
}

HeldSignals::~HeldSignals() {
    const int reason = errno;
    sigprocmask(SIG_SETMASK, &before_, nullptr);
    errno = reason;
}

void release_signals() {
    const sigset_t ending = ending_signals();
    sigprocmask(SIG_UNBLOCK, &ending, nullptr);
}

void before_ending_signals(void (*last)()) {
    last_call = last;
    for (const int signal : ENDING_SIGNALS) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) continue;
        action.sa_handler = end;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
}

}  // namespace mtranslate
