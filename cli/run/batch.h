/* Many files at once: each is a run of its own in a worker process. */
#pragma once

#include <string>
#include <vector>

#include "cli/request/options.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

/* Translates, checks or compares the files that the options name, and writes messages, differences
 * and a summary. The same is written whatever the number of workers is. Where nothing can be begun
 * that is a message. Throws FileError where something of all files cannot be written. */
ExitCode run_batch(const Options &options);

}  // namespace mtranslate
