/* Reading, writing and spooling files, with errors in the tool's own words. */
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace mtranslate {

/* A file that cannot be used; what() names it and says why. */
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/* The bytes of the file, or of standard input for the path "-". Throws FileError. */
std::string read_file(const std::string &path);

/* Writes text to the file, or to standard output where there is no path or the path is "-". A
 * reader of a pipe that has left early is no error. Throws FileError. */
void write_file(const std::optional<std::string> &path, std::string_view text);

/* A file with the given bytes that lasts as long as the object. Throws FileError. */
class TemporaryFile {
public:
    explicit TemporaryFile(std::string_view text);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const std::string &path() const { return path_; }

private:
    TemporaryFile();

    std::string path_;
};

}  // namespace mtranslate
