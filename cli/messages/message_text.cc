/* Messages in the form of a compiler: place, severity, text and code, then the line of the source
 * with the range marked. */
#include <ostream>
#include <string>
#include <utility>

#include "cli/messages/excerpt.h"
#include "cli/messages/message_writer.h"
#include "cli/messages/pages.h"

namespace mtranslate {

namespace {

constexpr const char *BOLD = "\x1b[1m";
constexpr const char *SEVERITY_COLOURS[] = {"\x1b[1;31m", "\x1b[1;35m", "\x1b[1;33m", "\x1b[1;36m"};
constexpr const char *MARK_COLOUR = "\x1b[1;32m";
constexpr const char *PLAIN = "\x1b[m";

class TextWriter : public MessageWriter {
public:
    TextWriter(std::ostream &to, TextStyle style) : to_(to), style_(style) {}

    void write(const Diagnostics &diagnostics) override {
        const Diagnostic *before = nullptr;
        for (const Diagnostic &diagnostic : diagnostics) {
            if (is_listed(diagnostic)) continue;
            if (!before || before->file != diagnostic.file) write_call(diagnostic);
            before = &diagnostic;
            write_line(place_of(diagnostic), diagnostic.severity,
                       with_code(printable(diagnostic.text), diagnostic.code));
            write_excerpt(diagnostic.excerpt);
        }
        write_unknown_functions(diagnostics);
        to_.flush();
    }

private:
    static std::string place_of(const Diagnostic &diagnostic) {
        std::string place = diagnostic.file.empty() ? "mtranslate" : printable(diagnostic.file);
        if (diagnostic.line > 0) place += ':' + std::to_string(diagnostic.line);
        if (diagnostic.column > 0) place += ':' + std::to_string(diagnostic.column);
        return place;
    }

    const char *in(const char *colour) const { return style_.has_colours ? colour : ""; }

    /* The text, after it the code where there is one. */
    std::string with_code(const std::string &text, const std::string &code) const {
        return code.empty() ? text : text + " [" + linked(code) + "]";
    }

    /* By the sequence that terminals take for a link, or leave out. */
    std::string linked(const std::string &code) const {
        if (!style_.has_links) return code;
        const std::string uri = uri_of_explanation(*find_message(code));
        return "\x1b]8;;" + uri + "\x1b\\" + code + "\x1b]8;;\x1b\\";
    }

    void write_line(const std::string &place, MessageSeverity severity, const std::string &text) {
        to_ << in(BOLD) << place << ": " << in(SEVERITY_COLOURS[severity])
            << severity_name(severity) << ": " << in(PLAIN) << text << '\n';
    }

    void write_excerpt(const std::string &excerpt) {
        const std::size_t marks = excerpt.find('\n') + 1;
        to_ << excerpt.substr(0, marks) << in(excerpt.empty() ? "" : MARK_COLOUR)
            << excerpt.substr(marks) << in(excerpt.empty() ? "" : PLAIN);
    }

    /* In front of the first message about a called file. */
    void write_call(const Diagnostic &first) {
        if (first.calling_line == 0) return;
        write_line(printable(first.calling_file) + ':' + std::to_string(first.calling_line),
                   SEVERITY_NOTE,
                   std::string("'").append(printable(first.file)).append("' is called here"));
    }

    /* They come last, in a line for each file. */
    void write_unknown_functions(const Diagnostics &diagnostics) {
        std::vector<std::pair<const std::string *, std::vector<std::string>>> names;
        for (const Diagnostic &diagnostic : diagnostics) {
            if (!is_listed(diagnostic)) continue;
            if (names.empty() || *names.back().first != diagnostic.file)
                names.push_back({&diagnostic.file, {}});
            names.back().second.push_back(printable(diagnostic.operands.at(0)) +
                                          (is_class_only(diagnostic) ? " (in classes)" : ""));
        }
        for (const auto &[file, of_file] : names)
            write_line(printable(*file), SEVERITY_WARNING, unknown_text(of_file));
    }

    std::string unknown_text(const std::vector<std::string> &names) const {
        std::string text = std::to_string(names.size()) +
                           (names.size() == 1 ? " function is" : " functions are") +
                           " found nowhere and left to the host: ";
        for (std::size_t i = 0; i < names.size(); ++i) text += (i > 0 ? ", " : "") + names[i];
        return with_code(text, std::string(UNKNOWN_FUNCTION));
    }

    std::ostream &to_;
    const TextStyle style_;
};

}  // namespace

std::unique_ptr<MessageWriter> make_text_writer(std::ostream &to, TextStyle style) {
    return std::make_unique<TextWriter>(to, style);
}

}  // namespace mtranslate
