/* The table of messages, written out. */
#include "cli/messages/explain.h"

#include <sstream>
#include <utility>
#include <vector>

#include "cli/support/suggestion.h"
#include "cli/support/wrapped.h"

namespace mtranslate {

namespace {

std::string indented(const std::string &text) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) result += "    " + line + '\n';
    return result;
}

std::string explanation_of(const MessageRow &row) {
    std::string text = std::string(row.code) + ", " + row.name + " (" +
                       severity_name(severity_of(row)) + ")\n" + wrapped(general_text(row)) + '\n' +
                       wrapped(row.explanation);
    if (row.example) text += "\nExample:\n" + indented(row.example);
    return text + '\n' + wrapped(std::string("What to do: ") + row.help);
}

std::string list_of_messages() {
    std::string list;
    for (const MessageRow *row : message_rows())
        list += std::string(row->code) + "  " + row->name + ": " + general_text(*row) + '\n';
    return list;
}

/* A heading before the first message of each kind. */
const char *heading_before(std::string_view code) {
    if (code == "MT101") return "Errors: the source cannot be read";
    if (code == "MT201") return "Gaps: no host form is known";
    if (code == "MT301") return "The meaning may differ";
    return code == UNKNOWN_FUNCTION ? "Names and files" : nullptr;
}

std::string section_of(const MessageRow &row) {
    std::string text = std::string("\n### ") + row.code + ": " + row.name + " (" +
                       severity_name(severity_of(row)) + ")\n\n`" + general_text(row) + "`\n\n" +
                       wrapped(row.explanation);
    if (row.example) text += std::string("\n```matlab\n") + row.example + "```\n";
    return text + '\n' + wrapped(row.help);
}

}  // namespace

std::string general_text(const MessageRow &row) {
    std::string text = row.form;
    for (const auto &[from, to] : {std::pair("%s.%s", "..."), {"%s...", "..."}, {"%s", "..."}})
        for (std::size_t at = 0; (at = text.find(from, at)) != text.npos;)
            text.replace(at, std::string_view(from).size(), to);
    return text;
}

std::optional<std::string> explanation(const std::string &code) {
    if (code.empty()) return list_of_messages();
    const MessageRow *row = find_message(code);
    return row ? std::optional(explanation_of(*row)) : std::nullopt;
}

std::string no_explanation(const std::string &code) {
    return "no message has the code '" + code + '\'' + suggestion(code, all_codes());
}

std::vector<std::string> all_codes() {
    std::vector<std::string> codes;
    for (const MessageRow *row : message_rows()) {
        codes.emplace_back(row->code);
        codes.emplace_back(row->name);
    }
    return codes;
}

std::string page_of_messages() {
    std::string page =
        "# Messages\n\n" + wrapped(
                               "What the tool says about a source, by code; `mtranslate explain "
                               "CODE` shows the same. An error or a gap leaves something "
                               "untranslated, and the exit code is 1. A warning or a note stands "
                               "at something that is translated and worth a look. In a text, `...` "
                               "stands for what differs from case to case.");
    for (const MessageRow *row : message_rows()) {
        if (const char *heading = heading_before(row->code))
            page += std::string("\n## ") + heading + '\n';
        page += section_of(*row);
    }
    return page;
}

}  // namespace mtranslate
