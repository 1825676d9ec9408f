/* From settings to options. */
#include "cli/config/configured.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "cli/config/configuration_search.h"
#include "cli/support/processors.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* An option takes the setting, if there is one and the user has not given it. */
template <typename Type>
void complete(const Options &options, const char *name, Type &option,
              const std::optional<Type> &setting) {
    if (setting && !options.given.contains(name)) option = *setting;
}

void configure_batch(Options &options, const Settings &settings) {
    complete(options, "output-dir", options.output_folder, settings.output_dir);
    const bool is_given = options.given.contains("output-dir");
    options.output_limit = is_given ? options.output_folder : settings.output_limit;
    complete(options, "suffix", options.suffix, settings.suffix);
    complete(options, "exclude", options.excludes, settings.exclude);
    complete(options, "closure", options.is_closure, settings.closure);
    complete(options, "jobs", options.jobs, settings.jobs);
    if (!options.given.contains("jobs")) options.jobs = std::min(options.jobs, processors());
}

const Configuration &configuration_of(const Options &options, const std::string &path) {
    std::error_code none;
    return fs::is_directory(path, none) ? options.configurations->in_folder(path)
                                        : options.configurations->of_file(path);
}

std::vector<std::string> folders_of(const std::vector<std::string> &paths) {
    std::set<std::string> folders;
    for (const std::string &path : paths) {
        std::error_code none;
        const bool is_folder = fs::is_directory(path, none);
        const std::string folder = is_folder ? path : fs::path(path).parent_path().string();
        folders.insert(folder.empty() ? "." : folder);
    }
    return {folders.begin(), folders.end()};
}

}  // namespace

void configure_run(Options &options, const Configuration &configuration) {
    const Settings &settings = configuration.settings;
    complete(options, "language", options.language, settings.language);
    complete(options, "include", options.directories, settings.include);
    complete(options, "W", options.message_policy, settings.messages);
    complete(options, "strict", options.is_strict, settings.strict);
    options.rules = &configuration.rules;
    options.configuration_files = configuration.files;
}

std::vector<const Rules *> rules_of_paths(const Options &options) {
    if (options.paths.empty()) return {&configuration_of(options, "-").rules};
    std::vector<const Rules *> rules;
    for (const std::string &path : options.paths)
        rules.push_back(&configuration_of(options, path).rules);
    return rules;
}

void configure(Options &options, bool is_batch) {
    if (options.is_untrusted) options.given_folders = folders_of(options.paths);
    options.configurations = std::make_shared<ConfigurationSearch>(
        options.rule_files, !options.without_configuration && !options.is_untrusted);
    const Configuration &configuration =
        configuration_of(options, options.paths.empty() ? "-" : options.paths[0]);
    if (is_batch)
        configure_batch(options, configuration.settings);
    else
        configure_run(options, configuration);
}

}  // namespace mtranslate
