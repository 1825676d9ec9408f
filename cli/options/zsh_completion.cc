/* Completion for zsh, in the entries of its function _arguments. */
#include "cli/options/completion_words.h"
#include "cli/options/completions.h"

namespace mtranslate {

namespace {

std::string quoted(const std::string &text) {
    return std::string("'").append(replaced(text, "'", "'\\''")).append("'");
}

/* A text within the brackets of an entry. */
std::string explanation(const std::string &text) {
    std::string result;
    for (const char c : text) {
        if (c == '[' || c == ']' || c == '\\' || c == ':') result += '\\';
        result += c;
    }
    return result;
}

/* ":VALUE:ACTION". */
std::string value(const ArgumentInfo &argument) {
    const std::string head = ':' + argument.value + ':';
    switch (offer_of(argument)) {
        case Offer::Choices: return head + '(' + joined(argument.choices) + ')';
        case Offer::Folders: return head + "_files -/";
        case Offer::Files: return head + "_files";
        case Offer::Nothing: break;
    }
    return head + ' ';
}

/* One name of an option, which excludes its other names unless it can be repeated. */
std::string entry_of(const ArgumentInfo &argument, const std::string &name) {
    std::string text = argument.is_repeatable ? "*" : '(' + joined(argument.names) + ')';
    text += name;
    if (!argument.value.empty()) text += name.starts_with("--") ? '=' : '+';
    text += '[' + explanation(argument.summary) + ']';
    return quoted(argument.value.empty() ? text : text + value(argument));
}

std::string positional(const ArgumentInfo &argument) {
    return quoted(std::string(argument.is_repeatable ? "*" : ":").append(value(argument)));
}

/* The entries of all arguments, each in a line. */
std::string entries_of(const std::vector<ArgumentInfo> &arguments) {
    std::string text;
    for (const ArgumentInfo &argument : arguments) {
        for (const std::string &name : argument.names)
            text += " \\\n            " + entry_of(argument, name);
        if (argument.is_positional()) text += " \\\n            " + positional(argument);
    }
    return text;
}

std::string branch(const std::string &pattern, const std::string &first,
                   const std::vector<ArgumentInfo> &arguments) {
    return "    " + pattern + ")\n        _arguments -s -S " + first + entries_of(arguments) +
           "\n        ;;\n";
}

/* The function that offers commands and files. */
std::string function_of_first_word(const CommandInfo &tool) {
    std::string commands;
    for (const CommandInfo &command : tool.commands)
        commands += "        " + quoted(command.name + ':' + command.summary) + '\n';
    return "_mtranslate_first() {\n    local -a commands=(\n" + commands +
           "    )\n    _describe command commands\n    _files\n}\n";
}

}  // namespace

std::string zsh_completion(const CommandInfo &tool) {
    std::string text = "#compdef mtranslate\n\n" + function_of_first_word(tool) +
                       "\n_mtranslate() {\n    case ${words[2,CURRENT-1][(r)(" +
                       joined(command_names(tool), "|") + ")]} in\n";
    for (const CommandInfo &command : tool.commands)
        text += branch(command.name, "'1:command:(" + command.name + ")'",
                       arguments_after(tool, command));
    return text + branch("*", "'1: :_mtranslate_first'", tool.arguments) +
           "    esac\n}\n\n_mtranslate \"$@\"\n";
}

}  // namespace mtranslate
