/* Names and files. */
#include "cli/files/file_index.h"

#include <algorithm>
#include <functional>
#include <map>
#include <system_error>
#include <utility>

#include "cli/support/paths.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* "a.b." for a file in the folders +a/+b. */
std::string package_of(const fs::path &folder) {
    const std::string name = folder.filename();
    if (name.starts_with('@')) return package_of(folder.parent_path());
    if (!name.starts_with('+')) return "";
    return package_of(folder.parent_path()) + name.substr(1) + '.';
}

std::string name_in_package(const std::string &name) { return name.substr(name.rfind('.') + 1); }

std::uint32_t hash_of(std::string_view name) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
}

/* Of a function, with its package. */
std::string name_of(const std::string &path) {
    if (path.find('+') == path.npos) return stem_of(path);
    const fs::path normal = fs::path(path).lexically_normal();
    return package_of(normal.parent_path()) + normal.stem().string();
}

}  // namespace

FileIndex::FileIndex(InputFiles files) : files_(std::move(files)) {
    std::error_code error;  // there is none in a browser
    current_ = fs::current_path(error);
    is_in_class_folder_ = current_.native().find('@') != std::string::npos;
    std::uint32_t number = 0;
    for (const InputFile &file : files_) {
        const std::uint32_t at = number++;
        if (!file.trouble.empty() && fs::path(file.path).extension() != ".m") continue;
        if (class_of(file.path).empty())
            functions_.push_back({hash_of(name_of(file.path)), at});
        else
            methods_.push_back({hash_of(stem_of(file.path)), at});
    }
    std::sort(functions_.begin(), functions_.end());
    std::sort(methods_.begin(), methods_.end());
}

/* "a.b" for a file in the folders +a/@b, "" for one outside of class folders. */
std::string FileIndex::class_of(const std::string &path) const {
    if (!is_in_class_folder_ && path.find('@') == path.npos) return "";
    const fs::path folder = (current_ / path).lexically_normal().parent_path();
    const std::string name = folder.filename();
    if (!name.starts_with('@') || name.size() == 1) return "";
    return package_of(folder.parent_path()) + name.substr(1);
}

/* Of files that may have the name, in their order. */
std::vector<std::string> FileIndex::paths_in(const Entries &entries, std::string_view name) const {
    std::vector<std::string> paths;
    const std::uint32_t hash = hash_of(name);
    for (auto at = std::lower_bound(entries.begin(), entries.end(), Entry{hash, 0});
         at != entries.end() && at->hash == hash; ++at)
        paths.push_back(files_[at->file].path);
    return paths;
}

std::optional<std::string> FileIndex::find(std::string_view caller, std::string_view name) const {
    const auto normal_folder_of = [](std::string_view path) {
        return fs::path(path).lexically_normal().parent_path();
    };
    const auto sees = [&](const fs::path &private_folder) {
        fs::path from = normal_folder_of(caller);
        if (from.filename() == "private") from = from.parent_path();
        return private_folder.parent_path() == from;
    };
    std::optional<std::string> open;
    for (const std::string &path : paths_in(functions_, name)) {
        if (name_of(path) != name) continue;
        const fs::path folder = normal_folder_of(path);
        const bool is_private = folder.filename() == "private" && folder.has_parent_path();
        if (is_private && sees(folder)) return path;
        if (!is_private && !open) open = path;
    }
    return open;
}

std::optional<std::string> FileIndex::find_method(const char *class_name,
                                                  std::string_view method) const {
    std::map<std::string, std::string> found; /* by class; of two with one, the first */
    for (const std::string &path : paths_in(methods_, method))
        if (stem_of(path) == method) found.try_emplace(class_of(path), path);
    for (const auto &[name, path] : found)
        if (class_name ? name == class_name : name_in_package(name) != method) return path;
    return std::nullopt;
}

}  // namespace mtranslate
