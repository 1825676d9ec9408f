/* Which configuration a source has. */
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/config/configuration.h"
#include "cli/files/inputs.h"

namespace mtranslate {

class ConfigurationSearch {
public:
    /* rule_files come after what is found, and the last one holds. Where no configuration is to be
     * looked for, they are all there is. Throws as read_rules does. */
    ConfigurationSearch(const std::vector<std::string> &rule_files, bool looks_for_files);

    /* The file mtranslate.toml of the folder, or of the nearest one around it, with the rule files.
     * Every folder is looked at once. Lives as long as this. Throws as read_configuration does. */
    const Configuration &in_folder(const std::string &folder);
    /* The same for the folder of a file; for standard input, the current one. */
    const Configuration &of_file(const std::string &path);
    /* The same of an input; one that cannot be looked at has none. */
    const Configuration &of_input(const InputFile &input);

private:
    using Found = std::shared_ptr<const Configuration>;

    Found find(const std::filesystem::path &folder);
    Found read(const std::filesystem::path &path) const;

    Configuration last_; /* the rule files */
    bool looks_for_files_;
    Found none_; /* for folders without a file */
    std::map<std::filesystem::path, Found> found_;
    std::string last_folder_; /* that was asked for, as it was named */
    Found last_found_;        /* null before */
};

}  // namespace mtranslate
