/* From inputs to outputs, by way of the workers. */
#include "cli/run/batch.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

#include "cli/config/configuration_search.h"
#include "cli/config/configured.h"
#include "cli/files/depfile.h"
#include "cli/files/difference.h"
#include "cli/files/file_index.h"
#include "cli/files/files.h"
#include "cli/files/inputs.h"
#include "cli/files/output.h"
#include "cli/files/output_folder.h"
#include "cli/messages/baseline.h"
#include "cli/report/facts/file_result.h"
#include "cli/report/report_output.h"
#include "cli/run/message_output.h"
#include "cli/run/open_source.h"
#include "cli/run/progress.h"
#include "cli/run/shown_difference.h"
#include "cli/run/translation.h"
#include "cli/run/workers.h"
#include "cli/support/paths.h"

namespace mtranslate {

namespace {

/* How the files of a batch ended. */
struct Tally {
    std::array<std::size_t, 4> states{}; /* by FileState */
    std::size_t written = 0;
    std::size_t different = 0; /* outputs that are there */
    std::size_t missing = 0;   /* those that are not */
    std::size_t ignored = 0;   /* messages that were left out */
};

class Batch {
public:
    explicit Batch(const Options &options)
        : options_(options),
          found_(find_inputs(search_in(options.paths, options))),
          index_(options.root.empty() ? std::move(found_.files)
                                      : find_inputs(search_in({options.root}, options)).files),
          inputs_(options.root.empty() ? index_.files() : found_.files),
          output_folder_(options.output_folder, options.output_limit),
          baseline_(options.baseline.empty() ? Baseline() : Baseline(options.baseline)),
          messages_(options),
          report_(options),
          progress_(inputs_.size()) {
        refuse_given_as_outputs();
        if (inputs_.empty()) throw FileError("no file *.m is found in what was given");
        if (!options.root.empty()) found_.files = place_below(options.root, inputs_);
        for (const InputFile &input : inputs_)
            configurations_.push_back(&options.configurations->of_input(input));
        if (!options.output_folder.empty()) note_equal_outputs();
        for (const Configuration *configuration :
             std::set<const Configuration *>(configurations_.begin(), configurations_.end()))
            report_.add(configuration->rules);
        library_output_ = library_output();
        if (options.mode == Mode::Translate) output_folder_.make();
    }

    ExitCode run() {
        const auto job = [this](std::size_t i) { return to_text(work_on(i)); };
        const auto report = [this](std::size_t i, const JobEnd &end) { take(i, end); };
        const Programs programs = options_.mode == Mode::Compare ? Programs::Run : Programs::NotRun;
        const Workers workers(options_.jobs, options_.limits, programs);
        const int signal = workers.run(inputs_.size(), job, report);
        progress_.clear();
        put_library();
        messages_.finish();
        if (options_.mode != Mode::Assess && !messages_.owns_standard_error())
            std::cerr << summary(signal == 0);
        report_.finish(signal != 0);
        if (signal != 0) std::raise(signal);
        if (!options_.depfile.empty()) write_depfile(options_.depfile, made_);
        return signal == 0 ? exit_code() : ExitCode::Trouble;
    }

private:
    /* Those in folders are known by their names. */
    void refuse_given_as_outputs() const {
        FilesRead given;
        for (const std::string &path : options_.paths)
            if (struct stat status; stat(path.c_str(), &status) == 0)
                given.push_back({path, status.st_dev, status.st_ino});
        for (const std::string &path : options_.other_outputs()) Output(path).refuse_sources(given);
    }

    std::string output_of(const InputFile &input) const {
        if (options_.output_folder.empty()) return "";
        return in_folder(options_.output_folder,
                         without_extension(input.relative) + options_.suffix);
    }

    /* Empty where no translation has an output, or each holds what it calls. */
    std::string library_output() const {
        if (options_.output_folder.empty() || options_.is_closure) return "";
        return in_folder(options_.output_folder, "qxrp_library" + options_.suffix);
    }

