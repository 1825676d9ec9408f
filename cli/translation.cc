/* Running the library and watching for its errors. The only place where the tool looks inside the
 * library: at its record of an error, and at the files that it opens. */
#include "cli/translation.h"

#include <new>
#include <vector>

#include "cli/file_index.h"
#include "cli/messages.h"
#include "cli/rules_host.h"
#include "cli/source_error.h"
#include "host/stand_in_host.h"
#include "lexer/source_files.h"
#include "lower/classes/class_folders.h"
#include "lower/program.h"
#include "run/last_error.h"
#include "run/run_end.h"
#include "syntax/print_tree.h"

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
    const bool is_alone = wanted.without_translator || wanted.dumps_tree;
    if (is_alone) add("AddTranslator", values.boolean(false));
    if (wanted.language != "classic") {
        add("Language", values.string(wanted.language));
        add("KeepGoing", values.boolean(true));
        add("Display", values.boolean(wanted.rules->find_form("display") != nullptr));
    }
    return options;
}

/* What is noted of the run that is going on. */
MessageCollection *messages_noted;

void note_message(const Message *message) { messages_noted->add(*message); }

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

/* What is known of the files of a batch, or null. */
const FileIndex *index_in_use;

/* A function stays a call; the statements of a script belong in its place. */
FileFinding find_in_index(const char *caller, const char *name, const char **path) {
    const IndexedFile *file = index_in_use->find(caller, name);
    if (!file) return NOT_FOUND;
    *path = file->path.c_str();
    return file->is_script() ? FOUND_HERE : FOUND_ELSEWHERE;
}

const char *find_method_in_index(const char *class_name, const char *method) {
    const IndexedFile *file = index_in_use->find_method(class_name, method);
    return file ? file->path.c_str() : nullptr;
}

/* What has been said so far, and whether something is left untranslated. */
void finish(Translation &translation, const MessageCollection &messages) {
    translation.diagnostics = messages.diagnostics();
    translation.ignored = messages.ignored();
    if (has_failure(count_severities(translation.diagnostics)))
        translation.code = ExitCode::BadSource;
}

/* Where the tree of the source goes, with what has been said about it so far. */
Translation *tree_wanted;

void note_tree_text(const char *text) {
    tree_wanted->text = std::string(text) + '\n';
    finish(*tree_wanted, *messages_noted);
}

void note_tree(const Node *tree) { note_tree_text(print_tree(NewLongString(), tree)); }

/* What is known of values shows when all has been translated. */
void note_values(const SourceFile *file) {
    note_tree_text(print_tree_of_values(NewLongString(), file->tree));
}

/* Has the library's messages, and the files that it opens, noted for as long as this lives. */
class RunWatch {
public:
    RunWatch(FilesRead *files, MessageCollection *messages) {
        files_read = files;
        messages_noted = messages;
        SourceObserver = note_file;
        Listener = note_message;
    }
    ~RunWatch() {
        SourceObserver = nullptr;
        Listener = nullptr;
        OnTree = nullptr;
        OnProgram = nullptr;
    }
    static void show_tree_in(Translation *translation, bool has_values) {
        tree_wanted = translation;
        if (has_values) {
            OnProgram = note_values;
        } else {
            OnTree = note_tree;
        }
    }
    RunWatch(const RunWatch &) = delete;
    RunWatch &operator=(const RunWatch &) = delete;
};

/* The error that has left the run is the last thing to tell. */
void finish(Translation &translation, const MessageCollection &messages, const Source &source,
            const HostError &thrown) {
    const RaisedError error = error_behind(thrown);
    if (error.message == OUT_OF_MEMORY) throw std::bad_alloc();
    finish(translation, messages);
    translation.text.reset();
    translation.code = exit_code_of(error);
    const Diagnostics raised = diagnostics_of(error, source);
    translation.diagnostics.insert(translation.diagnostics.end(), raised.begin(), raised.end());
}

void run(StandInHost &host, const Source &source, const Options &wanted,
         const MessageCollection &messages, Translation &translation) {
    const auto options = run_options(host.values(), source, wanted);
    try {
        const auto text = host.translate(source.mode, source.argument, options);
        if (!wanted.dumps_any()) {
            translation.text = text.value();
            finish(translation, messages);
        }
        const bool has_failed = translation.code != ExitCode::Done;
        if (has_failed && wanted.is_strict) translation.text.reset();
    } catch (const HostError &thrown) {
        finish(translation, messages, source, thrown);
    }
}

}  // namespace

Translation translate(const Source &source, const Options &wanted, const FileIndex *index) {
    StandInHost host;
    RuleAnswers answers(*wanted.rules);
    answers.answer_in(host);
    Translation translation{ExitCode::Done, std::nullopt, {}, 0, source.files};
    translation.files_read.insert(translation.files_read.end(), wanted.configuration_files.begin(),
                                  wanted.configuration_files.end());
    MessageCollection messages(source, wanted.message_policy);
    index_in_use = index;
    FindFile = index ? find_in_index : nullptr;
    FindMethod = index ? find_method_in_index : nullptr;
    const RunWatch watch(&translation.files_read, &messages);
    std::optional<StatisticsWatch> statistics;
    if (wanted.wants_statistics()) statistics.emplace(index, wanted.wants_map());
    if (wanted.dumps_any()) watch.show_tree_in(&translation, wanted.dumps_values);
    run(host, source, wanted, messages, translation);
    translation.rules_used = answers.used();
    translation.unanswered = answers.unanswered();
    if (statistics) translation.facts = statistics->facts();
    return translation;
}

}  // namespace mtranslate
