/* mtranslate: translates a MATLAB file, or a command, from the command line. */
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>

#include "cli/options.h"
#include "cli/source.h"
#include "cli/translation.h"

namespace mtranslate {

namespace {

void refuse_to_overwrite_source(const Options &options) {
    std::error_code missing;  // then they are not the same file
    if (options.file && options.output &&
        std::filesystem::equivalent(*options.file, *options.output, missing))
        throw FileError("the output '" + *options.output + "' is the source itself");
}

ExitCode run(const Options &options) {
    refuse_to_overwrite_source(options);
    const Translation translation = translate(open_source(options), options.without_translator);
    if (translation.code == ExitCode::Done)
        write_file(options.output, translation.text);
    else
        std::cerr << translation.text;
    return translation.code;
}

ExitCode run_safely(int argc, char **argv) {
    try {
        const auto arguments = read_options(argc, argv);
        if (const auto *code = std::get_if<ExitCode>(&arguments)) return *code;
        return run(std::get<Options>(arguments));
    } catch (const std::exception &error) {
        std::cerr << "mtranslate: error: " << error.what() << '\n';
        return ExitCode::Trouble;
    }
}

}  // namespace

}  // namespace mtranslate

int main(int argc, char **argv) {
    std::signal(SIGPIPE, SIG_IGN);  // a reader that leaves early is seen where the text is written
    return static_cast<int>(mtranslate::run_safely(argc, argv));
}
