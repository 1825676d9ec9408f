/* The manual page. */
#pragma once

#include <string>

#include "cli/options/argument_list.h"

namespace mtranslate {

/* mtranslate.1, for the macros "man" of roff. */
std::string man_page(const CommandInfo &tool, const std::string &version);

}  // namespace mtranslate
