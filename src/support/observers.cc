// Who observes the run.
#include "support/observers.h"

Observers Observing;

static Observers NextObservers;

void observe_next_run(const Observers &observers) { NextObservers = observers; }

void begin_observation() {
    Observing = NextObservers;
    NextObservers = {};
}

void end_observation() { Observing = {}; }
