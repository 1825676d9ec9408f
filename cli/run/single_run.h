/* One source, one translation. */
#pragma once

#include "cli/request/options.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

/* Translates the file or the command of the options, within their limits. What fails is
 * written with the messages. Throws FileError where these cannot be written, and std::bad_alloc. */
ExitCode run_single(const Options &options);

}  // namespace mtranslate
