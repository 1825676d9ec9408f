/* Partial files, and the signals that must not leave one behind. */
#include "cli/files/partial_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cassert>
#include <cerrno>
#include <cstdio>

#include "cli/support/signals.h"

namespace mtranslate {

namespace {

/* The file to be removed when a signal ends the process; null for none. */
std::atomic<const char *> path_to_remove{nullptr};
static_assert(std::atomic<const char *>::is_always_lock_free, "read by a signal handler");

void remove_partial_file() {
    if (const char *path = path_to_remove) unlink(path);
}

/* Creates a file of a name that is free, which path becomes. */
int create(const std::filesystem::path &directory, std::string &path) {
    const std::string stem = directory / (".mtranslate-" + std::to_string(getpid()) + "-");
    for (int attempt = 0;; ++attempt) {
        path = stem + std::to_string(attempt);
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file >= 0 || errno != EEXIST) return file;
    }
}

}  // namespace

PartialFile::PartialFile(const std::filesystem::path &directory) {
    assert(!path_to_remove);
    before_ending_signals(remove_partial_file);
    const HeldSignals held;  // none comes between the file and the note of it
    file_ = Descriptor(create(directory, path_));
    if (file_) path_to_remove = path_.c_str();
}

PartialFile::~PartialFile() {
    const int reason = errno;
    if (path_to_remove) unlink(path_.c_str());
    path_to_remove = nullptr;
    errno = reason;
}

bool PartialFile::take_owner_and_mode(const struct stat &of) const {
    return fchown(file_.get(), of.st_uid, of.st_gid) == 0 &&
           fchmod(file_.get(), of.st_mode & 07777) == 0;
}

bool PartialFile::move_to(const std::filesystem::path &target) {
    if (rename(path_.c_str(), target.c_str()) != 0) return false;
    path_to_remove = nullptr;
    return true;
}

}  // namespace mtranslate
