/* Rules, those that are missing, and those that nothing uses. */
#include "cli/commands/rules_command.h"

#include <csignal>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include "cli/commands/rules_survey.h"
#include "cli/commands/template_file.h"
#include "cli/config/configured.h"
#include "cli/files/output.h"
#include "cli/rules/rules.h"
#include "cli/support/suggestion.h"

namespace mtranslate {

namespace {

/* The name of a rule that has never answered, and what may have been meant. */
std::string hint_of(const Rule &rule, const SurveyedFunctions &functions) {
    if (functions.contains(rule.name)) return "";
    std::vector<std::string> names;
    for (const auto &[name, function] : functions) names.push_back(name);
    return suggestion(rule.name, names);
}

std::vector<const Rule *> all_of(const Rules &rules) {
    std::vector<const Rule *> all = rules.of_names();
    for (const auto &more : {rules.of_functions(), rules.of_forms()})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}

/* Those of all paths, each once. */
std::vector<const Rule *> rules_in_force(const Options &options) {
    std::vector<const Rule *> all;
    std::set<const Rules *> shown;
    for (const Rules *rules : rules_of_paths(options)) {
        if (!shown.insert(rules).second) continue;
        const auto more = all_of(*rules);
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

/* What is said of results is never an answer. */
bool is_answer(const Rule &rule) { return !rule.key.ends_with(".kind"); }

}  // namespace

ExitCode show_rules(const Options &options) {
    std::string lines;
    for (const Rule *rule : rules_in_force(options)) lines += title_of(*rule) + '\n';
    if (lines.empty()) std::cerr << "mtranslate: no rules are in force\n";
    Output(options.output).write(lines);
    return ExitCode::Done;
}

static Survey survey_of(const Options &options) {
    Survey survey = survey_functions(options);
    std::cerr << survey.troubles;
    if (survey.signal != 0) std::raise(survey.signal);
    return survey;
}

ExitCode write_rule_template(const Options &options) {
    const Survey survey = survey_of(options);
    Output(options.output).write(rule_template_of(survey.functions));
    return survey.troubles.empty() ? ExitCode::Done : ExitCode::Trouble;
}

ExitCode show_unused_rules(const Options &options) {
    const Survey survey = survey_of(options);
    std::string lines;
    for (const Rule *rule : rules_in_force(options)) {
        const std::string title = title_of(*rule);
        if (is_answer(*rule) && !survey.rules_used.contains(title))
            lines += title + hint_of(*rule, survey.functions) + '\n';
    }
    if (lines.empty()) std::cerr << "mtranslate: all rules are used\n";
    Output(options.output).write(lines);
    return survey.troubles.empty() ? ExitCode::Done : ExitCode::Trouble;
}

}  // namespace mtranslate
