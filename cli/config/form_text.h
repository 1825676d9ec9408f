/* Forms in a configuration. */
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/config/configuration_text.h"
#include "cli/config/toml.h"
#include "cli/rules/call_forms.h"

namespace mtranslate {

/* Where a form stands. */
struct FormEntry {
    const std::string &name;  /* of the function or the construct */
    const std::string &title; /* the rule's key */
    const toml::key &key;
    const toml::node &value;
};

/* The form; none for an empty text, and for a wrong one, which is noted. names: of its only places;
 * empty for those of arguments. has_own_ends: whether it is lines that end themselves, while the
 * last semicolon of others is the translator's. */
std::optional<FunctionForm> read_form(ConfigurationText &file, const FormEntry &entry,
                                      const std::vector<std::string> &names = {},
                                      bool has_own_ends = false);

/* Notes that the form asks for an argument that a call with so many has not. what: the call. */
void check_arguments(ConfigurationText &file, const FormEntry &entry, const FunctionForm &form,
                     std::size_t count, const std::string &what);

}  // namespace mtranslate
