/* From the arguments to what they ask for. */
#pragma once

#include <variant>

#include "cli/request/options.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

/* Reads the arguments. Where nothing is to be translated (help, version, wrong usage) the text for
 * the user has been written and the answer is the exit code. */
std::variant<Options, ExitCode> read_options(int argc, const char *const *argv);

}  // namespace mtranslate
