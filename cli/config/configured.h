/* The tool's arguments, completed by configurations: what is given on the command line holds. */
#pragma once

#include <vector>

#include "cli/config/configuration.h"
#include "cli/request/options.h"

namespace mtranslate {

/* Completes the options by the configuration of the source, or, for a batch, of its first path.
 * Throws as ConfigurationSearch does. */
void configure(Options &options, bool is_batch);
/* Completes those of one run by its configuration, which must live as long. */
void configure_run(Options &options, const Configuration &configuration);

/* The rules for the paths of the options, or for the current folder. */
std::vector<const Rules *> rules_of_paths(const Options &options);

}  // namespace mtranslate
