/* Folders for outputs, which other programs and links change. */
#include "cli/files/output_folder.h"

#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <utility>

#include "cli/files/files.h"
#include "cli/support/paths.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

bool is_folder(const std::string &path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void make_folder(const std::string &folder) {
    std::error_code error;
    if (!is_folder(folder)) fs::create_directories(folder, error);
    if (error) throw FileError("cannot make the folder '" + folder + "': " + error.message());
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        fail("cannot write into the folder '" + folder + '\'');
}

}  // namespace

OutputFolder::OutputFolder(std::string path, std::string limit)
    : path_(std::move(path)), limit_(std::move(limit)) {}

void OutputFolder::make() {
    make_folder(path_);
    if (stat(path_.c_str(), &made_) != 0) fail("cannot make the folder '" + path_ + '\'');
}

bool OutputFolder::holds(const std::string &output, bool is_link, int &reason) const {
    if (is_link) return is_within(limit_, output, &reason);
    const std::string folder = folder_of(output);
    if (folder == known_) return true;
    if (!is_within(limit_, folder.empty() ? "." : folder, &reason)) return false;
    known_ = folder;
    return true;
}

void OutputFolder::check(const std::string &output) const {
    struct stat status;
    const bool is_there = lstat(output.c_str(), &status) == 0;
    const bool is_link = is_there && S_ISLNK(status.st_mode);
    int reason = 0;
    const bool is_held = limit_.empty() || holds(output, is_link, reason);
    if (reason != 0) throw FileError("cannot write '" + output + "': " + std::strerror(reason));
    if (!is_held)
        throw FileError("its output '" + output + "' leads out of the folder '" + limit_ + '\'');
    if (!is_there || (is_link && stat(output.c_str(), &status) != 0)) return;
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        throw FileError("its output '" + output + "' is no regular file");
}

void OutputFolder::make_around(const std::string &output) const {
    struct stat now;
    if (stat(path_.c_str(), &now) != 0) fail("cannot write into the folder '" + path_ + '\'');
    if (now.st_dev != made_.st_dev || now.st_ino != made_.st_ino)
        throw FileError("the folder '" + path_ + "' has been replaced");
    make_folder(folder_of(output));
}

}  // namespace mtranslate
