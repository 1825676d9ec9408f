/* Choosing forms. */
#include "cli/rules/call_forms.h"

#include <mtranslate.h>

#include <nlohmann/json.hpp>

#include "cli/messages/excerpt.h"

namespace mtranslate {

namespace {

/* JSON's strings are TOML's as well. */
std::string quoted(const std::string &text) { return nlohmann::json(text).dump(); }

bool takes(const FunctionForm &form, bool is_default, std::size_t count) {
    const bool takes_all = is_default || form.form.has_list() || count == form.form.least();
    return takes_all && count >= form.form.least();
}

/* Whether the form can stand where so many results are asked for. */
bool fits(const FunctionForm &form, int results) {
    if (form.form.is_statements()) return results == 0 || results == HOST_RESULTS_UNKNOWN;
    return true;
}

std::optional<FoundForm> fitting(std::optional<FoundForm> found, int results) {
    return found && fits(*found->form, results) ? std::move(found) : std::nullopt;
}

/* A procedure of so many parameters. */
std::string procedure_text(const Template &form, std::size_t count) {
    std::vector<std::string> parameters;
    std::string list;
    for (std::size_t i = 1; i <= count; ++i) {
        parameters.push_back("qxrp_x" + std::to_string(i));
        list += (i == 1 ? "" : ", ") + parameters.back();
    }
    return "proc( " + list + " ) return " + form.fill_statement(parameters, "1") + "; end proc";
}

}  // namespace

std::string text_of(const RulePlace &place) {
    return printable(place.file) + ':' + std::to_string(place.line) + ':' +
           std::to_string(place.column);
}

std::string title_of(const Rule &rule) {
    return printable(rule.place.file) + ':' + std::to_string(rule.place.line) + ": " + rule.key +
           " = " + quoted(rule.text);
}

std::optional<FoundForm> CallForms::find(const std::vector<std::string> &arguments) const {
    for (const auto &[pattern, form] : patterns)
        if (auto open = pattern.match(arguments)) return FoundForm{&form, std::move(*open)};
    const auto found = by_count.find(arguments.size());
    if (found != by_count.end()) return FoundForm{&found->second, arguments};
    if (!otherwise || !takes(*otherwise, is_default, arguments.size())) return std::nullopt;
    return FoundForm{&*otherwise, arguments};
}

std::vector<const FunctionForm *> CallForms::all() const {
    std::vector<const FunctionForm *> forms;
    for (const PatternForm &pattern : patterns) forms.push_back(&pattern.form);
    for (const auto &[count, form] : by_count) forms.push_back(&form);
    if (otherwise) forms.push_back(&*otherwise);
    return forms;
}

std::optional<FoundForm> FunctionRule::find(const std::vector<std::string> &arguments,
                                            int results) const {
    const auto exact = by_results.find(results);
    if (results >= 0 && exact != by_results.end())
        if (auto found = fitting(exact->second.find(arguments), results)) return found;
    auto found = fitting(plain.find(arguments), results);
    const bool is_one = results == 0 || results == 1 || results == HOST_RESULTS_UNKNOWN;
    if (found && (is_one || found->form->form.has_results())) return found;
    const auto any = by_results.find(ANY_RESULTS);
    return any == by_results.end() ? std::nullopt : fitting(any->second.find(arguments), results);
}

std::optional<std::string> FunctionRule::handle_text() const {
    if (handle) return handle->form.fill({}, "1");
    const auto forms = plain.all();
    if (forms.size() != 1 || !plain.patterns.empty() || plain.is_default) return std::nullopt;
    const Template &form = forms[0]->form;
    if (const std::string name = form.name_called(); !name.empty()) return name;
    if (form.has_list() || form.is_statements() || form.least() == 0) return std::nullopt;
    return procedure_text(form,
                          plain.by_count.empty() ? form.least() : plain.by_count.begin()->first);
}

std::vector<const Rule *> FunctionRule::all() const {
    std::vector<const Rule *> rules;
    for (const FunctionForm *form : plain.all()) rules.push_back(&form->rule);
    for (const auto &[results, forms] : by_results)
        for (const FunctionForm *form : forms.all()) rules.push_back(&form->rule);
    if (handle) rules.push_back(&handle->rule);
    if (kind) rules.push_back(&*kind);
    return rules;
}

}  // namespace mtranslate
