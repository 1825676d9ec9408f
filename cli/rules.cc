/* Keeping rules. */
#include "cli/rules.h"

#include <nlohmann/json.hpp>

#include "cli/excerpt.h"

namespace mtranslate {

/* JSON's strings are TOML's as well. */
static std::string quoted(const std::string &text) { return nlohmann::json(text).dump(); }

std::string text_of(const RulePlace &place) {
    return printable(place.file) + ':' + std::to_string(place.line) + ':' +
           std::to_string(place.column);
}

std::string title_of(const Rule &rule) {
    return printable(rule.place.file) + ':' + std::to_string(rule.place.line) + ": " + rule.key +
           " = " + quoted(rule.text);
}

const FunctionForm *FunctionRule::form_for(std::size_t count) const {
    const auto found = by_count.find(count);
    if (found != by_count.end()) return &found->second;
    if (!otherwise) return nullptr;
    const Template &form = otherwise->form;
    const bool takes_all = is_default || form.has_list() || count == form.least();
    return takes_all && count >= form.least() ? &*otherwise : nullptr;
}

void Rules::add(const Rules &later) {
    for (const auto &[name, rule] : later.names_) set_name(name, rule);
    for (const auto &[name, rule] : later.functions_) set_function(name, rule);
}

const Rule *Rules::find_name(std::string_view name) const {
    const auto found = names_.find(name);
    return found == names_.end() || found->second.text.empty() ? nullptr : &found->second;
}

const FunctionRule *Rules::find_function(std::string_view name) const {
    const auto found = functions_.find(name);
    return found == functions_.end() ? nullptr : &found->second;
}

std::vector<const Rule *> Rules::of_names() const {
    std::vector<const Rule *> rules;
    for (const auto &[name, rule] : names_)
        if (!rule.text.empty()) rules.push_back(&rule);
    return rules;
}

std::vector<const Rule *> Rules::of_functions() const {
    std::vector<const Rule *> rules;
    for (const auto &[name, function] : functions_) {
        for (const auto &[count, form] : function.by_count) rules.push_back(&form.rule);
        if (function.otherwise) rules.push_back(&function.otherwise->rule);
    }
    return rules;
}

}  // namespace mtranslate
