/* Choosing from the list of arguments. */
#include "cli/options/completion_words.h"

#include <algorithm>

namespace mtranslate {

Offer offer_of(const ArgumentInfo &argument) {
    if (!argument.choices.empty()) return Offer::Choices;
    if (argument.value == "DIR") return Offer::Folders;
    const bool is_file = argument.value.starts_with("PATH") || argument.value.starts_with("FILE");
    return is_file ? Offer::Files : Offer::Nothing;
}

std::vector<ArgumentInfo> arguments_after(const CommandInfo &tool, const CommandInfo &command) {
    std::vector<ArgumentInfo> arguments = command.arguments;
    if (!command.takes_all) return arguments;
    for (const ArgumentInfo &argument : tool.arguments) {
        const auto is_same = [&](const ArgumentInfo &own) {
            return own.names == argument.names && own.value == argument.value;
        };
        if (std::ranges::none_of(command.arguments, is_same)) arguments.push_back(argument);
    }
    return arguments;
}

Words option_names(const std::vector<ArgumentInfo> &arguments) {
    Words names;
    for (const ArgumentInfo &argument : arguments)
        names.insert(names.end(), argument.names.begin(), argument.names.end());
    return names;
}

Words command_names(const CommandInfo &tool, bool only_separate) {
    Words names;
    for (const CommandInfo &command : tool.commands)
        if (!only_separate || !command.takes_all) names.push_back(command.name);
    return names;
}

std::string joined(const Words &words, const std::string &between) {
    std::string text;
    for (const std::string &word : words) text += (text.empty() ? "" : between) + word;
    return text;
}

std::string replaced(std::string text, const std::string &from, const std::string &to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace mtranslate
