/* Messages as commands that a workflow's runner reads from a program's output. */
#include <ostream>
#include <string>
#include <string_view>

#include "cli/messages/excerpt.h"
#include "cli/messages/message_writer.h"

namespace mtranslate {

namespace {

/* What would end the property, and what begins an escape. */
std::string escaped(std::string_view text, std::string_view special) {
    constexpr const char *DIGITS = "0123456789ABCDEF";
    std::string result;
    for (const char byte : text) {
        const bool is_special = special.find(byte) != special.npos;
        const auto code = static_cast<unsigned char>(byte);
        result += is_special ? std::string{'%', DIGITS[code >> 4], DIGITS[code & 15]}
                             : std::string(1, byte);
    }
    return result;
}

std::string value(std::string_view text) { return escaped(printable(text), "%"); }
std::string property(std::string_view text) { return escaped(printable(text), "%:,"); }

const char *command_of(MessageSeverity severity) {
    if (severity == SEVERITY_NOTE) return "notice";
    return severity == SEVERITY_WARNING ? "warning" : "error";
}

std::string properties_of(const Diagnostic &diagnostic) {
    std::string list;
    const auto add = [&](const char *name, const std::string &text) {
        list.append(list.empty() ? " " : ",").append(name).append("=").append(property(text));
    };
    if (!diagnostic.file.empty()) add("file", diagnostic.file);
    if (diagnostic.line > 0) add("line", std::to_string(diagnostic.line));
    if (diagnostic.column > 0) {
        add("col", std::to_string(diagnostic.column));
        add("endColumn", std::to_string(diagnostic.end_column));
    }
    if (!diagnostic.code.empty())
        add("title", diagnostic.code + ' ' + find_message(diagnostic.code)->name);
    return list;
}

class GithubWriter : public MessageWriter {
public:
    explicit GithubWriter(std::ostream &to) : to_(to) {}

    void write(const Diagnostics &diagnostics) override {
        for (const Diagnostic &diagnostic : diagnostics)
            to_ << "::" << command_of(diagnostic.severity) << properties_of(diagnostic)
                << "::" << value(diagnostic.text) << '\n';
        to_.flush();
    }

private:
    std::ostream &to_;
};

}  // namespace

std::unique_ptr<MessageWriter> make_github_writer(std::ostream &to) {
    return std::make_unique<GithubWriter>(to);
}

}  // namespace mtranslate
