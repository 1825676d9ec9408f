/* Configurations: rules and options of the tool, written in TOML. */
#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/files/files.h"
#include "cli/messages/message_policy.h"
#include "cli/rules/rules.h"

namespace mtranslate {

/* Mistakes in a configuration; what() is whole lines for the user, with their places. */
class ConfigurationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/* The options that a configuration sets. Paths are as the tool opens them. */
struct Settings {
    std::optional<std::string> language;
    std::optional<std::vector<std::string>> include;
    std::optional<bool> strict;
    std::optional<MessagePolicy> messages;
    std::optional<bool> closure;
    std::optional<std::string> output_dir;
    std::string output_limit; /* the folder that outputs in output_dir may not leave */
    std::optional<std::string> suffix;
    std::optional<std::vector<std::string>> exclude;
    std::optional<std::size_t> jobs;
};

struct Configuration {
    Rules rules;
    Settings settings;
    FilesRead files; /* that it has been read from */
};

/* A file of rules that the user names: also a pipe. Throws ConfigurationError, and FileError where
 * it cannot be read. */
Configuration read_rules(const std::string &path);
/* The same of a text that messages call name. */
Rules read_rules_text(const std::string &name, const std::string &text);
/* A file with options as well; the rules of the files that it names come before its own. Who has
 * written it is not known: these files and its outputs stay in its folder, and all are regular. */
Configuration read_configuration(const std::string &path);

/* Sees that every rule can be asked for: a function's calls are offered under the name that it is
 * given. Throws ConfigurationError. */
void check_reachable(const Rules &rules);

}  // namespace mtranslate
