/* Running the library, with the tool's answers to what it asks. */
#include "cli/run/translation.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "cli/files/file_index.h"
#include "cli/files/files.h"
#include "cli/messages/messages.h"
#include "cli/messages/source_error.h"
#include "cli/report/facts/details.h"
#include "cli/rules/rules_host.h"

namespace mtranslate {

namespace {

using Request = mTranslateProgramRequest;
using Result = std::shared_ptr<const mTranslateProgramResult>;

/* Throws std::bad_alloc where the memory is exhausted. */
Result run(const Request &request) {
    Result result(mTranslateProgram(&request), mTranslateProgramRelease);
    if (result->status == MTRANSLATE_PROGRAM_NO_MEMORY) throw std::bad_alloc();
    return result;
}

/* A method as a function of the request, with its object as their context. What it throws waits for
 * the end of the run; the answer is 0 then. */
template <auto METHOD>
struct Answer;
template <class Run, class Type, class... Arguments, Type (Run::*METHOD)(Arguments...)>
struct Answer<METHOD> {
    static Type give(void *context, Arguments... arguments) {
        Run *run = static_cast<Run *>(context);
        try {
            return (run->*METHOD)(arguments...);
        } catch (...) {
            run->trouble = std::current_exception();
            return Type();
        }
    }
};

/* What the library asks while it translates a source. */
class Answers {
public:
    /* All of it lives as long as this. index, known: null for none. */
    Answers(const Source &source, const Options &wanted, const FileIndex *index,
            KnownResults *known, RuleAnswers &rules)
        : source_(source), wanted_(wanted), index_(index), known_(known), rules_(rules) {}
    Answers(const Answers &) = delete;
    Answers &operator=(const Answers &) = delete;

    void answer(Request &request) {
        request.context = this;
        request.allow = Answer<&Answers::allow>::give;
        if (rules_.may_answer()) {
            request.answer = Answer<&Answers::text>::give;
            request.result_kind = Answer<&Answers::kind_of_result>::give;
        }
        if (index_) request.find = Answer<&Answers::find>::give;
        if (!known_) return;
        request.remember = Answer<&Answers::remember>::give;
        request.recall = Answer<&Answers::recall>::give;
    }

    std::exception_ptr trouble;
    std::optional<FileError> refusal; /* of a file; it need not have been opened after all */

private:
    const char *text(const mTranslateProgramQuestion *question) {
        text_ = rules_.answer(*question);
        return text_ ? text_->c_str() : nullptr;
    }

    std::int32_t kind_of_result(const char *name) { return rules_.kind(name); }

    std::int32_t allow(const mTranslateProgramFile *file) {
        try {
            check(*file);
            return 1;
        } catch (const FileError &error) {
            refusal = error;
            return 0;
        }
    }

    /* A device may never end, nor what the kernel tells, and a pipe never begin; classic has always
     * read pipes. */
    void check(const mTranslateProgramFile &file) const {
        const bool reads_pipes = !wanted_.is_untrusted && wanted_.language == "classic";
        if (file.kind == MTRANSLATE_IS_DEVICE) refuse(file.path, "a device");
        if (file.kind == MTRANSLATE_IS_PIPE && !reads_pipes) refuse(file.path, "a pipe");
        if (file.path != source_.argument && is_of_kernel(file.path))
            refuse(file.path, "it lies in a file system of the kernel");
        int reason = 0;
        if (wanted_.is_untrusted && !is_inside(file.path, reason))
            refuse(file.path, reason ? std::strerror(reason) : "it leads out of what is given");
        check_size(file.bytes, file.path);
    }

    [[noreturn]] static void refuse(const char *path, const char *reason) {
        throw FileError(std::string("cannot read '") + path + "': " + reason);
    }

    bool is_inside(const char *path, int &reason) const {
        if (source_.copy && path == source_.argument) return true;
        const auto holds = [&](const std::string &folder) {
            return is_within(folder, path, &reason);
        };
        return std::ranges::any_of(source_.directories, holds) ||
               std::ranges::any_of(wanted_.given_folders, holds);
    }

    const char *find(const mTranslateProgramSearch *search) {
        const bool is_method = search->kind == MTRANSLATE_SEARCH_METHOD;
        text_ = is_method ? index_->find_method(search->class_name, search->name)
                          : index_->find(search->caller, search->name);
        return text_ ? text_->c_str() : nullptr;
    }

    void remember(const char *path, const char *results) { (*known_)[path] = results; }

    const char *recall(const char *path) {
        const auto found = known_->find(path);
        return found == known_->end() ? nullptr : found->second.c_str();
    }

