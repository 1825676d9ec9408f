/* mtranslate: translates a MATLAB file, or a command, from the command line. */
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>

#include "cli/batch.h"
#include "cli/excerpt.h"
#include "cli/options.h"
#include "cli/output.h"
#include "cli/source.h"
#include "cli/translation.h"

namespace mtranslate {

namespace {

ExitCode run(const Options &options) {
    if (!options.paths.empty()) return run_batch(options);
    const Output output(options.output);
    const Source source = open_source(options);
    output.refuse_sources(source.files);
    const Translation translation = translate(source, options);
    std::cerr << translation.messages;
    if (translation.text) {
        output.refuse_sources(translation.files_read);
        output.write(*translation.text);
    }
    return translation.code;
}

ExitCode run_safely(int argc, char **argv) {
    try {
        const auto arguments = read_options(argc, argv);
        if (const auto *code = std::get_if<ExitCode>(&arguments)) return *code;
        return run(std::get<Options>(arguments));
    } catch (const std::exception &error) {
        std::cerr << "mtranslate: error: " << printable(error.what()) << '\n';
        return ExitCode::Trouble;
    }
}

/* What goes wrong with a stream is seen where it is read or written. */
void prepare_streams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // One that is closed stays unusable, instead of becoming the next file that is opened.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

}  // namespace

}  // namespace mtranslate

int main(int argc, char **argv) {
    mtranslate::prepare_streams();
    return static_cast<int>(mtranslate::run_safely(argc, argv));
}
