/* The table of options in a configuration. */
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/config/configuration.h"
#include "cli/config/configuration_text.h"
#include "cli/config/toml.h"

namespace mtranslate {

/* What the table sets. */
struct OptionTable {
    Settings settings;
    /* Files with rules, in their order: where they are named, and their paths. */
    std::vector<std::pair<const toml::node *, std::string>> rule_files;
};

/* Reads an entry of the table. Paths are taken from the folder. Mistakes are noted. */
void read_option(ConfigurationText &file, const toml::key &key, const toml::node &value,
                 const std::filesystem::path &folder, OptionTable &table);

}  // namespace mtranslate
