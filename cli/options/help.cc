/* The help, in columns of a terminal. */
#include "cli/options/help.h"

#include "cli/options/manual.h"
#include "cli/support/wrapped.h"

namespace mtranslate {

namespace {

/* "-o, --output PATH"; a long name alone stands below the other long ones. */
std::string names_with_value(const ArgumentInfo &argument) {
    std::string text = argument.is_positional() ? argument.value : "";
    for (const std::string &name : argument.names) text += (text.empty() ? "" : ", ") + name;
    if (text.starts_with("--")) text.insert(0, "    ");
    const bool has_value = !argument.is_positional() && !argument.value.empty();
    return has_value ? text + ' ' + argument.value : text;
}

constexpr std::size_t COLUMN = 28; /* of the descriptions */

std::string row(const std::string &left, const std::string &right) {
    const std::string head = "  " + left;
    const bool fits = head.size() + 2 <= COLUMN;
    const std::string gap =
        fits ? std::string(COLUMN - head.size(), ' ') : '\n' + std::string(COLUMN, ' ');
    return head + gap + wrapped(right, COLUMN);
}

std::string details_below(const std::string &details) {
    return details.empty() ? "" : std::string(COLUMN, ' ') + wrapped(details, COLUMN);
}

std::string rows_of_arguments(const CommandInfo &command, bool is_long) {
    std::string text;
    std::string group;
    for (const ArgumentInfo &argument : command.arguments) {
        if (argument.group != group) text += '\n' + argument.group + ":\n";
        group = argument.group;
        text += row(names_with_value(argument), argument.summary);
        if (is_long) text += details_below(argument.details);
    }
    return text;
}

std::string rows_of_commands(const CommandInfo &tool, bool is_long) {
    std::string text = "\nCommands:\n";
    for (const CommandInfo &command : tool.commands) {
        text += row(command.name, command.summary);
        if (is_long) text += details_below(command.details);
    }
    return text;
}

std::string sections() {
    std::string text;
    for (const ManualSection &section : manual_sections())
        if (section.is_in_help)
            text += std::string("\n") + section.title + ":\n" + section.text + '\n';
    return text;
}

std::string head(const CommandInfo &tool, const CommandInfo &command) {
    return "Usage: " + usage(tool, command) + '\n' + command.summary + ".\n";
}

}  // namespace

std::string usage(const CommandInfo &tool, const CommandInfo &command) {
    const bool is_tool = &command == &tool;
    std::string text = tool.name + (is_tool ? "" : ' ' + command.name) + " [OPTION]...";
    const CommandInfo &owner = command.takes_all ? tool : command;
    for (const ArgumentInfo &argument : owner.arguments)
        if (argument.is_positional())
            text += ' ' +
                    (argument.is_repeatable ? argument.value + "..." : '[' + argument.value + ']');
    return text;
}

std::string short_help(const CommandInfo &tool) {
    return head(tool, tool) + rows_of_arguments(tool, false) + rows_of_commands(tool, false) +
           "\n'mtranslate --help' tells more, 'mtranslate COMMAND -h' about a command.\n";
}

std::string long_help(const CommandInfo &tool) {
    return head(tool, tool) + rows_of_arguments(tool, true) + rows_of_commands(tool, true) +
           sections();
}

std::string command_help(const CommandInfo &tool, const CommandInfo &command, bool is_long) {
    std::string text = head(tool, command);
    if (is_long && !command.details.empty()) text += '\n' + wrapped(command.details);
    text += rows_of_arguments(command, is_long);
    if (command.takes_all)
        text += "\nIt takes the arguments of mtranslate, too: 'mtranslate -h'.\n";
    return text;
}

}  // namespace mtranslate
