/* Which file of a batch a name means. In a batch every file is translated for itself: a call needs
 * no look-up, but the statements of a called script belong in the place of the call, and a name
 * that a file of the batch defines is not unknown. */
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/files/input_files.h"

namespace mtranslate {

class FileIndex {
public:
    explicit FileIndex(InputFiles files);
    const InputFiles &files() const { return files_; }
    /* The file that the name means when the file caller calls it, or none; no method, which only
     * the class of an argument makes a name mean. Functions of packages have their package in the
     * name: package.name. */
    std::optional<std::string> find(std::string_view caller, std::string_view name) const;
    /* The file of a class's method, or of its constructor. Classes of packages have their package
     * in the name. class_name null: of the first class that has the method, but as a constructor.
     */
    std::optional<std::string> find_method(const char *class_name, std::string_view method) const;
    bool has_methods() const { return !methods_.empty(); }

private:
    /* What a file defines; its name is made of its path whenever it is asked for. */
    struct Entry {
        std::uint32_t hash; /* of the name */
        std::uint32_t file;

        auto operator<=>(const Entry &) const = default;
    };
    using Entries = std::vector<Entry>;

    std::string class_of(const std::string &path) const;
    std::vector<std::string> paths_in(const Entries &entries, std::string_view name) const;

    InputFiles files_;
    std::filesystem::path current_;
    bool is_in_class_folder_ = false; /* the current one may be */
    Entries functions_;
    Entries methods_;
};

}  // namespace mtranslate
