/* Keeping rules. */
#include "cli/rules/rules.h"

namespace mtranslate {

void Rules::add(const Rules &later) {
    for (const auto &[name, rule] : later.names_) set_name(name, rule);
    for (const auto &[name, rule] : later.functions_) set_function(name, rule);
    for (const auto &[name, rule] : later.forms_) set_form(name, rule);
}

const Rule *Rules::find_name(std::string_view name) const {
    const auto found = names_.find(name);
    return found == names_.end() || found->second.text.empty() ? nullptr : &found->second;
}

const FunctionRule *Rules::find_function(std::string_view name) const {
    const auto found = functions_.find(name);
    return found == functions_.end() ? nullptr : &found->second;
}

const FunctionRule *Rules::find_form(std::string_view construct) const {
    const auto found = forms_.find(construct);
    return found == forms_.end() ? nullptr : &found->second;
}

std::vector<const Rule *> Rules::of_names() const {
    std::vector<const Rule *> rules;
    for (const auto &[name, rule] : names_)
        if (!rule.text.empty()) rules.push_back(&rule);
    return rules;
}

std::vector<const Rule *> Rules::all_of(const FunctionRules &functions) {
    std::vector<const Rule *> rules;
    for (const auto &[name, function] : functions) {
        const auto more = function.all();
        rules.insert(rules.end(), more.begin(), more.end());
    }
    return rules;
}

std::vector<const Rule *> Rules::of_functions() const { return all_of(functions_); }

std::vector<const Rule *> Rules::of_forms() const { return all_of(forms_); }

std::set<std::string> Rules::titles() const {
    std::set<std::string> titles;
    for (const Rule *rule : of_names()) titles.insert(title_of(*rule));
    for (const Rule *rule : of_functions()) titles.insert(title_of(*rule));
    return titles;
}

}  // namespace mtranslate
