/* What the tool's arguments are, as plain data: the help, the manual page and the completions of
 * shells are written from it. */
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace mtranslate {

struct ArgumentInfo {
    /* With their dashes, short ones first; none for a positional argument. */
    std::vector<std::string> names;
    /* What stands for the value. It says what a shell offers: DIR a folder, PATH or FILE a file,
     * CODE the codes of messages, PATTERN what -W takes, or one of the choices. Empty for a flag.
     */
    std::string value;
    std::string summary; /* one line */
    std::string details; /* more sentences, or none */
    std::string group;   /* its heading in the help */
    std::vector<std::string> choices;
    bool is_repeatable = false;

    bool is_positional() const { return names.empty(); }
};

struct CommandInfo {
    std::string name; /* "mtranslate", or that of a subcommand */
    std::string summary;
    std::string details;
    std::vector<ArgumentInfo> arguments;
    /* Whether the arguments of the tool itself are allowed too. */
    bool takes_all = false;
    std::vector<CommandInfo> commands;
};

/* The description of an argument or command is its summary, or, after an empty line, more. */
CommandInfo list_arguments(const CLI::App &app);

}  // namespace mtranslate
