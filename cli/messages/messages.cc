/* From a message's bytes to what people count in: lines and characters of the user's file. */
#include "cli/messages/messages.h"

#include <algorithm>

#include "cli/messages/excerpt.h"
#include "cli/messages/ignore_comments.h"
#include "cli/support/characters.h"

namespace mtranslate {

namespace {

/* A range of a line. */
struct Range {
    std::string_view line;
    std::size_t begin; /* in bytes; may be the line's length */
    std::size_t end;

    std::string_view before() const { return line.substr(0, begin); }
    std::string_view text() const { return line.substr(begin, end - begin); }
};

/* The part of the message's range that is on its first line. A byte-order mark is not shown. */
Range range_of(const Message &message) {
    constexpr std::string_view MARK = "\xEF\xBB\xBF";
    std::uint32_t length;
    const char *text = line_text(message.source, message.line, &length);
    std::string_view line(text, length);
    std::size_t begin = message.column - 1;
    if (message.line == 1 && line.starts_with(MARK)) {
        line.remove_prefix(MARK.size());
        begin -= std::min(begin, MARK.size());
    }
    begin = std::min(begin, line.size());
    return {line, begin, std::min(begin + message.length, line.size())};
}

}  // namespace

std::size_t ColumnCounter::column(std::size_t line, std::string_view before) {
    if (line != line_ || before.size() < bytes_) bytes_ = characters_ = 0;
    characters_ += count_characters(before.substr(bytes_));
    line_ = line;
    bytes_ = before.size();
    return characters_ + 1;
}

/* The user's name of a file, which may be a copy. */
std::string MessageCollection::shown_name(const char *file) const {
    return !file || file == source_.argument ? source_.shown_name : file;
}

MessageCollection::FileDiagnostics &MessageCollection::file_of(const Message &message) {
    const auto [place, is_new] = places_.try_emplace(message.source, files_.size());
    if (is_new)
        files_.push_back(
            {message.source->caller != nullptr, has_ignore_comments(*message.source), {}, {}});
    return files_[place->second];
}

void MessageCollection::add(const Message &message) {
    FileDiagnostics &of = file_of(message);
    const auto severity = policy_.severity_of(message.id);
    const bool can_be_out = severity_of(message.id) != SEVERITY_ERROR;
    if (!severity || (can_be_out && of.has_ignore_comments && is_ignored(message)))
        ++ignored_;
    else
        of.diagnostics.push_back(diagnostic_of(message, *severity, of.columns));
}

Diagnostic MessageCollection::diagnostic_of(const Message &message, MessageSeverity severity,
                                            ColumnCounter &columns) const {
    const Range range = range_of(message);
    Diagnostic diagnostic;
    diagnostic.code = MessageTable[message.id].code;
    diagnostic.severity = severity;
    diagnostic.text = message.text;
    diagnostic.operands.assign(message.operands, message.operands + message.operand_count);
    diagnostic.file = shown_name(message.file);
    diagnostic.line = message.line;
    diagnostic.column = columns.column(message.line, range.before());
    diagnostic.end_column = diagnostic.column + count_characters(range.text());
    diagnostic.offset = message.offset;
    diagnostic.length = message.length;
    if (message.source->caller) {
        diagnostic.calling_file = shown_name(message.called_from);
        diagnostic.calling_line = message.called_from_line;
    }
    if (!is_listed(diagnostic)) diagnostic.excerpt = excerpt(range.line, range.begin, range.end);
    return diagnostic;
}

Diagnostics MessageCollection::diagnostics() const {
    Diagnostics all;
    const auto append = [&](Diagnostics diagnostics) {
        std::stable_sort(diagnostics.begin(), diagnostics.end(),
                         [](const auto &a, const auto &b) { return a.offset < b.offset; });
        std::move(diagnostics.begin(), diagnostics.end(), std::back_inserter(all));
    };
    for (const bool is_called : {false, true})
        for (const FileDiagnostics &file : files_)
            if (file.is_called == is_called) append(file.diagnostics);
    return all;
}

}  // namespace mtranslate
