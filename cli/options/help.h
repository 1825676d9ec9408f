/* What --help and -h print. */
#pragma once

#include <string>

#include "cli/options/argument_list.h"

namespace mtranslate {

/* A line for each argument. */
std::string short_help(const CommandInfo &tool);
/* All that is known, with the sections of the manual. */
std::string long_help(const CommandInfo &tool);
/* The help of a subcommand of the tool. */
std::string command_help(const CommandInfo &tool, const CommandInfo &command, bool is_long);

/* "mtranslate explain [OPTION]... [CODE]": how a command of the tool is called; command may be the
 * tool itself. */
std::string usage(const CommandInfo &tool, const CommandInfo &command);

}  // namespace mtranslate
