/* Translating for the sake of the messages. */
#include "cli/commands/rules_survey.h"

#include <cereal/types/map.hpp>
#include <cereal/types/string.hpp>
#include <numeric>
#include <utility>
#include <vector>

#include "cli/config/configuration_search.h"
#include "cli/config/configured.h"
#include "cli/files/file_index.h"
#include "cli/files/files.h"
#include "cli/files/inputs.h"
#include "cli/messages/excerpt.h"
#include "cli/run/open_source.h"
#include "cli/run/translation.h"
#include "cli/run/workers.h"
#include "cli/support/bytes.h"

namespace mtranslate {

template <class Archive>
void serialize(Archive &archive, UnansweredCalls &of) {
    archive(of.by_arguments, of.by_results, of.by_literals, of.handles);
}

template <class Archive>
void serialize(Archive &archive, SurveyedFunction &of) {
    archive(of.calls, of.files, of.place, of.is_in_class);
}

namespace {

/* What a worker tells about a file. */
struct Answer {
    SurveyedFunctions functions;
    std::map<std::string, std::size_t> rules_used{};
    std::string trouble{};
};

template <class Archive>
void serialize(Archive &archive, Answer &of) {
    archive(of.functions, of.rules_used, of.trouble);
}

/* A name that is found nowhere is that of a function, or of the package of functions. */
SurveyedFunctions unresolved_in(const Translation &translation) {
    SurveyedFunctions functions;
    for (const Diagnostic &message : translation.diagnostics) {
        if (message.code != UNKNOWN_FUNCTION) continue;
        const std::string name = message.operands.at(0);
        const std::string place = message.file + ':' + std::to_string(message.line);
        const std::string first_member = name + '.';
        bool has_members = false;
        for (auto at = translation.unanswered.lower_bound(first_member);
             at != translation.unanswered.end() && at->first.starts_with(first_member); ++at) {
            functions[at->first] = {at->second, 1, place, false};
            has_members = true;
        }
        const auto calls = translation.unanswered.find(name);
        const bool is_called = calls != translation.unanswered.end();
        if (is_called || !has_members)
            functions[name] = {is_called ? calls->second : UnansweredCalls(), 1, place,
                               is_class_only(message)};
    }
    return functions;
}

/* One survey under way. */
class Surveyor {
public:
    explicit Surveyor(const Options &options)
        : options_(options),
          index_(find_inputs(search_in(options.paths, options)).files),
          inputs_(index_.files()) {
        if (inputs_.empty()) throw FileError("no file *.m is found in what was given");
        options_.message_policy = {};
        for (const InputFile &input : inputs_)
            configurations_.push_back(&options.configurations->of_input(input));
    }

    Survey run() {
        const auto job = [this](std::size_t i) { return work_on(i); };
        const auto report = [this](std::size_t i, const JobEnd &end) { take(i, end); };
        const Workers workers(options_.jobs, options_.limits);
        survey_.signal = workers.run(inputs_.size(), job, report);
        return std::move(survey_);
    }

private:
    /* In a worker. */
    std::string work_on(std::size_t i) const {
        Answer answer;
        try {
            if (!inputs_[i].trouble.empty()) throw FileError(inputs_[i].trouble);
            Options options = options_;
            options.file = inputs_[i].path;
            configure_run(options, *configurations_[i]);
            const Translation translation = translate(open_source(options), options, &index_);
            answer.functions = unresolved_in(translation);
            answer.rules_used = translation.rules_used;
        } catch (const FileError &error) {
            answer.trouble = error.what();
        }
        return to_bytes(answer);
    }

    /* In this process. */
    void take(std::size_t i, const JobEnd &end) {
        const Answer answer =
            end.is_done ? from_bytes<Answer>(end.result) : Answer{{}, {}, end.trouble};
        if (!answer.trouble.empty())
            survey_.troubles +=
                printable(inputs_[i].path) + ": error: " + printable(answer.trouble) + '\n';
        for (const auto &[name, function] : answer.functions) add(name, function);
        for (const auto &[title, count] : answer.rules_used) survey_.rules_used.insert(title);
    }

    void add(const std::string &name, const SurveyedFunction &function) {
        const SurveyedFunction none{{}, 0, function.place, function.is_in_class};
        SurveyedFunction &sum = survey_.functions.try_emplace(name, none).first->second;
        ++sum.files;
        sum.calls.add(function.calls);
    }

    Options options_;
    FileIndex index_;
    const InputFiles &inputs_;
    std::vector<const Configuration *> configurations_; /* of the inputs */
    Survey survey_;
};

}  // namespace

std::size_t SurveyedFunction::count() const {
    return std::accumulate(calls.by_arguments.begin(), calls.by_arguments.end(), std::size_t{0},
                           [](std::size_t sum, const auto &entry) { return sum + entry.second; });
}

Survey survey_functions(const Options &options) { return Surveyor(options).run(); }

}  // namespace mtranslate
