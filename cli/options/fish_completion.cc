/* Completion for fish: a command for each argument. */
#include "cli/options/completion_words.h"
#include "cli/options/completions.h"

namespace mtranslate {

namespace {

std::string quoted(const std::string &text) {
    return '\'' + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + '\'';
}

std::string complete(const std::string &condition) {
    const std::string head = "complete -c mtranslate";
    return condition.empty() ? head : head + " -n " + quoted(condition);
}

std::string value(const ArgumentInfo &argument) {
    switch (offer_of(argument)) {
        case Offer::Choices: return " -x -a " + quoted(joined(argument.choices));
        case Offer::Folders: return " -x -a '(__fish_complete_directories)'";
        case Offer::Files: return " -r -F";
        case Offer::Nothing: break;
    }
    return argument.value.empty() ? "" : " -x";
}

std::string option(const ArgumentInfo &argument, const std::string &condition) {
    std::string text = complete(condition);
    for (const std::string &name : argument.names)
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    return text + value(argument) + " -d " + quoted(argument.summary) + '\n';
}

std::string positional(const ArgumentInfo &argument, const std::string &condition) {
    if (argument.choices.empty()) return "";  // files are offered anyway
    return complete(condition) + " -f -a " + quoted(joined(argument.choices)) + '\n';
}

std::string lines(const std::vector<ArgumentInfo> &arguments, const std::string &condition) {
    std::string text;
    for (const ArgumentInfo &argument : arguments)
        text += argument.is_positional() ? positional(argument, condition)
                                         : option(argument, condition);
    return text;
}

}  // namespace

std::string fish_completion(const CommandInfo &tool) {
    const std::string separate = joined(command_names(tool, true));
    std::string text = "# fish completion for mtranslate\n";
    for (const CommandInfo &command : tool.commands)
        text += complete("__fish_use_subcommand") + " -a " + command.name + " -d " +
                quoted(command.summary) + '\n';
    text += lines(tool.arguments,
                  separate.empty() ? "" : "not __fish_seen_subcommand_from " + separate);
    for (const CommandInfo &command : tool.commands)
        text += lines(command.arguments, "__fish_seen_subcommand_from " + command.name);
    return text;
}

}  // namespace mtranslate
