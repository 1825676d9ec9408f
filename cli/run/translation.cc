/* Running the library and watching for its errors. The only place where the tool looks inside the
 * library: at its record of an error, and at the files that it opens. */
#include "cli/run/translation.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <new>
#include <vector>

#include "cli/files/file_index.h"
#include "cli/files/files.h"
#include "cli/messages/messages.h"
#include "cli/messages/source_error.h"
#include "cli/rules/rules_host.h"
#include "cli/support/library.h"
#include "host/stand_in_host.h"

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

/* The library's record of the error that has just been thrown, with its value in the message. */
RaisedError error_behind(const HostError &thrown) {
    const bool has_place = LastError.line > 0;
    RaisedError error{has_place ? LastError.message : thrown.what(), std::nullopt, LastError.line,
                      static_cast<std::size_t>(LastError.offset)};
    if (LastError.file) error.file = LastError.file;
    return error;
}

/* What has been said so far, and whether something is left untranslated. */
void finish(Translation &translation, const MessageCollection &messages) {
    translation.diagnostics = messages.diagnostics();
    translation.ignored = messages.ignored();
    if (has_failure(count_severities(translation.diagnostics)))
        translation.code = ExitCode::BadSource;
}

/* A method as a function of the library's observers, with its object as their context. */
template <auto METHOD>
struct Observer;
template <class Watch, class Result, class... Arguments, Result (Watch::*METHOD)(Arguments...)>
struct Observer<METHOD> {
    static Result call(void *watch, Arguments... arguments) {
        return (static_cast<Watch *>(watch)->*METHOD)(arguments...);
    }
};

/* What the library tells of a run, and asks, while it goes on. */
class RunWatch {
public:
    /* All of it lives as long as this. index: null for none. */
    RunWatch(const Source &source, const Options &wanted, const FileIndex *index,
             const RuleAnswers &answers, MessageCollection &messages, Translation &translation)
        : source_(source),
          wanted_(wanted),
          index_(index),
          answers_(answers),
          messages_(messages),
          translation_(translation) {}
    RunWatch(const RunWatch &) = delete;
    RunWatch &operator=(const RunWatch &) = delete;

    /* For the next run. */
    Observers observers() {
        Observers observers{};
        observers.context = this;
        observers.opens = Observer<&RunWatch::note_file>::call;
        observers.message = Observer<&RunWatch::note_message>::call;
        observers.result_kind = Observer<&RunWatch::kind_of_result>::call;
        observers.program = Observer<&RunWatch::note_program>::call;
        if (wanted_.dumps_tree && !wanted_.dumps_values)
            observers.tree = Observer<&RunWatch::show_tree>::call;
        if (wanted_.wants_statistics()) observers.piece = Observer<&RunWatch::note_piece>::call;
        if (wanted_.wants_map()) observers.lines = Observer<&RunWatch::note_lines>::call;
        if (wanted_.is_library_apart)
            observers.library_call = Observer<&RunWatch::note_library>::call;
        if (index_) {
            observers.find_file = Observer<&RunWatch::find_file>::call;
            observers.find_method = Observer<&RunWatch::find_method>::call;
        }
        return observers;
    }

private:
    /* A device may never end, and a pipe never begin; classic has always read pipes. */
    void note_file(const char *path, const struct stat *status) {
        if (S_ISCHR(status->st_mode) || S_ISBLK(status->st_mode)) refuse(path, "a device");
        if (S_ISFIFO(status->st_mode) && (wanted_.is_untrusted || wanted_.language != "classic"))
            refuse(path, "a pipe");
        if (wanted_.is_untrusted && !is_inside(path)) refuse(path, "it leads out of what is given");
        check_size(*status, path);
        translation_.files_read.push_back({path, status->st_dev, status->st_ino});
    }

    [[noreturn]] static void refuse(const char *path, const char *reason) {
        throw FileError(std::string("cannot read '") + path + "': " + reason);
    }

    bool is_inside(const char *path) const {
        if (source_.copy && path == source_.argument) return true;
        const auto holds = [=](const std::string &folder) { return is_within(folder, path); };
        return std::ranges::any_of(source_.directories, holds) ||
               std::ranges::any_of(wanted_.given_folders, holds);
    }

