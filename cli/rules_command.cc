/* Rules and their templates, written out. */
#include "cli/rules_command.h"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/configured.h"
#include "cli/excerpt.h"
#include "cli/output.h"
#include "cli/rules.h"
#include "cli/rules_survey.h"

namespace mtranslate {

namespace {

using Entry = std::pair<std::string, SurveyedFunction>;

std::string counted(std::size_t count, const char *thing) {
    return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

/* "1, 2 or 3 arguments". */
std::string arguments_of(const CountsByArguments &calls) {
    std::string list;
    for (const auto &[arguments, count] : calls) {
        const bool is_last = arguments == calls.rbegin()->first;
        if (!list.empty()) list += is_last ? " or " : ", ";
        list += std::to_string(arguments);
    }
    const bool is_one = calls.size() == 1 && calls.begin()->first == 1;
    return list + (is_one ? " argument" : " arguments");
}

std::string comment_of(const SurveyedFunction &function) {
    const std::string files = " in " + counted(function.files, "file");
    const std::string place =
        "; " + printable(function.place) + (function.is_in_class ? "; classes have it" : "");
    if (function.calls.empty()) return "# a handle" + files + place;
    return "# " + counted(function.count(), "call") + files + ", with " +
           arguments_of(function.calls) + place;
}

std::string key_of(const std::string &name) {
    return name.find('.') == name.npos ? name : '"' + name + '"';
}

std::vector<Entry> most_used_first(const SurveyedFunctions &functions) {
    std::vector<Entry> entries(functions.begin(), functions.end());
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return a.second.count() > b.second.count();
    });
    return entries;
}

/* The table of the functions that are called, or of those that are handles only. */
std::string table_of(const char *head, const std::vector<Entry> &entries, bool are_called) {
    std::string lines;
    for (const auto &[name, function] : entries)
        if (are_called != function.calls.empty())
            lines += key_of(name) + " = \"\" " + comment_of(function) + '\n';
    return lines.empty() ? "" : '\n' + std::string(head) + '\n' + lines;
}

std::string template_of(const SurveyedFunctions &functions) {
    const std::vector<Entry> entries = most_used_first(functions);
    return "# Functions that are found nowhere, most used first. Between the quotes belongs what "
           "the\n"
           "# host has for them: \"f({args})\", say. A call stays as it is while they are "
           "empty.\n" +
           table_of("[functions]", entries, true) + table_of("[names]", entries, false);
}

}  // namespace

ExitCode show_rules(const Options &options) {
    std::string lines;
    std::set<const Rules *> shown;
    for (const Rules *rules : rules_of_paths(options)) {
        if (!shown.insert(rules).second) continue;
        for (const Rule *rule : rules->of_names()) lines += title_of(*rule) + '\n';
        for (const Rule *rule : rules->of_functions()) lines += title_of(*rule) + '\n';
    }
    if (lines.empty()) std::cerr << "mtranslate: no rules are in force\n";
    Output(options.output).write(lines);
    return ExitCode::Done;
}

ExitCode write_rule_template(const Options &options) {
    const Survey survey = survey_functions(options);
    std::cerr << survey.troubles;
    if (survey.signal != 0) std::raise(survey.signal);
    Output(options.output).write(template_of(survey.functions));
    return survey.troubles.empty() ? ExitCode::Done : ExitCode::Trouble;
}

}  // namespace mtranslate
