/* The table. A description is a line for every help, and, after an empty line, more for the long
 * help and the manual page. What stands for a value decides what shells complete
 * (argument_list.h). */
#include "cli/options/option_table.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <map>

#include "cli/support/version.h"

namespace mtranslate {

namespace {

/* The heading of the options that are added next. */
void begin_group(CLI::App &app, const char *heading) { app.option_defaults()->group(heading); }

void add_source_options(CLI::App &app, Options &options) {
    begin_group(app, "Sources");
    app.add_option("PATH", options.paths,
                   "MATLAB source files and folders to translate; - for standard input")
        ->type_name("");
    app.add_option("-c,--command", options.command, "Translate TEXT instead of files")
        ->type_name("TEXT");
    app.add_option("-I,--include", options.directories,
                   "Look for called functions in DIR; repeatable\n\n"
                   "Tried in the order given, and instead of the directory of the source, which "
                   "may be named too.")
        ->type_name("DIR")
        ->allow_extra_args(false);
    app.add_option("--language", options.language,
                   "Read the sources as matlab, octave or classic\n\n"
                   "matlab, the default, is MATLAB as people write it. octave differs in the "
                   "escapes of double-quoted strings and in chained assignments. classic is the "
                   "small language of hosts that rely on its exact translations.")
        ->option_text("LANGUAGE")
        ->check(CLI::IsMember({"matlab", "octave", "classic"}));
    app.add_flag("--no-translator", options.without_translator,
                 "Do not ask the host about calls\n\nCalled functions are not translated then.");
    app.add_flag("--untrusted", options.is_untrusted,
                 "Let the tree of the sources decide nothing\n\n"
                 "Its files mtranslate.toml are not read, links that lead out of it are not "
                 "followed, and every source is read by a process with fewer rights.");
}

void add_rule_options(CLI::App &app, Options &options) {
    begin_group(app, "Rules");
    app.add_option("--rules", options.rule_files,
                   "Take forms of names and functions from FILE; repeatable\n\n"
                   "In TOML; a later file comes before an earlier one, and all of them before the "
                   "file mtranslate.toml of the source's folder, or of the nearest one around it.")
        ->type_name("FILE")
        ->allow_extra_args(false);
    app.add_flag("--no-config", options.without_configuration, "Look for no file mtranslate.toml");
}

void add_output_options(CLI::App &app, Options &options) {
    begin_group(app, "Output");
    app.add_option("-o,--output", options.output,
                   "Write the translation of one source to PATH\n\n"
                   "Without it the translation goes to standard output. A file is replaced when "
                   "its successor is whole; no source is ever written over.")
        ->type_name("PATH");
    app.add_option("--depfile", options.depfile,
                   "Write to FILE what the outputs are made from\n\n"
                   "In the form of make and ninja: each output of -o or -O with its source and "
                   "the other files that its translation depends on.")
        ->type_name("FILE");
    app.add_flag("--strict", options.is_strict,
                 "Write no translation of a source with an error or a gap");
    app.add_flag(
        "--no-library", options.is_library_apart,
        "Leave the translator's own functions out\n\n"
        "'mtranslate library' writes them, once for all translations. Those of a tree do without.");
    app.add_flag("--dump-tree", options.dumps_tree,
                 "Write the tree of the source, not its translation");
    app.add_flag("--dump-values", options.dumps_values,
                 "Write the tree with what is known of values, not its translation");
}

/* An option whose value is one of the words; type stands for it. */
template <class Value>
void add_choice(CLI::App &app, const std::string &name, Value &value, const std::string &help,
                const char *type, const std::map<std::string, Value> &choices) {
    std::string words;
    for (const auto &[word, meaning] : choices) words += (words.empty() ? "" : ",") + word;
    const auto choose = [=, &value](const std::string &word) {
        const auto choice = choices.find(word);
        if (choice == choices.end())
            throw CLI::ValidationError(name, "'" + word + "' is none of " + words);
        value = choice->second;
    };
    app.add_option_function<std::string>(name, choose, help)
        ->type_name(std::string(type) + ":{" + words + '}');
}

void add_message_options(CLI::App &app, Options &options) {
    begin_group(app, "Messages");
    add_choice<MessageFormat>(
        app, "--format", options.message_format,
        "Give messages as text, json, sarif or github\n\n"
        "text is the form of a compiler, on standard error. The others are for programs: JSON "
        "Lines, SARIF 2.1.0 and workflow commands, on standard output unless a translation or a "
        "difference goes there.",
        "FORMAT",
        {{"text", MessageFormat::Text},
         {"json", MessageFormat::Json},
         {"sarif", MessageFormat::Sarif},
         {"github", MessageFormat::Github}});
    app.add_option_function<std::vector<std::string>>(
           "-W",
           [&](const std::vector<std::string> &patterns) {
               for (const std::string &pattern : patterns) options.message_policy.add(pattern);
           },
           "Leave out a message (no-CODE), or make it an error (error=CODE)\n\n"
           "CODE is a code or a short name; -W error makes errors of all warnings. Repeatable: "
           "the last one about a message holds.")
        ->type_name("PATTERN")
        ->allow_extra_args(false);
    app.add_option("--baseline", options.baseline,
                   "Leave out the messages of many files that FILE has\n\n"
                   "'mtranslate check PATH... --format json > FILE' writes what there is today; "
                   "with the option only what is new is given, and counts. A message is the same "
                   "where file, code and text are, whatever its line.")
        ->type_name("FILE");
    app.add_option("--max-errors", options.most_errors,
                   "Show no messages after the N-th error or gap")
        ->type_name("N");
    add_choice<ColourUse>(
        app, "--color", options.colours, "Colour messages: auto (on a terminal), always or never",
        "WHEN",
        {{"auto", ColourUse::Auto}, {"always", ColourUse::Always}, {"never", ColourUse::Never}});
}

void add_batch_options(CLI::App &app, Options &options) {
    begin_group(app, "Whole trees");
    app.add_option("-O,--output-dir", options.output_folder,
                   "Translate several files, or whole folders, into DIR\n\n"
                   "Every file *.m of a folder, and of those in it, becomes a file of the same "
                   "name below DIR. One that would not change is not touched. Each file is "
                   "translated alone.")
        ->type_name("DIR");
    app.add_option("--root", options.root,
                   "Translate a part of the tree in DIR\n\n"
                   "The files given are named and translated as if all of DIR were given: for "
                   "shards of a large tree, and for build tools.")
        ->type_name("DIR");
    app.add_option("--suffix", options.suffix, "Ending of the files in DIR (.txt)")
        ->type_name("SUFFIX");
    app.add_option("--exclude", options.excludes,
                   "Leave out files and folders that match GLOB; repeatable\n\n"
                   "A pattern with a slash is compared with the path below the folder given, any "
                   "other with the name alone.")
        ->type_name("GLOB")
        ->allow_extra_args(false);
    app.add_flag("--no-gitignore", options.without_ignore_files,
                 "Translate what files .gitignore leave out of folders, too");
    app.add_flag("--closure", options.is_closure,
                 "Put the functions that a file calls into its translation");
    app.add_flag(
        "--watch", options.watches,
        "Go on, and translate again what changes\n\n"
        "Until it is interrupted. A change of a configuration, of rules or of the names of "
        "files has all of them translated.");
    app.add_option("-j,--jobs", options.jobs, "Run N worker processes (one for each processor)")
        ->type_name("N");
}

void add_limits(CLI::App &app, Limits &limits) {
    begin_group(app, "Limits");
    app.add_option_function<double>(
           "--max-time",
           [&limits](double seconds) {
               limits.time = std::chrono::milliseconds(std::lround(seconds * 1000));
           },
           "Give a file up after S seconds\n\nOf several files the others go on.")
        ->type_name("S")
        ->check(CLI::Range(0.001, 1e6));
    app.add_option("--max-memory", limits.megabytes,
                   "Give a file up that needs more than MB megabytes of memory\n\n"
                   "Beside what the tool takes by itself.")
        ->type_name("MB")
        ->check(CLI::Range(1, 1 << 20));
}

void add_choice_of_sources(CLI::App &app, bool &shows_sources) {
    add_choice<bool>(app, "--report-sources", shows_sources,
                     "Show sources and translations in a page: yes (as without it) or no\n\n"
                     "Without them the page is small, and holds no text of the sources.",
                     "WHEN", {{"yes", true}, {"no", false}});
}

void add_report_options(CLI::App &app, Options &options) {
    begin_group(app, "Reports");
    app.add_option("--report", options.report,
                   "Write a report to FILE.html, FILE.md or FILE.json\n\n"
                   "It counts what was translated, and lists what is left to do: functions that "
                   "are found nowhere, messages, and each file. The page in HTML shows sources and "
                   "translations side by side, and the call graph.")
        ->type_name("FILE");
    add_choice_of_sources(app, options.report_sources);
    app.add_option("--graph", options.graph, "Write the call graph to FILE.dot, for Graphviz")
        ->type_name("FILE");
    app.add_option("--map", options.map,
                   "Write to FILE which lines come from which part of the source\n\n"
                   "In JSON, for all files of the run: statements, heads and ends of blocks, "
                   "comments, functions and gaps with their places.")
        ->type_name("FILE");
}

void add_help_options(CLI::App &app) {
    begin_group(app, "Help");
    app.set_help_flag("-h", "Print a short help");
    app.set_help_all_flag("--help", "Print the whole help");
}

void add_modes(CLI::App &app, Options &options) {
    const auto add = [&](const char *name, Mode mode, const char *description) {
        app.add_subcommand(name, description)->fallthrough()->callback([=, &options] {
            options.mode = mode;
        });
    };
    add("check", Mode::Check, "Say what a translation would say, and write nothing");
    add("diff", Mode::Compare,
        "Show what would change in the outputs of -O\n\n"
        "As a unified diff; the exit code is 1 where there is a difference.");
    add("assess", Mode::Assess,
        "Tell how much would translate today, and what stands in the way\n\n"
        "A page of text: shares of files and statements, messages by frequency, and the functions "
        "whose rule would help most. Nothing is written.");
}

void add_report(CLI::App &app, std::optional<ReportMerge> &report) {
    CLI::App *command = app.add_subcommand(
        "report",
        "Make one report of those of several runs\n\n"
        "Of a file that several have, the last one counts. Functions that one run has not found "
        "are found in the files of the others.");
    const auto wanted = std::make_shared<ReportMerge>();
    begin_group(*command, "Options");
    command->add_option("FILE", wanted->paths, "Reports in JSON")->required()->type_name("");
    command
        ->add_option("-o,--output", wanted->output,
                     "Write it to PATH.html, PATH.md or PATH.json, not as Markdown to standard "
                     "output")
        ->type_name("PATH");
    add_choice_of_sources(*command, wanted->shows_sources);
    command->add_option("--graph", wanted->graph, "Write the call graph to FILE.dot, for Graphviz")
        ->type_name("FILE");
    command->callback([&report, wanted] { report = *wanted; });
}

void add_rules(CLI::App &app, Options &options) {
    CLI::App *command =
        app.add_subcommand("rules", "Show the rules in force, or write a file for further ones");
    const auto mode = std::make_shared<Mode>(Mode::Rules);
    command->fallthrough();
    begin_group(*command, "Options");
    command->add_flag_callback(
        "--template", [mode] { *mode = Mode::RuleTemplate; },
        "Write a rules file with the functions of PATH that are found nowhere");
    command->add_flag_callback(
        "--unused", [mode] { *mode = Mode::UnusedRules; },
        "Show the rules that answer nothing in the sources of PATH");
    command->callback([=, &options] { options.mode = *mode; });
}

void add_explain(CLI::App &app, std::optional<Explain> &explain) {
    CLI::App *command = app.add_subcommand("explain", "Tell what the code of a message means");
    const auto wanted = std::make_shared<Explain>();
    begin_group(*command, "Options");
    command->add_option("CODE", wanted->code, "The code or the short name; without it, all codes")
        ->type_name("");
    command->add_flag("--page", wanted->whole_page, "Write the page of all messages in Markdown");
    command->callback([&explain, wanted] { explain = *wanted; });
}

void add_library(CLI::App &app, Request &request) {
    CLI::App *command =
        app.add_subcommand("library",
                           "Write the translator's own functions\n\n"
                           "Those that translations with --no-library, and those of -O, call.");
    begin_group(*command, "Options");
    command
        ->add_option("-o,--output", request.options.output,
                     "Write them to PATH, not to standard output")
        ->type_name("PATH");
    command->callback([&request] { request.library = true; });
}

}  // namespace

std::unique_ptr<CLI::App> make_option_table(Request &request) {
    auto app = std::make_unique<CLI::App>(
        "Translates MATLAB source to the language of a host computer-algebra system", "mtranslate");
    add_source_options(*app, request.options);
    add_rule_options(*app, request.options);
    add_output_options(*app, request.options);
    add_message_options(*app, request.options);
    add_batch_options(*app, request.options);
    add_limits(*app, request.options.limits);
    add_report_options(*app, request.options);
    add_help_options(*app);
    app->set_version_flag("-V,--version", "mtranslate " + std::string(VERSION),
                          "Print the version");
    add_modes(*app, request.options);
    add_rules(*app, request.options);
    add_explain(*app, request.explain);
    add_report(*app, request.report);
    add_library(*app, request);
    return app;
}

}  // namespace mtranslate
