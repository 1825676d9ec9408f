/* Reading files, with errors in the tool's own words. */
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace mtranslate {

/* A file that cannot be used; what() names it and says why. */
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/* Throws FileError: attempt is what a system call has just failed to do, errno says why. */
[[noreturn]] void fail(const std::string &attempt);

/* Whether a failed look at a file, with this errno, shows that it is not there at all. */
bool means_no_file(int reason);

/* Whether what lies there shows the running system: folders without end, and files of no tree. */
bool is_of_kernel(const std::string &path);

/* An open file, closed with this object; or none, after a failed call. */
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor &&other) noexcept;
    Descriptor &operator=(Descriptor &&other) noexcept;
    /* Leaves errno as it is. */
    ~Descriptor();

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

private:
    int number_;
};

/* A file that has been read, to be known again under any name. */
struct FileRead {
    std::string path; /* as messages show it */
    dev_t device;
    ino_t inode;
};
using FilesRead = std::vector<FileRead>;

/* The files that other programs can find again under their names. */
std::vector<std::string> names_of(const FilesRead &files);

/* Throws FileError where a file of this status is too large for a source. */
void check_size(const struct stat &status, const std::string &path);
void check_size(std::uint64_t bytes, const std::string &path);

/* The path opened for reading. Throws FileError. */
Descriptor open_to_read(const std::string &path);

/* Likewise of a regular file; anything else might wait for ever, or never end. */
Descriptor open_regular_file(const std::string &path);

/* The name of the file itself, which need not exist, behind the symbolic links that lead to it. */
std::string behind_links(std::string path);
/* Whether the path, which need not exist, is the folder or in it behind all links. False also where
 * that cannot be found out, with the errno in reason, which is else as it was. */
bool is_within(const std::filesystem::path &folder, const std::filesystem::path &path,
               int *reason = nullptr);

/* A copy in memory of what is left to read in a descriptor that messages call name; path_of gives
 * it a name for as long as it is open. Throws FileError, also where there is too much. */
Descriptor spool(int from, const std::string &name);
std::string path_of(const Descriptor &file);

/* The bytes of a file in memory that messages call name, from its beginning. Throws FileError. */
std::string text_of(const Descriptor &file, const std::string &name);

/* The bytes of a regular file; none where it cannot be read, is too large for a source or is no
 * regular file, which would give its bytes only once. */
std::optional<std::string> read_regular_file(const std::string &path);

/* Likewise, but for a file that is there and cannot be read it throws FileError. */
std::optional<std::string> read_file_if_there(const std::string &path);

/* The text of a file that the user names, also what a pipe gives. Throws FileError. */
std::string read_named_file(const std::string &path);

/* Writes all of text. A reader of a pipe that has left early is no error. Throws FileError, which
 * calls the descriptor name. */
void write_all(int descriptor, std::string_view text, const std::string &name);

}  // namespace mtranslate
