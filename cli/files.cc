/* Files by the C library, whose errno tells why something failed. */
#include "cli/files.h"

#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

namespace mtranslate {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

/* attempt is what the C library has just failed to do. */
[[noreturn]] void fail(const std::string &attempt) {
    throw FileError(attempt + ": " + std::strerror(errno));
}

std::string read_all(std::FILE *file, const std::string &name) {
    std::string text;
    std::array<char, 16384> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file))
        text.append(block.data(), count);
    if (std::ferror(file)) fail("cannot read " + name);
    return text;
}

void write_all(std::FILE *file, std::string_view text, const std::string &name) {
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if ((!written || std::fflush(file) != 0) && errno != EPIPE) fail("cannot write " + name);
}

}  // namespace

std::string read_file(const std::string &path) {
    if (path == "-") return read_all(stdin, "standard input");
    const std::string name = "'" + path + "'";
    const File file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) fail("cannot read " + name);
    return read_all(file.get(), name);
}

void write_file(const std::optional<std::string> &path, std::string_view text) {
    if (!path || *path == "-") return write_all(stdout, text, "standard output");
    const std::string name = "'" + *path + "'";
    const File file(std::fopen(path->c_str(), "wb"), std::fclose);
    if (!file) fail("cannot write " + name);
    write_all(file.get(), text, name);
}

TemporaryFile::TemporaryFile()
    : path_(std::filesystem::temp_directory_path() / "mtranslate-XXXXXX") {
    const int descriptor = mkstemp(path_.data());
    if (descriptor < 0) fail("cannot make a temporary file");
    close(descriptor);
}

// The file exists once the first constructor is done, and goes even when the writing fails.
TemporaryFile::TemporaryFile(std::string_view text) : TemporaryFile() { write_file(path_, text); }

TemporaryFile::~TemporaryFile() { unlink(path_.c_str()); }

}  // namespace mtranslate