    void note_message(const Message *message) { messages_.add(*message); }

    void show_text(const char *text) {
        translation_.text = std::string(text) + '\n';
        finish(translation_, messages_);
    }

    void show_tree(const Node *tree) { show_text(print_tree(NewLongString(), tree)); }

    /* What is known of values shows when all has been translated. */
    void note_program(const SourceFile *file) {
        if (wanted_.dumps_values) show_text(print_tree_of_values(NewLongString(), file->tree));
        if (wanted_.wants_statistics()) translation_.facts = facts_of(*file, pieces_, index_);
        if (wanted_.wants_map()) translation_.facts.map = lines_.map();
    }

    void note_piece(const Node *node, PieceEnd end, const char *target) {
        pieces_.note(node, end, target);
    }

    void note_lines(const Origin *origin, std::uint32_t first, std::uint32_t count) {
        lines_.note(origin, first, count);
    }

    void note_library() { translation_.calls_library = true; }

    ResultKind kind_of_result(const char *name) { return answers_.kind(name); }

    /* A function stays a call; the statements of a script belong in its place. */
    FileFinding find_file(const char *caller, const char *name, const char **path) {
        const IndexedFile *file = index_->find(caller, name);
        if (!file) return NOT_FOUND;
        *path = file->path.c_str();
        const auto [script, is_new] = are_scripts_.try_emplace(file);
        if (is_new) script->second = is_script(*file);
        return script->second ? FOUND_HERE : FOUND_ELSEWHERE;
    }

    /* Also where it cannot or may not be read: whoever reads it then finds out why. */
    bool is_script(const IndexedFile &file) const {
        if (wanted_.is_untrusted && !is_inside(file.path.c_str())) return true;
        std::error_code error;
        if (!std::filesystem::is_regular_file(file.path, error))
            return static_cast<bool>(error);  // a pipe gives its text only once
        const auto text = read_regular_file(file.path);
        return !text || is_script_text(file.path.c_str(), text->data(),
                                       static_cast<std::uint32_t>(text->size()));
    }

    const char *find_method(const char *class_name, const char *method) {
        const IndexedFile *file = index_->find_method(class_name, method);
        return file ? file->path.c_str() : nullptr;
    }

    const Source &source_;
    const Options &wanted_;
    const FileIndex *index_;
    const RuleAnswers &answers_;
    MessageCollection &messages_;
    Translation &translation_;
    std::map<const IndexedFile *, bool> are_scripts_; /* of those that are called */
    PieceNotes pieces_;
    LineNotes lines_;
};

/* The error that has left the run is the last thing to tell. */
void finish(Translation &translation, const MessageCollection &messages, const Source &source,
            const HostError &thrown) {
    const RaisedError error = error_behind(thrown);
    if (error.message == OUT_OF_MEMORY.message) throw std::bad_alloc();
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
    RuleAnswers answers(*wanted.rules, wanted.mode == Mode::RuleTemplate);
    answers.answer_in(host);
    Translation translation{ExitCode::Done, std::nullopt, {}, 0, source.files};
    translation.files_read.insert(translation.files_read.end(), wanted.configuration_files.begin(),
                                  wanted.configuration_files.end());
    MessageCollection messages(source, wanted.message_policy);
    RunWatch watch(source, wanted, index, answers, messages, translation);
    observe_next_run(watch.observers());
    run(host, source, wanted, messages, translation);
    translation.rules_used = answers.used();
    translation.unanswered = answers.unanswered();
    return translation;
}

std::string library_text() {
    StandInHost host;
    auto &values = host.values();
    Observers observers{};
    observers.holds_library = true;
    observe_next_run(observers);
    const std::vector language{values.equation(values.name("Language"), values.string("matlab"))};
    return host.translate("command", "", language).value_or("");
}

FileResult result_of(const Translation &translation) {
    FileResult result;
    result.code = translation.code;
    result.diagnostics = translation.diagnostics;
    result.ignored = translation.ignored;
    result.calls_library = translation.calls_library;
    result.files_read = names_of(translation.files_read);
    result.rules_used = translation.rules_used;
    result.facts = translation.facts;
    return result;
}

}  // namespace mtranslate
