/* Many files at once: each is a run of its own in a worker process. */
#pragma once

#include <string>
#include <vector>

#include "cli/request/options.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

/* Translates, checks or compares the files that the options name, and writes messages, differences
 * and a summary. The same is written whatever the number of workers is. Throws FileError where
 * nothing can be begun. */
ExitCode run_batch(const Options &options);

}  // namespace mtranslate
