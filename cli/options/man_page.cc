/* The arguments and the manual in the language of roff. */
#include "cli/options/man_page.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "cli/options/help.h"
#include "cli/options/manual.h"

namespace mtranslate {

namespace {

/* A text in which roff finds no commands; hyphens can be copied into a shell. */
std::string escaped(const std::string &text) {
    std::string result;
    for (const char c : text) {
        if ((c == '.' || c == '\'') && (result.empty() || result.back() == '\n')) result += "\\&";
        if (c == '\\')
            result += "\\(rs";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
    }
    return result;
}

std::string upper(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

std::string heading(const std::string &title) { return ".SH \"" + upper(title) + "\"\n"; }

/* ".BR -o ", --output PATH" as bold names and an italic value. */
std::string names_with_value(const ArgumentInfo &argument) {
    std::string text;
    for (const std::string &name : argument.names)
        text += (text.empty() ? "\\fB" : ", \\fB") + escaped(name) + "\\fR";
    if (argument.value.empty()) return text;
    return text + (text.empty() ? "\\fI" : " \\fI") + escaped(argument.value) + "\\fR";
}

std::string sentences(const std::string &summary, const std::string &details) {
    const std::string text = escaped(summary) + ".\n";
    return details.empty() ? text : text + escaped(details) + '\n';
}

std::string arguments(const CommandInfo &command) {
    std::string text;
    std::string group;
    for (const ArgumentInfo &argument : command.arguments) {
        if (argument.group != group) text += ".SS \"" + escaped(argument.group) + "\"\n";
        group = argument.group;
        text += ".TP\n" + names_with_value(argument) + '\n' +
                sentences(argument.summary, argument.details);
    }
    return text;
}

bool takes(const CommandInfo &tool, const ArgumentInfo &argument) {
    return std::ranges::any_of(tool.arguments, [&](const ArgumentInfo &other) {
        return !argument.is_positional() && other.names == argument.names;
    });
}

/* A subcommand and the arguments that it alone has. */
std::string command_text(const CommandInfo &tool, const CommandInfo &command) {
    std::string text = ".TP\n\\fB" + escaped(usage(tool, command)) + "\\fR\n" +
                       sentences(command.summary, command.details);
    for (const ArgumentInfo &argument : command.arguments)
        if (!takes(tool, argument))
            text += ".RS\n.TP\n" + names_with_value(argument) + '\n' +
                    sentences(argument.summary, argument.details) + ".RE\n";
    return text;
}

/* Lines that begin with a blank stay lines. */
std::string section_text(const std::string &text) {
    std::istringstream lines(text);
    std::string result;
    bool is_fixed = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(' ') != is_fixed) result += is_fixed ? ".fi\n" : ".nf\n";
        is_fixed = line.starts_with(' ');
        result += line.empty() ? ".PP\n" : escaped(line) + '\n';
    }
    return result + (is_fixed ? ".fi\n" : "");
}

std::string synopsis(const CommandInfo &tool) {
    std::string text = heading("Synopsis") + escaped(usage(tool, tool)) + '\n';
    for (const CommandInfo &command : tool.commands)
        text += ".br\n" + escaped(usage(tool, command)) + '\n';
    return text;
}

}  // namespace

std::string man_page(const CommandInfo &tool, const std::string &version) {
    std::string text = ".TH " + upper(tool.name) + " 1 \"\" \"" + version +
                       "\" \"User Commands\"\n" + heading("Name") + escaped(tool.name) + " \\- " +
                       escaped(tool.summary) + '\n' + synopsis(tool) + heading("Options") +
                       arguments(tool) + heading("Commands");
    for (const CommandInfo &command : tool.commands) text += command_text(tool, command);
    for (const ManualSection &section : manual_sections())
        text += heading(section.title) + section_text(section.text);
    return text;
}

}  // namespace mtranslate
