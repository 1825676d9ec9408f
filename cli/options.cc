/* The argument table and its help, read by CLI11. */
#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include <mtranslate.h>

#include "cli/excerpt.h"
#include "cli/explain.h"

namespace mtranslate {

namespace {

#define TEXT_OF(token) #token
#define VERSION_TEXT(major, minor, patch) TEXT_OF(major) "." TEXT_OF(minor) "." TEXT_OF(patch)

constexpr const char *VERSION = "mtranslate " VERSION_TEXT(
    MTRANSLATE_VERSION_MAJOR, MTRANSLATE_VERSION_MINOR, MTRANSLATE_VERSION_PATCH);

constexpr const char *FOOTER =
    R"(Functions that the source calls are looked for as NAME.m in the directory of
FILE (for standard input: in the current directory; for -c: nowhere) and
translated along with it. The first -I replaces that directory; name it by an
-I of its own to search it too.

What cannot be translated is left as comments in the translation, and a message
says why; 'mtranslate explain CODE' tells more about it.

Exit code: 0 translated, 1 the source has an error or a gap, 2 wrong usage or a
file that cannot be read or written.

Example:
  $ mtranslate -c 'x = a*b'
  x := a . b;
  $ mtranslate -I lib -I . -o solve.txt solve.m)";

void add_options(CLI::App &app, Options &options) {
    app.add_option("FILE", options.file, "MATLAB source file to translate; - for standard input")
        ->type_name("");
    app.add_option("-c,--command", options.command, "Translate TEXT instead of a file")
        ->type_name("TEXT");
    app.add_option("-I,--include", options.directories,
                   "Look for called functions in DIR; repeatable, tried in the order given")
        ->option_text("DIR")
        ->allow_extra_args(false);
    app.add_option("-o,--output", options.output,
                   "Write the translation to PATH, if it succeeds, instead of standard output")
        ->type_name("PATH");
    app.add_option("--language", options.language,
                   "Read the sources as LANGUAGE: matlab (the default), octave or classic, the "
                   "small language of hosts that rely on its exact translations")
        ->type_name("LANGUAGE")
        ->check(CLI::IsMember({"matlab", "octave", "classic"}));
    app.add_flag("--strict", options.is_strict,
                 "Write no translation of a source with an error or a gap");
    app.add_flag("--dump-tree", options.dumps_tree,
                 "Write the tree of the source instead of its translation");
    app.add_flag("--no-translator", options.without_translator,
                 "Do not ask the host about calls, and translate no called functions");
    app.set_help_flag("-h,--help", "Print this help");
    app.set_version_flag("--version", VERSION, "Print the version");
    app.footer(FOOTER);
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
    return command;
}

ExitCode run(const Explain &wanted) {
    if (!wanted.whole_page) return explain(wanted.code);
    std::cout << page_of_messages();
    return ExitCode::Done;
}

ExitCode refuse(const std::string &message) {
    std::cerr << "mtranslate: error: " << printable(message) << "\nTry 'mtranslate --help'.\n";
    return ExitCode::Trouble;
}

}  // namespace

std::variant<Options, ExitCode> read_options(int argc, const char *const *argv) {
    Options options;
    CLI::App app{"Translates MATLAB source to the language of a host computer-algebra system.",
                 "mtranslate"};
    add_options(app, options);
    Explain wanted;
    const CLI::App *explains = add_explain(app, wanted);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &request) {
        app.exit(request);
        return ExitCode::Done;
    } catch (const CLI::ParseError &error) {
        return refuse(error.what());
    }
    if (explains->parsed()) return run(wanted);
    if (options.file && options.command) return refuse("FILE and -c exclude each other");
    if (options.dumps_tree && options.language == "classic")
        return refuse("--dump-tree: classic makes no tree");
    if (!options.file && !options.command)
        return refuse("nothing to translate: give FILE or -c TEXT");
    return options;
}

}  // namespace mtranslate
