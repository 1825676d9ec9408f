/* A command, a file, or what can be read only once. */
#include "cli/run/open_source.h"

#include <unistd.h>

#include <cerrno>

namespace mtranslate {

namespace {

/* A mistyped directory would leave its functions untranslated without a word. */
void check_directories(const std::vector<std::string> &directories) {
    for (const std::string &directory : directories) {
        struct stat status;
        const bool exists = stat(directory.c_str(), &status) == 0;
        if (exists && S_ISDIR(status.st_mode)) continue;
        if (exists) errno = ENOTDIR;
        fail("cannot search '" + directory + "'");
    }
}

struct stat status_of(int descriptor, const std::string &name) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) fail("cannot read " + name);
    return status;
}

/* Standard input, a pipe or a device: copied, as the library opens its source by name. It has no
 * directory of its own to search, so the current one stands in. */
void copy_source(Source &source, int from, const std::string &name) {
    source.copy = spool(from, name);
    source.argument = path_of(source.copy);
    if (source.directories.empty()) source.directories = {"."};
}

void open_stdin(Source &source) {
    const struct stat status = status_of(STDIN_FILENO, "standard input");
    source.shown_name = "<stdin>";
    source.files = {{source.shown_name, status.st_dev, status.st_ino}};
    copy_source(source, STDIN_FILENO, "standard input");
}

void open_file(Source &source, const std::string &path) {
    const Descriptor file = open_to_read(path);
    const struct stat status = status_of(file.get(), "'" + path + "'");
    check_size(status, path);
    source.shown_name = source.argument = path;
    source.files = {{path, status.st_dev, status.st_ino}};
    if (!S_ISREG(status.st_mode)) copy_source(source, file.get(), "'" + path + "'");
}

}  // namespace

Source open_source(const Options &options) {
    check_directories(options.directories);
    const std::string command = options.command.value_or("");
    Source source{"command", command, "<command>", options.directories, {}, Descriptor()};
    if (!options.file) return source;
    source.mode = "file";
    if (*options.file == "-")
        open_stdin(source);
    else
        open_file(source, *options.file);
    return source;
}

}  // namespace mtranslate
