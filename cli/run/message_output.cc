#include "cli/run/message_output.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "cli/files/files.h"
#include "cli/messages/pages.h"

namespace mtranslate {

namespace {

/* Whether standard output takes something else. */
bool has_output(const Options &options) {
    if (options.mode == Mode::Compare) return true;
    return options.paths.empty() && options.output.value_or("-") == "-";
}

/* Of terminals that would show the sequence of a link, the console and old libraries are known. */
bool has_links() {
    if (isatty(STDERR_FILENO) != 1) return false;
    const char *terminal = std::getenv("TERM");
    if (!terminal || std::string_view(terminal) == "linux") return false;
    const char *library = std::getenv("VTE_VERSION");
    return (!library || std::atoi(library) >= 5000) && has_explanations();
}

TextStyle style_of(ColourUse use) {
    const bool is_colourful = has_colours(use, STDERR_FILENO);
    return {is_colourful, is_colourful && has_links()};
}

bool is_failure(const Diagnostic &diagnostic) { return diagnostic.severity <= SEVERITY_GAP; }

}  // namespace

/* As the conventions for programs at a terminal have it: NO_COLOR wins, set to anything but
 * nothing. */
bool has_colours(ColourUse use, int stream) {
    const auto is_set = [](const char *name) {
        const char *value = std::getenv(name);
        return value && *value;
    };
    if (use != ColourUse::Auto) return use == ColourUse::Always;
    if (is_set("NO_COLOR")) return false;
    const char *forced = std::getenv("CLICOLOR_FORCE");
    if (forced && *forced && std::string_view(forced) != "0") return true;
    const char *terminal = std::getenv("TERM");
    const bool is_dumb = terminal && std::string_view(terminal) == "dumb";
    return isatty(stream) == 1 && !is_dumb;
}

MessageOutput::MessageOutput(const Options &options)
    : is_for_people_(options.message_format == MessageFormat::Text),
      is_standard_output_(!is_for_people_ && !has_output(options)),
      most_errors_(options.most_errors),
      writer_(make_message_writer(options.message_format, text_, style_of(options.colours))) {}

void MessageOutput::write(const Diagnostics &diagnostics) {
    writer_->write(most_errors_ > 0 ? up_to_most_errors(diagnostics) : diagnostics);
    flush();
}

Diagnostics MessageOutput::up_to_most_errors(const Diagnostics &diagnostics) {
    Diagnostics wanted;
    for (const Diagnostic &diagnostic : diagnostics) {
        if (is_failure(diagnostic)) ++errors_;
        if (errors_ < most_errors_ || (errors_ == most_errors_ && is_failure(diagnostic)))
            wanted.push_back(diagnostic);
    }
    return wanted;
}

void MessageOutput::finish() {
    writer_->finish();
    const std::size_t left_out = errors_ - std::min(errors_, most_errors_);
    if (left_out > 0 && !owns_standard_error())
        std::cerr << "mtranslate: " << left_out << (left_out == 1 ? " error is" : " errors are")
                  << " not shown (--max-errors " << most_errors_ << ")\n";
    flush();
}

void MessageOutput::flush() {
    const std::string text = std::move(text_).str();
    text_.str("");
    if (text.empty()) return;
    if (is_standard_output_)
        write_all(STDOUT_FILENO, text, "standard output");
    else
        std::cerr << text << std::flush;
}

}  // namespace mtranslate
