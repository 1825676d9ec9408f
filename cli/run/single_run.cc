/* From the source to the output; in a process of its own where there are limits or no trust. */
#include "cli/run/single_run.h"

#include <csignal>
#include <exception>

#include "cli/files/depfile.h"
#include "cli/files/output.h"
#include "cli/report/report_output.h"
#include "cli/run/message_output.h"
#include "cli/run/open_source.h"
#include "cli/run/translation.h"
#include "cli/run/workers.h"

namespace mtranslate {

namespace {

void show(const Options &options, const Diagnostics &diagnostics) {
    MessageOutput messages(options);
    messages.write(diagnostics);
    messages.finish();
}

std::string name_of_source(const Options &options) {
    if (!options.file) return "<command>";
    return *options.file == "-" ? "<stdin>" : *options.file;
}

void report(const Options &options, Translation &translation) {
    if (!options.wants_statistics()) return;
    ReportOutput output(options);
    output.add(*options.rules);
    output.add(name_of_source(options), options.output.value_or(""),
               take_result(translation, report_shows_translations(options)));
    output.finish(false);
}

ExitCode translate_and_write(const Options &options, MessageOutput &messages) {
    const Output output(options.output);
    const Source source = open_source(options);
    output.refuse_sources(source.files);
    for (const std::string &path : options.other_outputs())
        Output(path).refuse_sources(source.files);
    Translation translation = translate(source, options);
    messages.write(translation.diagnostics);
    if (translation.text) {
        output.refuse_sources(translation.files_read);
        output.write(*translation.text);
        if (!options.depfile.empty())
            write_depfile(options.depfile, {{*options.output, names_of(translation.files_read)}});
    }
    report(options, translation);
    return translation.code;
}

/* What fails is a message like the others. */
ExitCode translate_and_tell(const Options &options) {
    MessageOutput messages(options);
    ExitCode code = ExitCode::Trouble;
    try {
        code = translate_and_write(options, messages);
    } catch (const FileError &error) {
        messages.write({trouble_with("", error.what())});
    }
    messages.finish();
    return code;
}

ExitCode run_in_worker(const Options &options) {
    ExitCode code = ExitCode::Trouble;
    const auto job = [&](std::size_t) {
        return std::to_string(static_cast<int>(translate_and_tell(options)));
    };
    const auto report = [&](std::size_t, const JobEnd &end) {
        if (end.is_done)
            code = static_cast<ExitCode>(std::stoi(end.result));
        else
            show(options, {trouble_with(name_of_source(options), end.trouble)});
    };
    if (const int signal = Workers(1, options.limits).run(1, job, report)) std::raise(signal);
    return code;
}

}  // namespace

ExitCode run_single(const Options &options) {
    const bool runs_here = options.limits.are_none() && !options.is_untrusted;
    return runs_here ? translate_and_tell(options) : run_in_worker(options);
}

}  // namespace mtranslate
