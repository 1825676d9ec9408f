/* The subcommand "rules". */
#pragma once

#include "cli/exit_code.h"
#include "cli/options.h"

namespace mtranslate {

/* Writes the rules that are in force for the paths, or here: each in a line of its own, with its
 * place. Throws FileError. */
ExitCode show_rules(const Options &options);
/* Writes a rules file with an empty form for every function that the sources call and that is found
 * nowhere, most used first. Throws FileError. */
ExitCode write_rule_template(const Options &options);

}  // namespace mtranslate
