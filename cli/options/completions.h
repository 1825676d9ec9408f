/* What shells need to complete the tool's arguments. */
#pragma once

#include <string>

#include "cli/options/argument_list.h"

namespace mtranslate {

/* To be sourced, or found under the name mtranslate. */
std::string bash_completion(const CommandInfo &tool);
/* To be found in the function path under the name _mtranslate. */
std::string zsh_completion(const CommandInfo &tool);
/* To be found under the name mtranslate.fish. */
std::string fish_completion(const CommandInfo &tool);

}  // namespace mtranslate
