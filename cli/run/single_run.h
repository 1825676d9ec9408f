/* One source, one translation. */
#pragma once

#include "cli/request/options.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

/* Translates the file or the command of the options, within their limits. Throws FileError, or
 * std::bad_alloc, where nothing is written. */
ExitCode run_single(const Options &options);

}  // namespace mtranslate
