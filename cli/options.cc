/* The argument table and its help, read by CLI11. */
#include "cli/options.h"

#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>
#include <utility>

#include <mtranslate.h>

#include "cli/excerpt.h"
#include "cli/explain.h"
#include "cli/output.h"
#include "cli/suggestion.h"

namespace mtranslate {

namespace {

#define TEXT_OF(token) #token
#define VERSION_TEXT(major, minor, patch) TEXT_OF(major) "." TEXT_OF(minor) "." TEXT_OF(patch)

constexpr const char *VERSION = "mtranslate " VERSION_TEXT(
    MTRANSLATE_VERSION_MAJOR, MTRANSLATE_VERSION_MINOR, MTRANSLATE_VERSION_PATCH);

constexpr const char *FOOTER =
    R"(Functions that the source calls are looked for as NAME.m in the directory of
the file (for standard input: in the current directory; for -c: nowhere) and
translated along with it. The first -I replaces that directory; name it by an
-I of its own to search it too. With -O every file is translated alone.

What cannot be translated is left as comments in the translation, and a message
says why; 'mtranslate explain CODE' tells more about it.

Exit code: 0 translated, 1 a source has an error or a gap, 2 wrong usage, 3 a
file cannot be read or written.

Example:
  $ mtranslate -c 'x = 2*(1 + 1)'
  x := 2 . (1+1);
  $ mtranslate -I lib -I . -o solve.txt solve.m
  $ mtranslate src -O translated)";

void add_source_options(CLI::App &app, Options &options) {
    app.add_option("PATH", options.paths,
                   "MATLAB source files and folders to translate; - for standard input")
        ->type_name("");
    app.add_option("-c,--command", options.command, "Translate TEXT instead of files")
        ->type_name("TEXT");
    app.add_option("-I,--include", options.directories,
                   "Look for called functions in DIR; may be repeated")
        ->option_text("DIR")
        ->allow_extra_args(false);
    app.add_option("--language", options.language,
                   "Read the sources as matlab (the default), octave or classic")
        ->option_text("LANGUAGE")
        ->check(CLI::IsMember({"matlab", "octave", "classic"}));
    app.add_flag("--no-translator", options.without_translator,
                 "Do not ask the host about calls, and translate no called functions");
}

void add_output_options(CLI::App &app, Options &options) {
    app.add_option("-o,--output", options.output,
                   "Write the translation of one source to PATH instead of standard output")
        ->type_name("PATH");
    app.add_flag("--strict", options.is_strict,
                 "Write no translation of a source with an error or a gap");
    app.add_flag("--dump-tree", options.dumps_tree,
                 "Write the tree of the source, not its translation");
}

void add_batch_options(CLI::App &app, Options &options) {
    app.add_option("-O,--output-dir", options.output_folder,
                   "Translate several files, or whole folders, into DIR")
        ->type_name("DIR");
    app.add_option("--suffix", options.suffix, "Ending of the files in DIR (.txt)")
        ->type_name("SUFFIX");
    app.add_option("--exclude", options.excludes,
                   "Leave out files and folders that match GLOB; repeatable")
        ->type_name("GLOB")
        ->allow_extra_args(false);
    app.add_flag("--closure", options.is_closure,
                 "Put the functions that a file calls into its translation");
    app.add_option("-j,--jobs", options.jobs, "Run N worker processes (one for each processor)")
        ->type_name("N");
}

void add_options(CLI::App &app, Options &options) {
    add_source_options(app, options);
    add_output_options(app, options);
    add_batch_options(app, options);
    app.set_help_flag("-h,--help", "Print this help");
    app.set_version_flag("--version", VERSION, "Print the version");
    app.footer(FOOTER);
}

/* The subcommands that take the same arguments. */
struct Modes {
    CLI::App *check;
    CLI::App *diff;
};

Modes add_modes(CLI::App &app) {
    Modes modes{app.add_subcommand("check", "Say what a translation would say, and write nothing"),
                app.add_subcommand("diff", "Show what would change in the outputs of -O")};
    for (CLI::App *mode : {modes.check, modes.diff}) {
        mode->fallthrough();
        mode->set_help_flag();
    }
    return modes;
}

/* The arguments of "mtranslate explain". */
struct Explain {
    std::string code;
    bool whole_page = false;
};

CLI::App *add_explain(CLI::App &app, Explain &explain) {
    CLI::App *command = app.add_subcommand("explain", "Tell what the code of a message means");
    command->add_option("CODE", explain.code, "The code or the short name; without it, all codes")
        ->type_name("");
    command->add_flag("--page", explain.whole_page, "Write the page of all messages in Markdown");
    command->set_help_flag("-h,--help", "Print this help");
    command->footer("Example:\n  $ mtranslate explain MT204");
    return command;
}

ExitCode show(const std::string &text) {
    Output(std::nullopt).write(text);
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

/* Names the option that an unknown one is near to. */
std::string suggested_option(const CLI::App &app) {
    const std::string unknown = app.remaining().front();
    std::vector<std::string> known;
    for (const CLI::Option *option : app.get_options())
        for (const std::string &name : option->get_lnames()) known.push_back("--" + name);
    return unknown.starts_with("-") ? suggestion(unknown, known) : "";
}

bool is_folder(const std::string &path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/* Why the options do not go together; empty where they do. */
std::string conflict(const Options &options, bool is_batch) {
    const bool has_folder = !options.output_folder.empty();
    if (!options.paths.empty() && options.command) return "PATH and -c exclude each other";
    if (options.paths.empty() && !options.command)
        return "nothing to translate: give PATH or -c TEXT";
    if (options.dumps_tree && options.language == "classic")
        return "--dump-tree: classic makes no tree";
    if (has_folder && options.output) return "-o and -O exclude each other";
    if (has_folder && options.command) return "-c and -O exclude each other";
    if (options.suffix == ".m") return "--suffix: outputs are no MATLAB files";
    if (options.mode == Mode::Compare && !has_folder) return "give -O DIR, the outputs to compare";
    if (is_batch && options.mode == Mode::Translate && !has_folder)
        return "give -O DIR to translate several files";
    if (is_batch && options.output) return "-o takes the translation of one file: give -O DIR";
    if (is_batch && options.dumps_tree) return "--dump-tree shows one file";
    return "";
}

/* A single run has its source in command or file, a batch in paths. */
std::variant<Options, ExitCode> completed(Options options) {
    const bool is_batch = options.mode != Mode::Translate || !options.output_folder.empty() ||
                          options.paths.size() > 1 ||
                          (options.paths.size() == 1 && is_folder(options.paths[0]));
    const std::string message = conflict(options, is_batch);
    if (!message.empty()) return refuse(message);
    if (is_batch || options.command) return options;
    options.file = options.paths[0];
    options.paths.clear();
    return options;
}

}  // namespace

std::variant<Options, ExitCode> read_options(int argc, const char *const *argv) {
    Options options;
    CLI::App app{"Translates MATLAB source to the language of a host computer-algebra system.",
                 "mtranslate"};
    add_options(app, options);
    Explain wanted;
    const CLI::App *explains = add_explain(app, wanted);
    const Modes modes = add_modes(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &request) {
        std::ostringstream text;
        app.exit(request, text);
        return show(text.str());
    } catch (const CLI::ExtrasError &error) {
        return refuse(error.what() + suggested_option(app));
    } catch (const CLI::ParseError &error) {
        return refuse(error.what());
    }
    if (explains->parsed()) {
        const bool is_alone = options.paths.empty() && !options.command;
        return is_alone ? run(wanted) : refuse("explain and a source exclude each other");
    }
    if (modes.check->parsed()) options.mode = Mode::Check;
    if (modes.diff->parsed()) options.mode = Mode::Compare;
    return completed(std::move(options));
}

}  // namespace mtranslate
