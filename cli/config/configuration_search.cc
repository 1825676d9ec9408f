/* From folders upwards. */
#include "cli/config/configuration_search.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "cli/support/paths.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

constexpr const char *FILE_NAME = "mtranslate.toml";

/* The path as the user would write it from here. */
fs::path from_here(const fs::path &path) {
    const fs::path near = path.lexically_relative(fs::current_path());
    return near.empty() || *near.begin() == ".." ? path : near;
}

/* Throws FileError where that cannot be found out: the configuration might forbid something. */
bool is_there(const fs::path &path) {
    struct stat status;
    if (stat(path.c_str(), &status) == 0) return true;
    if (!means_no_file(errno)) fail("cannot read '" + from_here(path).string() + "'");
    return false;
}

/* The settings stay. */
void add(Configuration &to, const Configuration &later) {
    to.rules.add(later.rules);
    to.files.insert(to.files.end(), later.files.begin(), later.files.end());
}

}  // namespace

ConfigurationSearch::ConfigurationSearch(const std::vector<std::string> &rule_files,
                                         bool looks_for_files)
    : looks_for_files_(looks_for_files) {
    for (const std::string &path : rule_files) add(last_, read_rules(path));
    check_reachable(last_.rules);
    none_ = std::make_shared<Configuration>(last_);
}

const Configuration &ConfigurationSearch::in_folder(const std::string &folder) {
    if (!looks_for_files_) return *none_;
    if (last_found_ && folder == last_folder_) return *last_found_;
    const fs::path path = fs::absolute(folder.empty() ? "." : folder).lexically_normal();
    last_found_ = find(path.has_filename() ? path : path.parent_path());
    last_folder_ = folder;
    return *last_found_;
}

const Configuration &ConfigurationSearch::of_file(const std::string &path) {
    return in_folder(path == "-" ? "" : folder_of(path));
}

const Configuration &ConfigurationSearch::of_input(const InputFile &input) {
    return input.trouble.empty() ? of_file(input.path) : *none_;
}

ConfigurationSearch::Found ConfigurationSearch::find(const fs::path &folder) {
    const auto known = found_.find(folder);
    if (known != found_.end()) return known->second;
    const fs::path file = folder / FILE_NAME;
    const fs::path outer = folder.parent_path();
    const Found found = is_there(file) ? read(file) : outer == folder ? none_ : find(outer);
    return found_.emplace(folder, found).first->second;
}

ConfigurationSearch::Found ConfigurationSearch::read(const fs::path &path) const {
    Configuration configuration = read_configuration(from_here(path));
    add(configuration, last_);
    check_reachable(configuration.rules);
    return std::make_shared<Configuration>(std::move(configuration));
}

}  // namespace mtranslate