    const Source &source_;
    const Options &wanted_;
    const FileIndex *index_;
    KnownResults *known_;
    RuleAnswers &rules_;
    std::optional<std::string> text_; /* the last answer, until the library has copied it */
};

std::uint32_t flags_of(const Options &wanted) {
    const bool dumps_tree = wanted.dumps_tree && !wanted.dumps_values;
    const bool displays = wanted.language != "classic" && wanted.rules->find_form("display");
    std::uint32_t flags = MTRANSLATE_TEXTS | MTRANSLATE_COUNTS_ON;
    const auto add = [&](bool is_wanted, std::uint32_t flag) { flags |= is_wanted ? flag : 0; };
    add(wanted.without_translator || wanted.dumps_tree, MTRANSLATE_WITHOUT_TRANSLATOR);
    add(displays, MTRANSLATE_DISPLAYS);
    add(dumps_tree, MTRANSLATE_TREE | MTRANSLATE_ONLY_READ);
    add(wanted.dumps_values, MTRANSLATE_VALUES);
    add(wanted.wants_statistics(), MTRANSLATE_OUTLINE);
    add(wanted.wants_map(), MTRANSLATE_PIECES);
    add(wanted.is_library_apart, MTRANSLATE_LIBRARY_APART);
    return flags;
}

/* index: null for none. folders: gets what the request has to keep. */
Request request_for(const Source &source, const Options &wanted, const FileIndex *index,
                    std::vector<const char *> &folders) {
    for (const std::string &folder : source.directories) folders.push_back(folder.c_str());
    Request request{};
    request.size = sizeof request;
    request.flags = flags_of(wanted);
    const bool is_file = std::string_view(source.mode) == "file";
    (is_file ? request.file : request.command) = source.argument.c_str();
    request.language = wanted.language.c_str();
    request.folders = folders.empty() ? nullptr : folders.data();
    request.folder_count = folders.size();
    if (index && !index->has_methods()) request.flags |= MTRANSLATE_WITHOUT_METHODS;
    return request;
}

Result run(const Source &source, const Options &wanted, const FileIndex *index, KnownResults *known,
           RuleAnswers &rules) {
    std::vector<const char *> folders;
    Request request = request_for(source, wanted, index, folders);
    Answers answers(source, wanted, index, known, rules);
    answers.answer(request);
    Result result = run(request);
    if (answers.trouble) std::rethrow_exception(answers.trouble);
    if (answers.refusal && result->status == MTRANSLATE_PROGRAM_UNREADABLE)
        throw FileError(*answers.refusal);
    return result;
}

void add_files_read(const mTranslateProgramResult &result, FilesRead &files) {
    for (std::size_t i = 0; i < result.file_count; ++i) {
        const mTranslateProgramFile &file = *result.files[i];
        files.push_back({file.path, file.device, file.inode});
    }
}

RaisedError error_of(const mTranslateProgramResult &result) {
    RaisedError error;
    error.message = result.failure;
    error.is_unread = result.status == MTRANSLATE_PROGRAM_UNREADABLE;
    if (!result.end) return error;
    if (result.end->path) error.file = result.end->path;
    error.line = result.end->line;
    error.offset = result.end->offset;
    return error;
}

/* The error that has ended the run is the last thing to tell. */
void add_failure(const mTranslateProgramResult &result, const Source &source,
                 Translation &translation) {
    const RaisedError error = error_of(result);
    translation.code = exit_code_of(error);
    const Diagnostics raised = diagnostics_of(error, source);
    translation.diagnostics.insert(translation.diagnostics.end(), raised.begin(), raised.end());
}

/* The translation itself is not copied. */
void take_text(const Result &result, const Options &wanted, Translation &translation) {
    if (wanted.dumps_any()) {
        const char *dump = wanted.dumps_values ? result->values : result->tree;
        const auto text = std::make_shared<const std::string>(std::string(dump) + '\n');
        translation.text = *text;
        translation.text_owner = text;
    } else {
        translation.text.emplace(result->text, result->text_length);
        translation.text_owner = result;
    }
}

/* Of a run that is done. */
void add_text(const Result &result, const Options &wanted, Translation &translation) {
    const bool has_failed = has_failure(count_severities(translation.diagnostics));
    if (has_failed) translation.code = ExitCode::BadSource;
    if (!has_failed || !wanted.is_strict) take_text(result, wanted, translation);
}

}  // namespace

Translation translate(const Source &source, const Options &wanted, const FileIndex *index,
                      KnownResults *known) {
    RuleAnswers rules(*wanted.rules, wanted.mode == Mode::RuleTemplate);
    const Result result = run(source, wanted, index, known, rules);
    Translation translation{ExitCode::Done, std::nullopt, {}, {}, 0, source.files};
    translation.files_read.insert(translation.files_read.end(), wanted.configuration_files.begin(),
                                  wanted.configuration_files.end());
    add_files_read(*result, translation.files_read);
    const RunFiles files(*result, source);
    auto messages = messages_of(*result, files, wanted.message_policy);
    translation.diagnostics = std::move(messages.diagnostics);
    translation.ignored = messages.ignored;
    if (result->status == MTRANSLATE_PROGRAM_DONE)
        add_text(result, wanted, translation);
    else
        add_failure(*result, source, translation);
    if (wanted.wants_statistics()) translation.facts = facts_of(*result, files, index);
    if (wanted.wants_map()) translation.map = line_map_of(*result, files);
    translation.calls_library = result->needs_library != 0;
    translation.rules_used = rules.used();
    translation.unanswered = rules.unanswered();
    return translation;
}

std::string library_text() {
    Request request{};
    request.size = sizeof request;
    request.command = "";
    request.flags = MTRANSLATE_WHOLE_LIBRARY;
    const Result result = run(request);
    return {result->text, result->text_length};
}

FileResult take_result(Translation &translation, bool report_shows_text) {
    FileResult result;
    result.code = translation.code;
    result.diagnostics = std::move(translation.diagnostics);
    result.ignored = translation.ignored;
    result.calls_library = translation.calls_library;
    result.files_read = names_of(translation.files_read);
    result.rules_used = std::move(translation.rules_used);
    result.facts = std::move(translation.facts);
    std::optional<std::string> shown;
    if (report_shows_text && translation.text) shown.emplace(*translation.text);
    result.details = packed({translation.map, shown});
    return result;
}

}  // namespace mtranslate
