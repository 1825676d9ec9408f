/* What a configuration says of a function. */
#pragma once

#include <string>

#include "cli/config/configuration_text.h"
#include "cli/config/toml.h"
#include "cli/rules/call_forms.h"

namespace mtranslate {

/* Reads an entry of [functions]; mistakes are noted. */
FunctionRule read_function_rule(ConfigurationText &file, const std::string &name,
                                const toml::key &key, const toml::node &value);

}  // namespace mtranslate
