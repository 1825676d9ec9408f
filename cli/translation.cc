/* Running the library and watching for its errors. The only place where the tool looks inside the
 * library: at its record of an error, and at the files that it opens. */
#include "cli/translation.h"

#include <utility>
#include <vector>

#include "cli/source_error.h"
#include "host/stand_in_host.h"
#include "lexer/source_files.h"
#include "run/last_error.h"

namespace mtranslate {

namespace {

/* The library tries the last directory first. */
HostValue search_list(ValueStore &values, const std::vector<std::string> &directories) {
    return values.list_of_strings({directories.rbegin(), directories.rend()});
}

std::vector<HostValue> run_options(ValueStore &values, const Source &source,
                                   bool without_translator) {
    std::vector<HostValue> options;
    if (!source.directories.empty()) options.push_back(search_list(values, source.directories));
    if (without_translator)
        options.push_back(values.equation(values.name("AddTranslator"), values.boolean(false)));
    return options;
}

/* The library's record of the error that has just been thrown, with its value in the message. */
RaisedError error_behind(const HostError &thrown) {
    const bool has_place = LastError.line > 0;
    RaisedError error{has_place ? LastError.message : thrown.what(), std::nullopt, LastError.line,
                      static_cast<std::size_t>(LastError.offset)};
    if (LastError.file) error.file = LastError.file;
    return error;
}

/* The files of the run that is going on. */
FilesRead *files_read;

/* A device may never end. */
void note_file(const char *path, const struct stat *status) {
    if (S_ISCHR(status->st_mode))
        throw FileError(std::string("cannot read '") + path + "': a device");
    check_size(*status, path);
    files_read->push_back({path, status->st_dev, status->st_ino});
}

/* Has the library note the files that it opens for as long as this lives. */
class FileWatch {
public:
    explicit FileWatch(FilesRead *files) {
        files_read = files;
        SourceObserver = note_file;
    }
    ~FileWatch() { SourceObserver = nullptr; }
    FileWatch(const FileWatch &) = delete;
    FileWatch &operator=(const FileWatch &) = delete;
};

}  // namespace

Translation translate(const Source &source, bool without_translator) {
    StandInHost host;
    const auto options = run_options(host.values(), source, without_translator);
    FilesRead files = source.files;
    const FileWatch watch(&files);
    try {
        std::string text = host.translate(source.mode, source.argument, options).value();
        return {ExitCode::Done, std::move(text), std::move(files)};
    } catch (const HostError &thrown) {
        const RaisedError error = error_behind(thrown);
        return {exit_code_of(error), describe(error, source), std::move(files)};
    }
}

}  // namespace mtranslate