    /* Those that an earlier input has, too. All are looked at by their hashes first: a batch may
     * have millions. */
    void note_equal_outputs() {
        std::vector<std::pair<std::size_t, std::uint32_t>> hashes;
        hashes.reserve(inputs_.size());
        std::uint32_t number = 0;
        for (const InputFile &input : inputs_) {
            if (input.trouble.empty())
                hashes.emplace_back(std::hash<std::string>()(output_of(input)), number);
            ++number;
        }
        std::sort(hashes.begin(), hashes.end());
        std::map<std::string, std::size_t> first; /* of the outputs of one hash */
        for (std::size_t i = 1; i < hashes.size(); ++i) {
            if (hashes[i].first != hashes[i - 1].first) {
                first.clear();
                continue;
            }
            for (const std::uint32_t input : {hashes[i - 1].second, hashes[i].second}) {
                const auto known = first.try_emplace(output_of(inputs_[input]), input).first;
                if (known->second != input) first_with_output_[input] = known->second;
            }
        }
    }

    /* In a worker. */
    FileResult work_on(std::size_t i) const {
        FileResult result;
        try {
            translate_into(result, inputs_[i], i);
        } catch (const std::bad_alloc &) {
            throw;  // ends the worker
        } catch (const std::exception &error) {
            result.code = ExitCode::Trouble;
            result.diagnostics.push_back(trouble_with(inputs_[i].path, error.what()));
        }
        return result;
    }

    void translate_into(FileResult &result, const InputFile &input, std::size_t i) const {
        if (!input.trouble.empty()) throw FileError(input.trouble);
        const std::string output = output_of(input);
        if (const auto first = first_with_output_.find(i); first != first_with_output_.end())
            throw FileError("its output '" + output + "' is that of '" +
                            inputs_[first->second].path + "'");
        if (!output.empty() && output == library_output_)
            throw FileError("its output '" + output + "' is that of the library");
        Options &options = run_options(configurations_[i]);
        options.file = input.path;
        const Source source = open_source(options);
        Translation translation =
            options_.is_closure ? translate(source, options)
                                : translate(source, options, &index_, &known_[configurations_[i]]);
        const bool is_in_no_file = options_.mode != Mode::Translate;
        result = take_result(translation, is_in_no_file && report_shows_translations(options_));
        if (translation.text) put_text(result, *translation.text, translation.files_read, output);
    }

    /* For sources of the configuration; the file is the last one's. */
    Options &run_options(const Configuration *configuration) const {
        const auto [found, is_new] = run_options_.try_emplace(configuration);
        Options &options = found->second;
        if (is_new) {
            options = options_;
            options.is_library_apart = !options_.is_closure;
            configure_run(options, *configuration);
        }
        return options;
    }

    void put_text(FileResult &result, std::string_view text, const FilesRead &sources,
                  const std::string &output) const {
        output_folder_.check(output);
        if (options_.mode == Mode::Translate) {
            result.is_written = write(output, text, sources);
            result.has_output = true;
            return;
        }
        if (options_.mode == Mode::Compare) result.difference = difference(output, text);
    }

    bool write(const std::string &path, std::string_view text, const FilesRead &sources) const {
        if (read_regular_file(path) == text) return false;
        output_folder_.make_around(path);
        const Output output(path);
        output.refuse_sources(sources);
        output.write(text, Durability::Whole);
        return true;
    }

    /* Once for all of them, where one of them calls it. */
    void put_library() {
        const std::string &output = library_output_;
        if (output.empty() || !calls_library_) return;
        FileResult result;
        try {
            put_text(result, library_text(), {}, output);
        } catch (const FileError &error) {
            messages_.write({trouble_with(output, error.what())});
            has_trouble_ = true;
        }
        show_output(result);
    }

