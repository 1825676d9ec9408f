/* Writing translations so that no file is lost. */
#include "cli/files/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>

#include "cli/files/partial_file.h"
#include "cli/support/paths.h"
#include "cli/support/signals.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* The descriptor that a path stands for; -1 for any other path. To open such a path would truncate
 * a file that the shell has opened for appending. */
int descriptor_named(std::string_view path) {
    if (path == "-" || path == "/dev/stdout") return STDOUT_FILENO;
    if (path == "/dev/stderr") return STDERR_FILENO;
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        int number = -1;
        if (path.starts_with(folder) &&
            std::from_chars(path.data() + folder.size(), path.data() + path.size(), number).ec ==
                std::errc())
            return number;
    }
    return -1;
}

/* Throws FileError for a name of an existing file that is a source's, the file's own or a link's.
 */
void refuse_matlab_file(const std::string &path, const std::string &title) {
    for (const std::string &name : {path, behind_links(path)})
        if (fs::path(name).extension() == ".m")
            throw FileError(title + " is an existing MATLAB file");
}

/* Small pieces are written together; a large one is not copied. */
void write_pieces(int descriptor, const Pieces &text, const std::string &name) {
    constexpr std::size_t MOST_HELD = 1 << 16;
    constexpr std::size_t LARGE = 1 << 12;
    std::string held;
    text([&](std::string_view piece) {
        const bool is_large = piece.size() >= LARGE;
        if (is_large || held.size() + piece.size() > MOST_HELD) {
            write_all(descriptor, held, name);
            held.clear();
        }
        if (is_large)
            write_all(descriptor, piece, name);
        else
            held += piece;
    });
    write_all(descriptor, held, name);
}

void write_whole(int descriptor, const Pieces &text, const std::string &name,
                 Durability durability) {
    write_pieces(descriptor, text, name);
    if (durability == Durability::OnDisk && fsync(descriptor) != 0) fail("cannot write " + name);
}

/* Replaces target, old where it exists. False, with errno, where the place allows no new file or
 * not one of the same owner. */
bool replace(const std::string &target, const struct stat *old, const Pieces &text,
             const std::string &name, Durability durability) {
    const std::string folder = folder_of(target);
    PartialFile file(folder.empty() ? "." : folder);
    if (file.descriptor() < 0) return false;
    if (old && !file.take_owner_and_mode(*old)) return false;
    write_whole(file.descriptor(), text, name, durability);
    return file.move_to(target);
}

/* Writes over a file that cannot be replaced. Space is found first, so that a full disk leaves
 * the file as it is. */
void overwrite(const std::string &target, const struct stat &old, std::string_view text,
               const std::string &name) {
    const HeldSignals held;
    const Descriptor file(open(target.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file) fail("cannot write " + name);
    const auto size = static_cast<off_t>(text.size());
    errno = size > 0 ? posix_fallocate(file.get(), 0, size) : 0;
    if (errno != 0) {
        const int reason = errno;
        if (ftruncate(file.get(), old.st_size) == 0) errno = reason;
        fail("cannot write " + name);
    }
    write_all(file.get(), text, name);
    if (ftruncate(file.get(), size) != 0 || fsync(file.get()) != 0) fail("cannot write " + name);
}

/* A pipe or a device. */
void write_directly(const std::string &target, const Pieces &text, const std::string &name) {
    const Descriptor file(open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (!file) fail("cannot write " + name);
    write_pieces(file.get(), text, name);
}

std::string joined(const Pieces &text) {
    std::string whole;
    text([&](std::string_view piece) { whole += piece; });
    return whole;
}

void write_file(const std::string &path, const Pieces &text, const std::string &name,
                Durability durability) {
    const std::string target = behind_links(path);
    struct stat old;
    const bool exists = stat(target.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) fail("cannot write " + name);
    if (exists && !S_ISREG(old.st_mode)) return write_directly(target, text, name);
    if (exists) refuse_matlab_file(path, "the output " + name);
    if (exists && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        fail("cannot write " + name);
    if (replace(target, exists ? &old : nullptr, text, name, durability)) return;
    if (!exists) fail("cannot write " + name);
    overwrite(target, old, joined(text), name);
}

}  // namespace

std::string refusal_of_suffix(const std::string &suffix) {
    if (suffix.find('/') != suffix.npos) return "the ending of a file's name has no '/'";
    return suffix.ends_with(".m") ? "outputs are no MATLAB files" : "";
}

Output::Output(const std::optional<std::string> &path)
    : descriptor_(path ? descriptor_named(*path) : STDOUT_FILENO),
      path_(path.value_or("-")),
      name_(path_ == "-" ? "standard output" : "'" + path_ + "'") {}

void Output::refuse_sources(const FilesRead &sources) const {
    struct stat file;
    const int missing = descriptor_ >= 0 ? fstat(descriptor_, &file) : stat(path_.c_str(), &file);
    if (missing != 0 || !S_ISREG(file.st_mode)) return;
    const auto source = std::find_if(sources.begin(), sources.end(), [&](const FileRead &read) {
        return read.device == file.st_dev && read.inode == file.st_ino;
    });
    const std::string title = (path_ == "-" ? "" : "the output ") + name_;
    if (source != sources.end())
        throw FileError(title + " is the source '" + source->path + "' itself");
    refuse_matlab_file(path_, title);
}

void Output::write(std::string_view text, Durability durability) const {
    write([&](const Sink &to) { to(text); }, durability);
}

void Output::write(const Pieces &text, Durability durability) const {
    if (descriptor_ >= 0)
        write_pieces(descriptor_, text, name_);
    else
        write_file(path_, text, name_, durability);
}

}  // namespace mtranslate
