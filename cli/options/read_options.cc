/* What becomes of the arguments. */
#include "cli/options/read_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <utility>

#include "cli/config/configured.h"
#include "cli/files/output.h"
#include "cli/messages/excerpt.h"
#include "cli/messages/explain.h"
#include "cli/options/argument_list.h"
#include "cli/options/help.h"
#include "cli/options/option_table.h"
#include "cli/report/report.h"
#include "cli/run/translation.h"
#include "cli/support/suggestion.h"

namespace mtranslate {

using namespace std::string_literals;

namespace fs = std::filesystem;

namespace {

ExitCode show(const std::string &text, const std::optional<std::string> &path = std::nullopt) {
    Output(path).write(text);
    return ExitCode::Done;
}

ExitCode refuse(const std::string &message, const char *help = "Try 'mtranslate --help'.") {
    std::cerr << "mtranslate: error: " << printable(message) << '\n' << help << '\n';
    return ExitCode::Usage;
}

ExitCode run(const Explain &wanted) {
    if (wanted.whole_page) return show(page_of_messages());
    const auto text = explanation(wanted.code);
    if (text) return show(*text);
    return refuse(no_explanation(wanted.code), "'mtranslate explain' lists all codes.");
}

/* After a path whose ending is none of these. */
constexpr const char *REPORT_FORMS = " is no .html, .md or .json";

ExitCode run(const ReportMerge &merge) {
    if (!merge.output.empty() && !is_report_path(merge.output))
        return refuse("-o: '" + merge.output + '\'' + REPORT_FORMS);
    merge_and_write(merge);
    return ExitCode::Done;
}

/* The help, of a subcommand where one is given, or the version. */
std::string answer(const CLI::App &table, const CLI::Success &success) {
    if (success.get_name() == "CallForVersion") return std::string(success.what()) + '\n';
    const bool is_long = success.get_name() == "CallForAllHelp";
    const CommandInfo tool = list_arguments(table);
    const auto chosen = std::ranges::find_if(tool.commands, [&](const CommandInfo &command) {
        return table.got_subcommand(command.name);
    });
    if (chosen != tool.commands.end()) return command_help(tool, *chosen, is_long);
    return is_long ? long_help(tool) : short_help(tool);
}

/* Names the option that an unknown one is near to, or the command that does not take one. */
std::string suggested_option(const CLI::App &app) {
    const std::vector<std::string> left = app.remaining(true);
    const std::string unknown = left.empty() ? "" : left.front().substr(0, left.front().find('='));
    std::vector<std::string> known;
    for (const CLI::Option *option : app.get_options())
        for (const std::string &name : option->get_lnames()) known.push_back("--" + name);
    const auto commands = app.get_subcommands();
    if (!commands.empty() && std::ranges::find(known, unknown) != known.end())
        return ", which " + commands.front()->get_name() + " does not take";
    return unknown.starts_with("-") ? suggestion(unknown, known) : "";
}

/* Names the command that a word is near to, where no file has its name. */
std::string suggested_command(const CLI::App &app, const Options &options) {
    std::error_code none;
    if (options.paths.empty() || fs::exists(options.paths.front(), none)) return "";
    std::vector<std::string> known;
    for (const CLI::App *command : app.get_subcommands({})) known.push_back(command->get_name());
    const std::string command = suggestion(options.paths.front(), known);
    return command.empty()
               ? ""
               : "there is no file or command '" + options.paths.front() + '\'' + command;
}

/* The names of the options that have been given, without dashes. */
std::set<std::string> given_options(const CLI::App &table) {
    std::set<std::string> given;
    for (const CLI::Option *option : table.get_options())
        if (option->count() > 0)
            for (const auto &names : {option->get_lnames(), option->get_snames()})
                given.insert(names.begin(), names.end());
    return given;
}

bool is_folder(const std::string &path) {
    std::error_code none;
    return fs::is_directory(path, none);
}

/* The same of what is asked for besides translations. */
std::string report_conflict(const Options &options) {
    if (!options.report.empty() && !is_report_path(options.report))
        return "--report: '" + options.report + '\'' + REPORT_FORMS;
    if (options.wants_statistics() && options.language == "classic")
        return "classic makes no tree, which reports, graphs, maps and assessments need";
    if (options.wants_statistics() && options.dumps_any())
        return "--dump-tree and --dump-values write nothing that could be reported";
    return "";
}

/* Why the options do not go together; empty where they do. */
std::string conflict(const Options &options, bool is_batch) {
    const bool has_folder = !options.output_folder.empty();
    if (!options.paths.empty() && options.command) return "PATH and -c exclude each other";
    const bool is_of_sources = options.mode == Mode::Translate || options.mode == Mode::Check ||
                               options.mode == Mode::Compare;
    if (options.watches && !(is_batch && is_of_sources))
        return "--watch goes with -O, check and diff";
    if (options.mode == Mode::Rules)
        return options.command ? "rules are asked for PATH, not for -c" : "";
    if (options.mode == Mode::RuleTemplate || options.mode == Mode::UnusedRules)
        return options.paths.empty() ? "give PATH, the sources of the functions" : "";
    if (options.paths.empty() && !options.command)
        return "nothing to translate: give PATH or -c TEXT";
    if (options.dumps_any() && options.language == "classic")
        return "--dump-tree, --dump-values: classic makes no tree";
    if (options.output && (options.mode == Mode::Check || options.mode == Mode::Assess))
        return "check and assess write no translations: leave -o out";
    if (has_folder && options.output) return "-o and -O exclude each other";
    if (has_folder && options.command) return "-c and -O exclude each other";
    const bool has_output = has_folder || options.output.value_or("-") != "-";
    if (!options.depfile.empty() && (!has_output || options.mode != Mode::Translate))
        return "--depfile is about the outputs of -o and -O";
    if (!options.baseline.empty() && !is_batch) return "--baseline goes with -O, check and diff";
    if (!options.root.empty() && !is_batch) return "--root goes with -O, check and diff";
    const std::string bad_suffix = refusal_of_suffix(options.suffix);
    if (!bad_suffix.empty()) return "--suffix: " + bad_suffix;
    if (options.mode == Mode::Compare && !has_folder) return "give -O DIR, the outputs to compare";
    if (is_batch && options.mode == Mode::Translate && !has_folder)
        return "give -O DIR to translate several files";
    if (is_batch && options.output) return "-o takes the translation of one file: give -O DIR";
    if (is_batch && options.dumps_any()) return "--dump-tree and --dump-values show one file";
    return report_conflict(options);
}

/* A single run has its source in command or file, a batch in paths. */
std::variant<Options, ExitCode> completed(Options options) {
    const bool is_batch = options.mode != Mode::Translate || !options.output_folder.empty() ||
                          options.paths.size() > 1 ||
                          (options.paths.size() == 1 && is_folder(options.paths[0]));
    if (is_batch || options.command || options.paths.size() == 1) configure(options, is_batch);
    const std::string message = conflict(options, is_batch);
    if (!message.empty()) return refuse(message);
    if (is_batch || options.command) return options;
    options.file = options.paths[0];
    options.paths.clear();
    return options;
}

/* The command that translates nothing, or null. */
const char *command_of(const Request &request) {
    if (request.library) return "library";
    if (request.explain) return "explain";
    return request.report ? "report" : nullptr;
}

}  // namespace

std::variant<Options, ExitCode> read_options(int argc, const char *const *argv) {
    Request request;
    const auto table = make_option_table(request);
    try {
        table->parse(argc, argv);
    } catch (const CLI::Success &success) {
        return show(answer(*table, success));
    } catch (const CLI::ExtrasError &error) {
        return refuse(error.what() + suggested_option(*table));
    } catch (const CLI::ParseError &error) {
        return refuse(error.what());
    } catch (const PolicyError &error) {
        return refuse("-W: " + std::string(error.what()), "'mtranslate explain' lists all codes.");
    }
    request.options.given = given_options(*table);
    const std::string unknown = suggested_command(*table, request.options);
    if (!unknown.empty()) return refuse(unknown);
    if (!command_of(request)) return completed(std::move(request.options));
    const bool is_alone = request.options.paths.empty() && !request.options.command;
    if (!is_alone) return refuse(command_of(request) + " and a source exclude each other"s);
    const std::optional<std::string> output = request.options.output;
    if (request.library) return show(library_text(), output);
    if (request.explain) return run(*request.explain);
    if (request.report->output.empty()) request.report->output = output.value_or("");
    return run(*request.report);
}

}  // namespace mtranslate
