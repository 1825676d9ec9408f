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

/* What make makes of a name that is free, which path becomes; -1 where it fails. */
template <class Make>
int with_free_name(const std::string &directory, std::string &path, const Make &make) {
    const std::string stem = directory + "/.mtranslate-" + std::to_string(getpid()) + "-";
    for (int attempt = 0;; ++attempt) {
        path = stem + std::to_string(attempt);
        const int result = make(path.c_str());
        if (result >= 0 || errno != EEXIST) return result;
    }
}

/* Not all file systems have them. */
int create_unnamed(const std::string &directory) {
    if (access("/proc/self/fd", X_OK) != 0) return -1;  // it could not be named
    return open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
}

}  // namespace

PartialFile::PartialFile(const std::string &directory)
    : directory_(directory), file_(create_unnamed(directory)) {
    assert(!path_to_remove);
    before_ending_signals(remove_partial_file);
    if (file_) return;
    const HeldSignals held;  // none comes between the file and the note of it
    file_ = Descriptor(with_free_name(directory, path_, [](const char *path) {
        return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    }));
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

/* Gives an unnamed file its name. */
bool PartialFile::name() {
    const HeldSignals held;
    const std::string file = path_of(file_);
    const int result = with_free_name(directory_, path_, [&](const char *path) {
        return linkat(AT_FDCWD, file.c_str(), AT_FDCWD, path, AT_SYMLINK_FOLLOW);
    });
    if (result == 0) path_to_remove = path_.c_str();
    return result == 0;
}

bool PartialFile::move_to(const std::string &target) {
    if (!path_to_remove && !name()) return false;
    if (rename(path_.c_str(), target.c_str()) != 0) return false;
    path_to_remove = nullptr;
    return true;
}

}  // namespace mtranslate
