/* Signals that end the process: Ctrl-C, kill, the terminal going away. */
#pragma once

#include <signal.h>

namespace mtranslate {

/* All of them but those that the process ignores, as under nohup. */
sigset_t ending_signals();

/* Keeps them waiting for as long as this lives. Leaves errno as it is. */
class HeldSignals {
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals &) = delete;
    HeldSignals &operator=(const HeldSignals &) = delete;

private:
    sigset_t before_;
};

/* Lets them end this process again, whoever holds them: for a new process. */
void release_signals();

/* Has a signal of these call last before it ends the process. Signals that the process ignores, as
 * under nohup, stay ignored. last may call what a signal handler may. */
void before_ending_signals(void (*last)());

}  // namespace mtranslate
