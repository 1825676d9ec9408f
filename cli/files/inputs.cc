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

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

class Walk {
public:
    explicit Walk(const std::vector<std::string> &excludes) : excludes_(excludes) {}

    void add(const std::string &path) {
        const struct stat status = status_of(path);
        if (S_ISDIR(status.st_mode))
            enter(path, status, "");
        else
            inputs.push_back({path, fs::path(path).filename()});
    }

    std::vector<InputFile> inputs;

private:
    static struct stat status_of(const fs::path &path) {
        struct stat status;
        if (stat(path.c_str(), &status) != 0) fail("cannot read '" + path.string() + "'");
        return status;
    }

    bool is_excluded(const fs::path &relative) const {
        const std::string name = relative.filename();
        return std::any_of(excludes_.begin(), excludes_.end(), [&](const std::string &pattern) {
            const bool is_path = pattern.find('/') != std::string::npos;
            return fnmatch(pattern.c_str(), (is_path ? relative.string() : name).c_str(), 0) == 0;
        });
    }

    void enter(const fs::path &folder, const struct stat &status, const fs::path &relative) {
        if (!entered_.emplace(status.st_dev, status.st_ino).second) return;
        std::vector<std::string> names;
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end;
             at.increment(error))
            names.push_back(at->path().filename());
        if (error) return refuse(folder, relative, error.message());
        std::sort(names.begin(), names.end());
        for (const std::string &name : names) visit(folder / name, relative / name);
    }

    void visit(const fs::path &path, const fs::path &relative) {
        const std::string name = path.filename();
        struct stat status;
        if (name.starts_with('.') || is_excluded(relative)) return;
        if (stat(path.c_str(), &status) != 0) return visit_unknown(path, relative);
        if (S_ISDIR(status.st_mode)) return enter(path, status, relative);
        if (S_ISREG(status.st_mode) && path.extension() == ".m") inputs.push_back({path, relative});
    }

    /* Nothing is missed where a link leads nowhere. Else it may be a folder, and nothing in the one
     * around it can be read as a rule. */
    void visit_unknown(const fs::path &path, const fs::path &relative) {
        if (errno != ENOENT && errno != ELOOP)
            refuse(path.parent_path(), relative.parent_path(), std::strerror(errno));
    }

    /* Once a folder. */
    void refuse(const fs::path &folder, const fs::path &relative, const std::string &reason) {
        if (inputs.empty() || inputs.back().path != folder)
            inputs.push_back(
                {folder, relative, "cannot read '" + folder.string() + "': " + reason});
    }

    const std::vector<std::string> &excludes_;
    std::set<std::pair<dev_t, ino_t>> entered_;
};

}  // namespace

std::vector<InputFile> find_inputs(const std::vector<std::string> &paths,
                                   const std::vector<std::string> &excludes) {
    Walk walk(excludes);
    for (const std::string &path : paths) walk.add(path);
    return std::move(walk.inputs);
}

void place_below(const std::string &root, std::vector<InputFile> &inputs) {
    const fs::path folder = fs::path(root + '/').lexically_normal();
    for (InputFile &input : inputs) {
        input.relative = fs::path(input.path).lexically_normal().lexically_relative(folder);
        if (input.relative.empty() || input.relative.starts_with(".."))
            throw FileError("'" + input.path + "' is not in the folder '" + root + "'");
    }
}

}  // namespace mtranslate
