/* The lines of a rules file. */
#include "cli/commands/template_file.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "cli/messages/excerpt.h"

namespace mtranslate {

namespace {

using Entry = std::pair<std::string, SurveyedFunction>;

/* Where a function has more patterns, its words are data and no options. */
constexpr std::size_t MOST_PATTERNS = 4;

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

std::string files_of(const SurveyedFunction &function) {
    return " in " + counted(function.files, "file");
}

std::string place_of(const SurveyedFunction &function) {
    return "; " + printable(function.place) + (function.is_in_class ? "; classes have it" : "");
}

std::string comment_of(const SurveyedFunction &function) {
    const auto &calls = function.calls.by_arguments;
    if (calls.empty()) return "# a handle" + files_of(function) + place_of(function);
    return "# " + counted(function.count(), "call") + files_of(function) + ", with " +
           arguments_of(calls) + place_of(function);
}

std::string quoted(const std::string &key) { return '"' + key + '"'; }

std::string key_of(const std::string &name) {
    return name.find('.') == name.npos ? name : quoted(name);
}

std::string results_key(int results, std::size_t arguments) {
    return "results." + std::to_string(results) + '.' + std::to_string(arguments);
}

std::vector<Entry> most_used_first(const SurveyedFunctions &functions) {
    std::vector<Entry> entries(functions.begin(), functions.end());
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return a.second.count() > b.second.count();
    });
    return entries;
}

bool has_options(const UnansweredCalls &calls) {
    return !calls.by_literals.empty() && calls.by_literals.size() <= MOST_PATTERNS;
}

std::size_t arguments_in(const std::string &pattern) {
    return static_cast<std::size_t>(std::count(pattern.begin(), pattern.end(), ',')) + 1;
}

/* The calls for one result or none, without those that are counted by their options. */
CountsByArguments plain_calls(const UnansweredCalls &calls) {
    CountsByArguments plain = calls.by_arguments;
    for (const auto &[results, counts] : calls.by_results)
        for (const auto &[arguments, count] : counts) plain[arguments] -= count;
    if (has_options(calls))
        for (const auto &[pattern, count] : calls.by_literals)
            plain[arguments_in(pattern)] -= count;
    std::erase_if(plain, [](const auto &entry) { return entry.second == 0; });
    return plain;
}

/* A line with the key of a function and what stands after it. */
std::string line_of(const std::string &key, const std::string &rest, std::size_t count,
                    const char *thing = "call") {
    return key + '.' + rest + " = \"\" # " + counted(count, thing) + '\n';
}

/* A line for each kind of call. */
std::string lines_of_kinds(const std::string &name, const SurveyedFunction &function) {
    const UnansweredCalls &calls = function.calls;
    const std::string key = key_of(name);
    std::string lines = "# " + printable(name) + ": " + counted(function.count(), "call") +
                        files_of(function) + place_of(function) + '\n';
    for (const auto &[arguments, count] : plain_calls(calls))
        lines += line_of(key, std::to_string(arguments), count);
    if (has_options(calls))
        for (const auto &[pattern, count] : calls.by_literals)
            lines += line_of(key, quoted(pattern), count);
    for (const auto &[results, counts] : calls.by_results)
        for (const auto &[arguments, count] : counts)
            lines += line_of(key, results_key(results, arguments), count);
    if (calls.handles > 0) lines += line_of(key, "handle", calls.handles, "handle");
    return lines;
}

std::string lines_of(const std::string &name, const SurveyedFunction &function) {
    const UnansweredCalls &calls = function.calls;
    const bool is_called = !calls.by_arguments.empty();
    const bool has_kinds = !calls.by_results.empty() || has_options(calls) || calls.handles > 0;
    if (is_called && has_kinds) return lines_of_kinds(name, function);
    return key_of(name) + " = \"\" " + comment_of(function) + '\n';
}

/* The table of the functions that are called, or of those that are handles only. */
std::string table_of(const char *head, const std::vector<Entry> &entries, bool are_called) {
    std::string lines;
    for (const auto &[name, function] : entries)
        if (are_called != function.calls.by_arguments.empty()) lines += lines_of(name, function);
    return lines.empty() ? "" : '\n' + std::string(head) + '\n' + lines;
}

}  // namespace

std::string rule_template_of(const SurveyedFunctions &functions) {
    const std::vector<Entry> entries = most_used_first(functions);
    return "# Functions that are found nowhere, most used first. Between the quotes belongs what "
           "the\n"
           "# host has for them: \"f({args})\", say. A call stays as it is while they are "
           "empty.\n" +
           table_of("[functions]", entries, true) + table_of("[names]", entries, false);
}

}  // namespace mtranslate
