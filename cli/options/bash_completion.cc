/* Completion for bash: a function that looks at the words typed so far. */
#include <map>

#include "cli/options/completion_words.h"
#include "cli/options/completions.h"

namespace mtranslate {

namespace {

constexpr const char *HEAD = R"(# bash completion for mtranslate

_mtranslate_words() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur"); }

_mtranslate_names() {
    mapfile -t COMPREPLY < <(compgen "$1" -- "$cur")
    compopt -o filenames 2>/dev/null
}

_mtranslate() {
    local cur=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= word
    COMPREPLY=()
    # a '=' is a word of its own, after an option or within a value
    if [[ $cur == = || $before == = ]]; then
        [[ $cur == = ]] || before=${COMP_WORDS[COMP_CWORD - 2]}
        [[ $cur == = ]] && cur=
        [[ $before == -* ]] || before+==
    fi
)";

/* The command that offers values. */
std::string offer(const ArgumentInfo &argument) {
    switch (offer_of(argument)) {
        case Offer::Choices: return "_mtranslate_words \"" + joined(argument.choices) + '"';
        case Offer::Folders: return "_mtranslate_names -d";
        case Offer::Files: return "_mtranslate_names -f";
        case Offer::Nothing: break;
    }
    return ":";
}

std::string branch_of_value(const std::string &pattern, const std::string &offered) {
    return "    " + pattern + ")\n        " + offered + "\n        return\n        ;;\n";
}

/* For choices such as "error=NAME": what follows the '='. */
std::string branches_within(const Words &choices) {
    std::map<std::string, Words> ends;
    for (const std::string &choice : choices) {
        const std::size_t equals = choice.find('=');
        if (equals != choice.npos)
            ends[choice.substr(0, equals + 1)].push_back(choice.substr(equals + 1));
    }
    std::string text;
    for (const auto &[begin, words] : ends)
        text += branch_of_value(begin, "_mtranslate_words \"" + joined(words) + '"');
    return text;
}

/* A branch for each option that a value must follow. */
std::string branches_of_values(const CommandInfo &command) {
    std::string text;
    for (const ArgumentInfo &argument : command.arguments)
        if (!argument.is_positional() && !argument.value.empty())
            text += branch_of_value(joined(argument.names, " | "), offer(argument)) +
                    branches_within(argument.choices);
    return text;
}

/* The branches for an option and for another word after a command. */
std::string branches(const std::vector<ArgumentInfo> &arguments, const std::string &name,
                     const std::string &last) {
    std::string text = "    " + name + ":-*) _mtranslate_words \"" +
                       joined(option_names(arguments)) + "\" ;;\n    " + name + ":*)\n";
    for (const ArgumentInfo &argument : arguments)
        if (argument.is_positional()) text += "        " + offer(argument) + '\n';
    return text + last + "        ;;\n";
}

}  // namespace

std::string bash_completion(const CommandInfo &tool) {
    const std::string commands = joined(command_names(tool));
    std::string text = HEAD +
                       std::string("    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n") +
                       "        case $word in " + joined(command_names(tool), " | ") +
                       ") command=$word && break ;; esac\n    done\n    case $before in\n" +
                       branches_of_values(tool);
    for (const CommandInfo &command : tool.commands) text += branches_of_values(command);
    text += "    esac\n    case $command:$cur in\n";
    for (const CommandInfo &command : tool.commands)
        text += branches(arguments_after(tool, command), command.name, "");
    text += branches(tool.arguments, "",
                     "        COMPREPLY+=($(compgen -W \"" + commands + "\" -- \"$cur\"))\n");
    return text + "    esac\n}\n\ncomplete -F _mtranslate mtranslate\n";
}

}  // namespace mtranslate
