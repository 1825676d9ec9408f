/* mtranslate: translates a MATLAB file, or a command, from the command line. */
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <new>

#include "cli/commands/rules_command.h"
#include "cli/commands/watch.h"
#include "cli/config/configuration.h"
#include "cli/messages/excerpt.h"
#include "cli/options/read_options.h"
#include "cli/run/batch.h"
#include "cli/run/single_run.h"

namespace mtranslate {

namespace {

ExitCode run(const Options &options) {
    if (options.mode == Mode::Rules) return show_rules(options);
    if (options.mode == Mode::RuleTemplate) return write_rule_template(options);
    if (options.mode == Mode::UnusedRules) return show_unused_rules(options);
    return options.paths.empty() ? run_single(options) : run_batch(options);
}

ExitCode fail_with(const char *reason) {
    std::cerr << "mtranslate: error: " << printable(reason) << '\n';
    return ExitCode::Trouble;
}

/* The code of what work does, or of why it cannot. */
template <typename Work>
ExitCode run_safely(const Work &work) {
    try {
        return work();
    } catch (const std::bad_alloc &) {
        return fail_with("system memory exhausted");
    } catch (const ConfigurationError &error) {
        std::cerr << error.what();
        return ExitCode::Usage;
    } catch (const std::exception &error) {
        return fail_with(error.what());
    }
}

ExitCode run_arguments(int argc, char **argv) {
    const auto arguments = read_options(argc, argv);
    if (const auto *code = std::get_if<ExitCode>(&arguments)) return *code;
    const Options &options = std::get<Options>(arguments);
    if (!options.watches) return run(options);
    watch(
        options, [](const Options &next) { run_safely([&] { return run(next); }); },
        [&](Options &next) {
            run_safely([&] {
                const auto again = read_options(argc, argv);
                if (const auto *read = std::get_if<Options>(&again)) next = *read;
                return ExitCode::Done;
            });
        });
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
    return static_cast<int>(
        mtranslate::run_safely([&] { return mtranslate::run_arguments(argc, argv); }));
}
