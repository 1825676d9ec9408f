/* Translating again what changes. */
#pragma once

#include <functional>

#include "cli/request/options.h"

namespace mtranslate {

/* Runs again and again, as the sources of the options and what their translations depend on change,
 * until a signal ends the process. read changes the options to what configurations say now. Both
 * say themselves what goes wrong. */
[[noreturn]] void watch(const Options &options, const std::function<void(const Options &)> &run,
                        const std::function<void(Options &)> &read);

}  // namespace mtranslate
