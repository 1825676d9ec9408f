/* Walking through folders. */
#include "cli/files/inputs.h"

#include <fnmatch.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <utility>

#include "cli/files/files.h"
#include "cli/files/ignore_file.h"
#include "cli/support/paths.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

class Walk {
public:
    explicit Walk(const InputSearch &search) : search_(search) {}

    void add(const std::string &path) {
        const struct stat status = status_of(path);
        if (!S_ISDIR(status.st_mode)) {
            inputs.files.add({path, file_name_of(path)});
            return;
        }
        given_ = path;
        device_ = status.st_dev;
        root_ = fs::absolute(path + '/').lexically_normal().parent_path();
        ignore_files_ = {};
        if (search_.reads_ignore_files) ignore_files_.enter_root(root_);
        enter(path, status, "");
    }

    Inputs inputs;

private:
    static struct stat status_of(const std::string &path) {
        struct stat status;
        if (stat(path.c_str(), &status) != 0) fail("cannot read '" + path + "'");
        return status;
    }

    bool is_excluded(const std::string &name, const std::string &relative) const {
        return std::ranges::any_of(search_.excludes, [&](const std::string &pattern) {
            const bool is_path = pattern.find('/') != std::string::npos;
            return fnmatch(pattern.c_str(), (is_path ? relative : name).c_str(), 0) == 0;
        });
    }

    void enter(const std::string &folder, const struct stat &status, const std::string &relative) {
        if (!entered_.emplace(status.st_dev, status.st_ino).second) return;
        std::vector<std::string> names;
        bool has_ignore_file = false;
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end;
             at.increment(error)) {
            std::string name = file_name_of(at->path().native());
            has_ignore_file |= search_.reads_ignore_files && name == ".gitignore";
            if (may_matter(name, *at)) names.push_back(std::move(name));
        }
        if (error) return refuse(folder, relative, error.message());
        std::sort(names.begin(), names.end());
        if (has_ignore_file) enter_ignore_file(folder, relative);
        for (const std::string &name : names)
            visit(name, in_folder(folder, name), in_folder(relative, name));
        if (has_ignore_file) ignore_files_.leave();
    }

    void enter_ignore_file(const std::string &folder, const std::string &relative) try {
        ignore_files_.enter(below_root(relative));
    } catch (const FileError &error) {
        inputs.files.add(
            {in_folder(folder, ".gitignore"), in_folder(relative, ".gitignore"), error.what()});
    }

    /* Whether it is not surely another file, as far as its folder tells. */
    static bool may_matter(const std::string &name, const fs::directory_entry &entry) {
        std::error_code none;
        return name.ends_with(".m") || !entry.is_regular_file(none);
    }

    fs::path below_root(const std::string &relative) const {
        return relative.empty() ? root_ : root_ / relative;
    }

    bool is_ignored(const std::string &relative, bool is_folder) {
        if (!search_.reads_ignore_files || ignore_files_.are_none()) return false;
        const bool is_out = ignore_files_.leave_out(below_root(relative), is_folder);
        if (is_out) ++inputs.ignored;
        return is_out;
    }

    void visit(const std::string &name, const std::string &path, const std::string &relative) {
        struct stat status;
        if (name.starts_with('.') || is_excluded(name, relative)) return;
        if (stat(path.c_str(), &status) != 0) return visit_unknown(path, relative);
        const bool is_folder = S_ISDIR(status.st_mode);
        const bool is_source = S_ISREG(status.st_mode) && name.ends_with(".m");
        if ((!is_folder && !is_source) || is_ignored(relative, is_folder)) return;
        int reason = 0;
        if (search_.stays_inside && !is_within(given_, path, &reason))
            return refuse(path, relative,
                          reason ? std::strerror(reason) : "it leads out of '" + given_ + '\'');
        if (status.st_dev != device_ && is_of_kernel(path))
            return refuse(path, relative, "it lies in a file system of the kernel");
        if (is_folder) return enter(path, status, relative);
        inputs.files.add({path, relative});
    }

    /* Nothing is missed where a link leads nowhere. */
    void visit_unknown(const std::string &path, const std::string &relative) {
        const int reason = errno;
        if (reason != ENOENT && reason != ELOOP && !is_ignored(relative, false))
            refuse(path, relative, std::strerror(reason));
    }

    void refuse(const std::string &path, const std::string &relative, const std::string &reason) {
        inputs.files.add({path, relative, "cannot read '" + path + "': " + reason});
    }

    const InputSearch &search_;
    std::string given_; /* the folder under way */
    fs::path root_;     /* the same, absolute */
    dev_t device_ = 0;  /* its file system */
    IgnoreFiles ignore_files_;
    std::set<std::pair<dev_t, ino_t>> entered_;
};

}  // namespace

Inputs find_inputs(const InputSearch &search) {
    Walk walk(search);
    for (const std::string &path : search.paths) walk.add(path);
    return std::move(walk.inputs);
}

InputFiles place_below(const std::string &root, const InputFiles &inputs) {
    const fs::path folder = fs::path(root + '/').lexically_normal();
    InputFiles placed;
    for (InputFile input : inputs) {
        input.relative = fs::path(input.path).lexically_normal().lexically_relative(folder);
        if (input.relative.empty() || input.relative.starts_with(".."))
            throw FileError("'" + input.path + "' is not in the folder '" + root + "'");
        placed.add(input);
    }
    return placed;
}

}  // namespace mtranslate
