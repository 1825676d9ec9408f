/* Files that are seen only when they are whole. */
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "cli/files/files.h"

namespace mtranslate {

/* A file that is written beside its final place: where the file system allows that, without a name,
 * so that nothing is left of it however the process ends. Otherwise, and for the moment in which it
 * is put there, it has one, and is removed with this object, or by a signal that ends the process.
 * One at a time in a process. */
class PartialFile {
public:
    /* Makes an empty file in the directory, with the mode of a new file. */
    explicit PartialFile(const std::string &directory);
    /* Leaves errno as it is. */
    ~PartialFile();
    PartialFile(const PartialFile &) = delete;
    PartialFile &operator=(const PartialFile &) = delete;

    /* Where to write; -1 when the file could not be made, and errno says why. */
    int descriptor() const { return file_.get(); }
    /* Gives the file the owner and the mode of another. False where that is not allowed. */
    bool take_owner_and_mode(const struct stat &of) const;
    /* Puts the file in the place of target. False, with errno, where that cannot be. */
    bool move_to(const std::string &target);

private:
    bool name();

    std::string directory_;
    std::string path_; /* where it has a name */
    Descriptor file_;
};

}  // namespace mtranslate
