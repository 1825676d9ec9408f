/* What is completed, whatever the shell. */
#pragma once

#include <string>
#include <vector>

#include "cli/options/argument_list.h"

namespace mtranslate {

using Words = std::vector<std::string>;

enum class Offer { Nothing, Files, Folders, Choices };

/* What the value of an argument may be. */
Offer offer_of(const ArgumentInfo &argument);

/* The arguments that may stand after the name of a command, its own first; command may be the
 * tool itself. */
std::vector<ArgumentInfo> arguments_after(const CommandInfo &tool, const CommandInfo &command);

/* The options among them, with their dashes. */
Words option_names(const std::vector<ArgumentInfo> &arguments);

/* Of all commands, or only of those that take arguments of their own alone. */
Words command_names(const CommandInfo &tool, bool only_separate = false);

std::string joined(const Words &words, const std::string &between = " ");
std::string replaced(std::string text, const std::string &from, const std::string &to);

}  // namespace mtranslate
