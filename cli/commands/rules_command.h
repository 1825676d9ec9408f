/* The subcommand "rules". */
#pragma once

#include "cli/request/options.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

/* Writes the rules that are in force for the paths, or here: each in a line of its own, with its
 * place. Throws FileError. */
ExitCode show_rules(const Options &options);
/* Writes a rules file with an empty form for every function that the sources call and that is found
 * nowhere, most used first. Throws FileError. */
ExitCode write_rule_template(const Options &options);
/* Writes the rules in force for the paths that have answered nothing in their sources, as
 * show_rules does, with a name that may have been meant. Throws FileError. */
ExitCode show_unused_rules(const Options &options);

}  // namespace mtranslate
