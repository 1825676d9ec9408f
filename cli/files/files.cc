/* Files by the system's own calls, whose errno tells why something failed. */
#include "cli/files/files.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

constexpr int MOST_LINKS = 40;  // the system follows no more

/* More than anyone has written by hand; an endless device ends here. */
constexpr std::size_t LARGEST_SOURCE = std::size_t{256} << 20;

[[noreturn]] void refuse_size(const std::string &name) {
    throw FileError("cannot read " + name + ": larger than 256 MiB");
}

/* The number of bytes read, 0 at the end; -1 for an error. */
ssize_t read_some(int descriptor, char *to, std::size_t capacity) {
    ssize_t count = 0;
    do count = read(descriptor, to, capacity);
    while (count < 0 && errno == EINTR);
    return count;
}

/* None, with errno, where that fails. */
std::optional<std::string> read_text(int descriptor) {
    std::string text;
    std::array<char, 65536> block;
    for (ssize_t count = 0; (count = read_some(descriptor, block.data(), block.size())) != 0;) {
        errno = count < 0 ? errno : EFBIG;
        if (count < 0 || text.size() > LARGEST_SOURCE) return std::nullopt;
        text.append(block.data(), static_cast<std::size_t>(count));
    }
    return text;
}

constexpr int READ_ONLY = O_RDONLY | O_CLOEXEC | O_NOCTTY;

}  // namespace

bool is_of_kernel(const std::string &path) {
    constexpr auto KINDS = std::to_array<std::uint32_t>(
        {PROC_SUPER_MAGIC, SYSFS_MAGIC, DEVPTS_SUPER_MAGIC, CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC,
         DEBUGFS_MAGIC, TRACEFS_MAGIC, SECURITYFS_MAGIC});
    struct statfs system;
    if (statfs(path.c_str(), &system) != 0) return false;
    return std::ranges::find(KINDS, static_cast<std::uint32_t>(system.f_type)) != KINDS.end();
}

bool means_no_file(int reason) {
    return reason == ENOENT || reason == ENOTDIR || reason == ENAMETOOLONG;
}

void fail(const std::string &attempt) { throw FileError(attempt + ": " + std::strerror(errno)); }

Descriptor::Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept {
    std::swap(number_, other.number_);
    return *this;
}

Descriptor::~Descriptor() {
    const int reason = errno;
    if (number_ >= 0) close(number_);
    errno = reason;
}

std::vector<std::string> names_of(const FilesRead &files) {
    std::vector<std::string> names;
    std::unordered_set<std::string_view> known;
    for (const FileRead &file : files) {
        const bool has_name = file.path != "<stdin>" && !file.path.starts_with("/proc/self/fd/");
        if (has_name && known.insert(file.path).second) names.push_back(file.path);
    }
    return names;
}

void check_size(const struct stat &status, const std::string &path) {
    check_size(static_cast<std::uint64_t>(status.st_size), path);
}

void check_size(std::uint64_t bytes, const std::string &path) {
    if (bytes > LARGEST_SOURCE) refuse_size("'" + path + "'");
}

Descriptor open_to_read(const std::string &path) {
    Descriptor file(open(path.c_str(), READ_ONLY));
    if (!file) fail("cannot read '" + path + "'");
    return file;
}

Descriptor open_regular_file(const std::string &path) {
    const auto check = [&](const struct stat &status) {
        if (!S_ISREG(status.st_mode))
            throw FileError("cannot read '" + path + "': not a regular file");
    };
    struct stat status;
    if (stat(path.c_str(), &status) != 0) fail("cannot read '" + path + "'");
    check(status);  // to open a device may do something
    Descriptor file(open(path.c_str(), READ_ONLY | O_NONBLOCK));
    if (!file || fstat(file.get(), &status) != 0) fail("cannot read '" + path + "'");
    check(status);
    return file;
}

std::string behind_links(std::string path) {
    struct stat status;
    const auto is_link = [&] {
        return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    };
    for (int links = 0; links < MOST_LINKS && is_link(); ++links) {
        std::error_code error;
        const fs::path to = fs::read_symlink(path, error);
        if (error) break;  // who follows the link then finds out why
        path = fs::path(path).parent_path() / to;
    }
    return path;
}

bool is_within(const fs::path &folder, const fs::path &path, int *reason) {
    std::error_code error;
    const auto place_of = [&](const fs::path &named) {
        const fs::path whole = error ? fs::path() : fs::absolute(named, error);
        return error ? fs::path() : fs::weakly_canonical(whole, error);
    };
    const fs::path from = place_of(folder);
    const fs::path way = place_of(behind_links(path)).lexically_relative(from);
    if (error && reason) *reason = error.value();
    return !error && !way.empty() && *way.begin() != "..";
}

Descriptor spool(int from, const std::string &name) {
    Descriptor copy(memfd_create("mtranslate", MFD_CLOEXEC));
    if (!copy) fail("cannot copy " + name);
    std::array<char, 65536> block;
    std::size_t size = 0;
    for (ssize_t count = 0; (count = read_some(from, block.data(), block.size())) != 0;) {
        if (count < 0) fail("cannot read " + name);
        size += static_cast<std::size_t>(count);
        if (size > LARGEST_SOURCE) refuse_size(name);
        write_all(copy.get(), {block.data(), static_cast<std::size_t>(count)}, "a copy of " + name);
    }
    return copy;
}

std::string path_of(const Descriptor &file) {
    return "/proc/self/fd/" + std::to_string(file.get());
}

std::string text_of(const Descriptor &file, const std::string &name) {
    if (lseek(file.get(), 0, SEEK_SET) != 0) fail("cannot read " + name);
    auto text = read_text(file.get());
    if (!text) fail("cannot read " + name);
    return std::move(*text);
}

std::optional<std::string> read_regular_file(const std::string &path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const Descriptor file(open(path.c_str(), READ_ONLY | O_NONBLOCK));
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return read_text(file.get());
}

std::optional<std::string> read_file_if_there(const std::string &path) {
    struct stat status;
    const bool is_there = stat(path.c_str(), &status) == 0;
    if (!is_there && !means_no_file(errno)) fail("cannot read '" + path + "'");
    if (!is_there || !S_ISREG(status.st_mode)) return std::nullopt;
    check_size(status, path);
    auto text = read_text(open_regular_file(path).get());
    if (!text) fail("cannot read '" + path + "'");
    return text;
}

std::string read_named_file(const std::string &path) {
    const std::string name = "'" + path + "'";
    return text_of(spool(open_to_read(path).get(), name), name);
}

void write_all(int descriptor, std::string_view text, const std::string &name) {
    while (!text.empty()) {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EPIPE) return;
        if (count < 0 && errno != EINTR) fail("cannot write " + name);
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
}

}  // namespace mtranslate
