/* What a configuration says of a construct. */
#pragma once

#include "cli/config/configuration_text.h"
#include "cli/config/toml.h"
#include "cli/rules/call_forms.h"
#include "cli/rules/constructs.h"

namespace mtranslate {

/* Reads an entry of [forms]; mistakes are noted. */
FunctionRule read_construct_rule(ConfigurationText &file, const Construct &construct,
                                 const toml::key &key, const toml::node &value);
/* The form of try as one of [functions], whose places are {1}, {2} and {3}. */
FunctionRule read_try_function(ConfigurationText &file, const toml::key &key,
                               const toml::node &value);

}  // namespace mtranslate
