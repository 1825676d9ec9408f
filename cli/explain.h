/* What the codes of messages mean: for people at a terminal, and as a page. */
#pragma once

#include <string>

#include "cli/exit_code.h"

namespace mtranslate {

/* Writes to standard output what the message with the code, or the short name, means; without one,
 * a line for each message. A code that there is not is wrong usage, with the nearest one as a
 * suggestion. */
ExitCode explain(const std::string &code);

/* docs/messages.md. */
std::string page_of_messages();

}  // namespace mtranslate
