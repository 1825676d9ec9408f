/* Counting calls. */
#include "cli/rules/unanswered.h"

#include <algorithm>
#include <optional>

#include "cli/rules/pattern.h"

namespace mtranslate {

namespace {

/* "{1}, {2}, 'UniformOutput', false": words, and truth values after them, that stand after the
 * first argument are options. Empty where there is none. */
std::string pattern_of(const std::vector<std::string> &arguments) {
    const auto is_text = [](const std::string &argument) { return argument.starts_with('"'); };
    if (std::none_of(arguments.begin(), arguments.end(), is_text)) return "";  // as for most
    std::string pattern;
    std::size_t places = 0;
    bool has_word = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto literal = i == 0 ? std::nullopt : option_literal(arguments[i]);
        const bool is_word = literal && literal->starts_with('\'');
        const bool is_option = is_word || (literal && has_word);
        has_word = has_word || is_word;
        pattern += i == 0 ? "" : ", ";
        pattern += is_option ? *literal : '{' + std::to_string(++places) + '}';
    }
    return has_word ? pattern : "";
}

void add_counts(CountsByArguments &sum, const CountsByArguments &more) {
    for (const auto &[arguments, count] : more) sum[arguments] += count;
}

}  // namespace

void UnansweredCalls::add(const std::vector<std::string> &arguments, int results) {
    ++by_arguments[arguments.size()];
    if (results >= 2)
        ++by_results[results][arguments.size()];
    else if (const std::string pattern = pattern_of(arguments); !pattern.empty())
        ++by_literals[pattern];
}

void UnansweredCalls::add(const UnansweredCalls &more) {
    add_counts(by_arguments, more.by_arguments);
    for (const auto &[results, counts] : more.by_results) add_counts(by_results[results], counts);
    for (const auto &[pattern, count] : more.by_literals) by_literals[pattern] += count;
    handles += more.handles;
}

}  // namespace mtranslate
