/* Runs of the translator, for those who start one: the host's entry, and the tools'. */
#pragma once

#include <mtranslate.h>

#include "driver/options.h"

struct Observers;

/* Calls body(*value) as a run, which begins with begin_run (driver/run.h), and puts its answer into
 * value; 0 where the run was given up. observers: null for those that observe_next_run has been
 * given. False, and nothing is done, while another run is under way. What leaves body by an
 * exception leaves this: the run is then abandoned. */
bool run_in_turn(const HostKernelTable *kernel, const Observers *observers,
                 HostValue (*body)(HostValue), HostValue *value);
/* Translates what the request asks for into OutputText, as UsedFrontEnd reads it. False when
 * nothing has been translated: the mode is none, or an error has been raised. */
bool translate_request(const RunRequest *request);
