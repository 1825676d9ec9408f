/* Finding out what the source is. */
#include "cli/source.h"

#include <filesystem>
#include <utility>

namespace mtranslate {

namespace {

/* Standard input, a pipe or a device: spooled, as the library opens its source by name. It has no
 * directory of its own to search, so the current one stands in. */
void spool(Source &source) {
    source.spool = std::make_unique<TemporaryFile>(source.text);
    source.argument = source.spool->path();
    if (source.directories.empty()) source.directories = {"."};
}

Source open_file(const std::string &path, const std::vector<std::string> &directories) {
    const std::string shown_name = path == "-" ? "<stdin>" : path;
    Source source{"file", path, shown_name, read_file(path), directories, nullptr};
    if (path == "-" || !std::filesystem::is_regular_file(path)) spool(source);
    return source;
}

}  // namespace

Source open_source(const Options &options) {
    if (options.file) return open_file(*options.file, options.directories);
    const std::string &command = options.command.value();
    return {"command", command, "<command>", command, options.directories, nullptr};
}

}  // namespace mtranslate
