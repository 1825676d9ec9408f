/* Reading CLI11's table. */
#include "cli/options/argument_list.h"

#include <CLI/CLI.hpp>
#include <sstream>

#include "cli/messages/explain.h"
#include "cli/messages/message_policy.h"

namespace mtranslate {

namespace {

/* Splits a description into summary and details. */
void describe(std::string &summary, std::string &details, const std::string &description) {
    const std::size_t end = std::min(description.find("\n\n"), description.size());
    summary = description.substr(0, end);
    if (end < description.size()) details = description.substr(end + 2);
}

/* CLI11 has a list of written choices only in words: "TYPE:{one,two}". */
std::vector<std::string> written_choices(const std::string &type) {
    const std::size_t open = type.find('{');
    const std::size_t close = type.find('}', std::min(open, type.size()));
    if (close == type.npos) return {};
    std::istringstream list(type.substr(open + 1, close - open - 1));
    std::vector<std::string> choices;
    for (std::string choice; std::getline(list, choice, ',');) choices.push_back(choice);
    return choices;
}

std::string value_of(const CLI::Option &option) {
    if (!option.nonpositional()) return option.get_name(true, false);
    if (option.get_items_expected_max() == 0) return "";
    const std::string type = option.get_type_name();
    return option.get_option_text().empty() ? type.substr(0, type.find(':'))
                                            : option.get_option_text();
}

std::vector<std::string> choices_of(const std::string &value, const CLI::Option &option) {
    if (value == "CODE") return all_codes();
    if (value == "PATTERN") return all_patterns();
    return written_choices(option.get_type_name());
}

ArgumentInfo info_on(const CLI::Option &option) {
    ArgumentInfo info;
    for (const std::string &name : option.get_snames()) info.names.push_back('-' + name);
    for (const std::string &name : option.get_lnames()) info.names.push_back("--" + name);
    info.value = value_of(option);
    describe(info.summary, info.details, option.get_description());
    info.group = option.get_group();
    info.choices = choices_of(info.value, option);
    info.is_repeatable = option.get_items_expected_max() > 1;
    return info;
}

}  // namespace

CommandInfo list_arguments(const CLI::App &app) {
    CommandInfo info;
    info.name = app.get_name();
    describe(info.summary, info.details, app.get_description());
    info.takes_all = app.get_fallthrough();
    for (const CLI::Option *option : app.get_options()) {
        const bool is_help = option == app.get_help_ptr() || option == app.get_help_all_ptr();
        if (!option->get_group().empty() && !(is_help && info.takes_all))
            info.arguments.push_back(info_on(*option));
    }
    for (const CLI::App *command : app.get_subcommands({}))
        info.commands.push_back(list_arguments(*command));
    return info;
}

}  // namespace mtranslate
