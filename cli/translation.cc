/* Running the library and watching for its errors. The only place where the tool looks inside the
 * library: at its record of an error, and at the files that it opens. */
#include "cli/translation.h"

#include <sstream>
#include <vector>

#include "cli/excerpt.h"
#include "cli/source_error.h"
#include "diagnose/messages.h"
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
                                   const Options &wanted) {
    std::vector<HostValue> options;
    const auto add = [&](const char *name, HostValue value) {
        options.push_back(values.equation(values.name(name), value));
    };
    if (!source.directories.empty()) options.push_back(search_list(values, source.directories));
    if (wanted.without_translator) add("AddTranslator", values.boolean(false));
    if (wanted.language != "classic") {
        add("Language", values.string(wanted.language));
        add("KeepGoing", values.boolean(true));
    }
    return options;
}

/* What the library says about the sources of the run that is going on. */
Translation *translation_under_way;
const Source *source_under_way;

void note_message(const Message *message) {
    const bool is_own = !message->file || message->file == source_under_way->argument;
    const MessageRow &row = MessageTable[message->id];
    std::ostringstream line;
    line << (is_own ? source_under_way->shown_name : message->file) << ':' << message->line << ':'
         << message->column << ": " << severity_name(row.severity) << ": " << message->text << " ["
         << row.code << ']';
    translation_under_way->messages += printable(line.str()) + '\n';
    if (is_failure(message->id)) translation_under_way->code = ExitCode::BadSource;
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
    FileWatch(FilesRead *files, Translation *translation, const Source *source) {
        files_read = files;
        translation_under_way = translation;
        source_under_way = source;
        SourceObserver = note_file;
        Listener = note_message;
    }
    ~FileWatch() {
        SourceObserver = nullptr;
        Listener = nullptr;
    }
    FileWatch(const FileWatch &) = delete;
    FileWatch &operator=(const FileWatch &) = delete;
};

}  // namespace

Translation translate(const Source &source, const Options &wanted) {
    StandInHost host;
    const auto options = run_options(host.values(), source, wanted);
    Translation translation{ExitCode::Done, std::nullopt, "", source.files};
    const FileWatch watch(&translation.files_read, &translation, &source);
    try {
        translation.text = host.translate(source.mode, source.argument, options).value();
    } catch (const HostError &thrown) {
        const RaisedError error = error_behind(thrown);
        translation.code = exit_code_of(error);
        translation.messages += describe(error, source);
    }
    return translation;
}

}  // namespace mtranslate
