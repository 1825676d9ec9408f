/* From a message's bytes to what people count in: lines and characters of the user's file. */
#include "cli/messages/messages.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "cli/messages/excerpt.h"
#include "cli/messages/ignore_comments.h"
#include "cli/support/characters.h"

namespace mtranslate {

namespace {

using Message = mTranslateProgramMessage;

/* A range of a line. */
struct Range {
    std::string_view line;
    std::size_t begin; /* in bytes; may be the line's length */
    std::size_t end;

    std::string_view text() const { return line.substr(begin, end - begin); }
};

std::string_view line_of(const Message &message) {
    return {message.source_line, message.source_line_length};
}

/* The part of the message's range that is on its first line. A byte-order mark is not shown. */
Range range_of(const Message &message) {
    constexpr std::string_view MARK = "\xEF\xBB\xBF";
    const mTranslateProgramRange &place = *message.place;
    std::string_view line = line_of(message);
    std::size_t begin = place.column - 1;
    if (place.line == 1 && line.starts_with(MARK)) {
        line.remove_prefix(MARK.size());
        begin -= std::min(begin, MARK.size());
    }
    begin = std::min(begin, line.size());
    return {line, begin, std::min(begin + (place.end - place.begin), line.size())};
}

void describe(Diagnostic &diagnostic, const Message &message, MessageSeverity severity,
              const RunFiles &files) {
    const Range range = range_of(message);
    const mTranslateProgramRange &place = *message.place;
    diagnostic.code = message.code;
    diagnostic.severity = severity;
    diagnostic.text = message.text;
    diagnostic.operands.assign(message.operands, message.operands + message.operand_count);
    diagnostic.file = files.shown_name(place.file);
    diagnostic.line = place.line;
    diagnostic.column = files.column(place);
    diagnostic.end_column = diagnostic.column + count_characters(range.text());
    diagnostic.offset = place.begin;
    diagnostic.length = place.end - place.begin;
    if (message.called_from_line > 0) {
        diagnostic.calling_file = files.shown_name(message.called_from);
        diagnostic.calling_line = message.called_from_line;
    }
    if (!is_listed(diagnostic)) diagnostic.excerpt = excerpt(range.line, range.begin, range.end);
}

/* Of the sources of a run. They are looked for only where there are any. */
class IgnoreComments {
public:
    explicit IgnoreComments(const RunFiles &files) : files_(files) {}

    bool leave_out(const Message &message) {
        const char *file = message.place->file;
        const std::string_view text = files_.text(file);
        const auto [has_any, is_new] = have_any_.try_emplace(file ? file : "");
        if (is_new) has_any->second = has_ignore_comments(text);
        return has_any->second && is_ignored(*message.kind, line_of(message), text);
    }

private:
    const RunFiles &files_;
    std::map<std::string_view, bool> have_any_;
};

}  // namespace

GivenMessages messages_of(const mTranslateProgramResult &result, const RunFiles &files,
                          const MessagePolicy &policy) {
    GivenMessages given;
    given.diagnostics.reserve(result.message_count);
    IgnoreComments comments(files);
    for (std::size_t i = 0; i < result.message_count; ++i) {
        const Message &message = *result.messages[i];
        if (!message.kind) continue;
        const auto severity = policy.severity_of(*message.kind);
        const bool can_be_out = message.severity != MTRANSLATE_SEVERITY_ERROR;
        if (!severity || (can_be_out && comments.leave_out(message)))
            ++given.ignored;
        else
            describe(given.diagnostics.emplace_back(), message, *severity, files);
    }
    return given;
}

}  // namespace mtranslate
