/* Patterns of the user, one after the other. */
#include "cli/messages/message_policy.h"

#include "cli/support/suggestion.h"

namespace mtranslate {

namespace {

const MessageRow &row_of(const std::string &code) {
    if (const MessageRow *row = find_message(code)) return *row;
    std::vector<std::string> known;
    for (const MessageRow *row : message_rows()) known.insert(known.end(), {row->code, row->name});
    throw PolicyError("no message has the code or name '" + code + "'" + suggestion(code, known));
}

/* Takes the prefix off the text, if it is there. */
bool skip(std::string_view &text, std::string_view prefix) {
    if (!text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

}  // namespace

MessagePolicy::Treatment MessagePolicy::treatment_of(const MessageRow &row) const {
    const auto found = treatments_.find(&row);
    return found == treatments_.end() ? Treatment{false, mtranslate::severity_of(row)}
                                      : found->second;
}

void MessagePolicy::add(std::string_view pattern) {
    if (pattern == "error") {
        for (const MessageRow *row : message_rows()) {
            const Treatment of = treatment_of(*row);
            if (of.severity == SEVERITY_WARNING) treatments_[row] = {of.is_out, SEVERITY_ERROR};
        }
        return;
    }
    const bool is_error = skip(pattern, "error=");
    const bool is_out = !is_error && skip(pattern, "no-");
    const MessageRow &row = row_of(std::string(pattern));
    const MessageSeverity severity = mtranslate::severity_of(row);
    if (is_out && severity == SEVERITY_ERROR)
        throw PolicyError(std::string(row.code) + " is an error: it cannot be left out");
    treatments_[&row] = {is_out, is_error ? SEVERITY_ERROR : severity};
}

std::optional<MessageSeverity> MessagePolicy::severity_of(const MessageRow &row) const {
    const Treatment treatment = treatment_of(row);
    if (treatment.is_out) return std::nullopt;
    return treatment.severity;
}

std::vector<std::string> all_patterns() {
    std::vector<std::string> patterns{"error"};
    for (const MessageRow *row : message_rows()) {
        const std::string name = row->name;
        if (severity_of(*row) != SEVERITY_ERROR)
            patterns.insert(patterns.end(), {"no-" + name, "error=" + name});
    }
    return patterns;
}

}  // namespace mtranslate
