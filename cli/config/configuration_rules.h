/* The tables of rules in a configuration. */
#pragma once

#include "cli/config/configuration_text.h"
#include "cli/config/toml.h"
#include "cli/rules/rules.h"

namespace mtranslate {

/* Put an entry of the table [names], [functions] or [forms] into the rules; mistakes are noted. */
void read_name(ConfigurationText &file, const toml::key &key, const toml::node &value,
               Rules &rules);
void read_function(ConfigurationText &file, const toml::key &key, const toml::node &value,
                   Rules &rules);
void read_form(ConfigurationText &file, const toml::key &key, const toml::node &value,
               Rules &rules);

}  // namespace mtranslate
