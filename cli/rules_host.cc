/* Answering by rules, and counting it. */
#include "cli/rules_host.h"

#include <algorithm>

#include "host/stand_in_host.h"

namespace mtranslate {

namespace {

/* The name of a package's function as sources have it: the host is asked for "pk:-f", or "(pk:-f)"
 * inside of parentheses. */
std::string source_name(std::string_view asked) {
    std::string name;
    for (const char c : asked) {
        if (c == ':') name += '.';
        if (c != ':' && c != '-' && c != '(' && c != ')') name += c;
    }
    return name;
}

}  // namespace

void RuleAnswers::answer_in(StandInHost &host) {
    host.translate_other_names([this](std::string_view asked) { return name(asked); });
    host.translate_other_functions(
        [this](std::string_view asked, const auto &arguments) { return call(asked, arguments); });
}

std::optional<std::string> RuleAnswers::name(std::string_view name) {
    const Rule *rule = rules_.find_name(name);
    if (!rule) return std::nullopt;
    ++used_[rule];
    return rule->text;
}

std::optional<std::string> RuleAnswers::call(std::string_view name,
                                             const std::vector<std::string> &arguments) {
    const std::string called = source_name(name);
    const FunctionRule *rule = rules_.find_function(called);
    const FunctionForm *form = rule ? rule->form_for(arguments.size()) : nullptr;
    if (!form) {
        ++unanswered_[called][arguments.size()];
        return std::nullopt;
    }
    ++used_[&form->rule];
    return called == TRY_KEYWORD ? form->form.fill_lines(arguments) : form->form.fill(arguments);
}

std::map<std::string, std::size_t> RuleAnswers::used() const {
    std::map<std::string, std::size_t> counts;
    for (const auto &[rule, count] : used_) counts[title_of(*rule)] += count;
    return counts;
}

}  // namespace mtranslate
