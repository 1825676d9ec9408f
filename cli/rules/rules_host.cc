/* Answering by rules, and counting it. */
#include "cli/rules/rules_host.h"

#include "cli/rules/constructs.h"
#include "cli/rules/result_kinds.h"

namespace mtranslate {

namespace {

/* The name of a package's function as sources have it: the host is asked for "pk:-f", or "(pk:-f)"
 * inside of parentheses. */
std::string source_name(std::string_view asked) {
    if (asked.find_first_of(":(") == asked.npos) return std::string(asked);  // as most
    std::string name;
    for (const char c : asked) {
        if (c == ':') name += '.';
        if (c != ':' && c != '-' && c != '(' && c != ')') name += c;
    }
    return name;
}

/* The text for {results}. */
std::string results_text(int results) {
    if (results == HOST_RESULTS_VARY) return "_nresults";
    return std::to_string(results < 0 ? 1 : results);
}

}  // namespace

std::optional<std::string> RuleAnswers::answer(const mTranslateProgramQuestion &question) {
    if (question.kind == MTRANSLATE_QUESTION_NAME)
        return question.results == HOST_HANDLE ? handle(question.name) : name(question.name);
    const auto *arguments = question.arguments;
    return call(question.name, {arguments, arguments + question.argument_count}, question.results);
}

int RuleAnswers::kind(const char *name) const {
    const FunctionRule *rule = rules_.find_function(name);
    if (!rule || !rule->kind) return MTRANSLATE_RESULT_UNKNOWN;
    return result_kind_of(rule->kind->text).value_or(MTRANSLATE_RESULT_UNKNOWN);
}

std::optional<std::string> RuleAnswers::name(std::string_view name) {
    const Rule *rule = rules_.find_name(name);
    if (!rule) return std::nullopt;
    ++used_[rule];
    return rule->text;
}

std::optional<std::string> RuleAnswers::handle(std::string_view name) {
    auto renamed = this->name(name);
    const FunctionRule *rule = rules_.find_function(renamed ? *renamed : name);
    auto text = rule ? rule->handle_text() : std::nullopt;
    if (!text && !renamed && counts_unanswered_) ++unanswered_[std::string(name)].handles;
    if (!text) return renamed;
    ++used_[rule->handle ? &rule->handle->rule : rule->all().front()];
    return text;
}

std::optional<std::string> RuleAnswers::call(std::string_view name,
                                             const std::vector<std::string> &arguments,
                                             int results) {
    const std::string called = source_name(name);
    const Construct *construct = find_asked_construct(called);
    if (construct)
        if (auto text = form(*construct, arguments, results)) return text;
    const FunctionRule *rule = rules_.find_function(called);
    const auto found = rule ? rule->find(arguments, results) : std::nullopt;
    if (!found) {
        if (counts_unanswered_) unanswered_[called].add(arguments, results);
        return std::nullopt;
    }
    ++used_[&found->form->rule];
    const Template &form = found->form->form;
    const std::string wanted = results_text(results);
    return results == 0 ? form.fill_statement(found->arguments, wanted)
                        : form.fill(found->arguments, wanted);
}

/* The last argument of a construct with blocks may be empty; a call of its name by feval may have
 * none. */
std::optional<std::string> RuleAnswers::form(const Construct &construct,
                                             const std::vector<std::string> &arguments,
                                             int results) {
    const FunctionRule *rule = rules_.find_form(construct.name);
    if (!rule) return std::nullopt;
    std::vector<std::string> fewer = arguments;
    const bool has_blocks = construct.blocks > 0;
    if (has_blocks && !fewer.empty() && fewer.back().empty()) fewer.pop_back();
    auto found = rule->find(fewer, has_blocks ? 0 : results);
    if (!found && has_blocks) found = rule->find(arguments, 0);
    if (!found) return std::nullopt;
    ++used_[&found->form->rule];
    const Template &form = found->form->form;
    if (has_blocks) return form.fill_lines(found->arguments);
    return results == 0 ? form.fill_statement(found->arguments, "0")
                        : form.fill(found->arguments, "1");
}

std::map<std::string, std::size_t> RuleAnswers::used() const {
    std::map<std::string, std::size_t> counts;
    for (const auto &[rule, count] : used_) counts[title_of(*rule)] += count;
    return counts;
}

}  // namespace mtranslate