    /* In this process, in the order of the inputs. */
    void take(std::size_t i, const JobEnd &end) {
        FileResult result;
        if (end.is_done) {
            result = result_from_text(end.result);
        } else {
            result.code = ExitCode::Trouble;
            result.diagnostics = {trouble_with(inputs_[i].path, end.trouble)};
        }
        result.ignored += baseline_.leave_out(result.diagnostics);
        count(result);
        if (result.has_output && !options_.depfile.empty())
            made_.push_back({output_of(inputs_[i]), result.files_read});
        report_.add(inputs_[i].path, result.has_output ? output_of(inputs_[i]) : "", result);
        progress_.clear();
        if (options_.mode != Mode::Assess || result.code == ExitCode::Trouble)
            messages_.write(result.diagnostics);
        show_output(result);
        const bool has_error = count_severities(result.diagnostics)[SEVERITY_ERROR] > 0;
        ++finished_;
        progress_.add(inputs_[i].path, has_error);
        progress_.show();
    }

    std::size_t files_in(FileState state) const {
        return tally_.states[static_cast<std::size_t>(state)];
    }

    void count(const FileResult &result) {
        const bool has_failed = result.code == ExitCode::Trouble;
        const FileState state = has_failed ? FileState::Failed : state_of(result.diagnostics);
        ++tally_.states[static_cast<std::size_t>(state)];
        tally_.ignored += result.ignored;
        if (result.calls_library) calls_library_ = true;
    }

    void show_output(const FileResult &result) {
        if (result.is_written) ++tally_.written;
        if (result.difference.empty()) return;
        ++(is_of_new_file(result.difference) ? tally_.missing : tally_.different);
        const bool is_coloured = has_colours(options_.colours, STDOUT_FILENO);
        const bool is_shown = is_coloured || isatty(STDOUT_FILENO) == 1;
        Output(std::nullopt)
            .write(is_shown ? shown_difference(result.difference, is_coloured) : result.difference);
    }

    std::string summary(bool is_whole) const {
        std::ostringstream text;
        text << "mtranslate: " << finished_ << " of " << inputs_.size()
             << (inputs_.size() == 1 ? " file: " : " files: ") << files_in(FileState::Translated)
             << " without errors or gaps, " << files_in(FileState::Gaps) << " with gaps, "
             << files_in(FileState::Errors) << " with errors, " << files_in(FileState::Failed)
             << " failed";
        if (options_.mode == Mode::Translate) text << "; " << tally_.written << " written";
        if (options_.mode == Mode::Compare)
            text << "; " << tally_.different << " would change, " << tally_.missing
                 << " would be new";
        if (tally_.ignored > 0)
            text << "; " << tally_.ignored
                 << (tally_.ignored == 1 ? " message left out" : " messages left out");
        if (found_.ignored > 0) text << "; " << found_.ignored << " left out by .gitignore";
        text << (is_whole ? "\n" : "; interrupted\n");
        return text.str();
    }

    ExitCode exit_code() const {
        if (files_in(FileState::Failed) > 0 || has_trouble_) return ExitCode::Trouble;
        if (options_.mode == Mode::Assess) return ExitCode::Done;
        const bool has_failures = files_in(FileState::Errors) + files_in(FileState::Gaps) > 0;
        const bool differs = tally_.different + tally_.missing > 0;
        return has_failures || differs ? ExitCode::BadSource : ExitCode::Done;
    }

    const Options &options_;
    Inputs found_;
    FileIndex index_;
    const InputFiles &inputs_; /* in one of these */
    OutputFolder output_folder_;
    Baseline baseline_;
    MessageOutput messages_;
    ReportOutput report_;
    std::string library_output_;
    std::map<std::size_t, std::size_t> first_with_output_; /* where that is another input */
    std::vector<const Configuration *> configurations_;    /* of the inputs */
    /* In a worker: its own. */
    mutable std::map<const Configuration *, KnownResults> known_;
    mutable std::map<const Configuration *, Options> run_options_;
    Tally tally_;
    std::vector<MadeFrom> made_;
    bool calls_library_ = false; /* a translation does */
    bool has_trouble_ = false;   /* with the library's output */
    std::size_t finished_ = 0;
    Progress progress_;
};

}  // namespace

ExitCode run_batch(const Options &options) {
    std::optional<Batch> batch;
    try {
        batch.emplace(options);
    } catch (const FileError &error) {
        MessageOutput messages(options);
        messages.write({trouble_with("", error.what())});
        messages.finish();
        return ExitCode::Trouble;
    }
    return batch->run();
}

}  // namespace mtranslate
