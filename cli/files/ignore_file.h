/* The files .gitignore of a tree: what they leave out of the search for sources. */
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mtranslate {

class IgnoreFile {
public:
    /* text: the file's. It is about paths below its folder. */
    explicit IgnoreFile(std::string_view text);

    /* Whether the last pattern that matches leaves the path out, or takes it in again; none where
     * no pattern matches. The path is relative to the file's folder. */
    std::optional<bool> leaves_out(const std::filesystem::path &path, bool is_folder) const;

private:
    struct Pattern {
        std::vector<std::string> parts; /* between slashes; "**" stands for any number of them */
        bool is_for_folders;
        bool takes_in;
    };

    void add(std::string_view line);

    std::vector<Pattern> patterns_;
};

/* The files of a folder and of those around it, for one walk. All paths are absolute and normal. */
class IgnoreFiles {
public:
    /* Reads those of the folders around this one that belong to the same work tree: up to the one
     * with .git in it, and none where there is no such folder. Throws FileError. */
    void enter_root(const std::filesystem::path &folder);
    /* Reads that of the folder until it is left. Throws FileError where that cannot be read; the
     * folder is entered all the same. */
    void enter(const std::filesystem::path &folder);
    void leave() { files_.pop_back(); }
    bool are_none() const { return files_.empty(); }

    /* The nearest file that has a pattern for the path decides. */
    bool leave_out(const std::filesystem::path &path, bool is_folder) const;

private:
    struct Placed {
        std::filesystem::path folder;
        IgnoreFile file;
    };

    std::vector<Placed> files_; /* the outermost first */
};

}  // namespace mtranslate
