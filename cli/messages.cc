/* Messages in the form of a compiler: place, severity, text and code, then the line of the source
 * with the range marked. */
#include "cli/messages.h"

#include <algorithm>

#include "cli/excerpt.h"

namespace mtranslate {

namespace {

/* A range of a line. */
struct Range {
    std::string_view line;
    std::size_t begin; /* in bytes; may be the line's length */
    std::size_t end;
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

std::string text_of(const Message &message, const Range &range, const std::string &file,
                    std::size_t column) {
    const MessageRow &row = MessageTable[message.id];
    return file + ':' + std::to_string(message.line) + ':' + std::to_string(column) + ": " +
           severity_name(row.severity) + ": " + printable(message.text) + " [" + row.code + "]\n" +
           excerpt(range.line, range.begin, range.end);
}

std::string list_of(const std::vector<std::string> &names) {
    std::string list;
    for (const std::string &name : names) list.append(list.empty() ? "" : ", ").append(name);
    return list;
}

std::string unknown_text(const FileMessages &of) {
    const std::size_t count = of.unknown_functions.size();
    if (count == 0) return "";
    return of.file + ": warning: " + std::to_string(count) +
           (count == 1 ? " function is" : " functions are") +
           " found nowhere and left to the host: " + list_of(of.unknown_functions) + " [" +
           MessageTable[UNKNOWN_FUNCTION].code + "]\n";
}

/* The name between the quotes of the message's text. */
std::string name_in(std::string_view text) {
    const std::size_t begin = text.find('\'') + 1;
    return std::string(text.substr(begin, text.rfind('\'') - begin));
}

}  // namespace

std::size_t ColumnCounter::column(std::size_t line, std::string_view before) {
    if (line != line_ || before.size() < bytes_) bytes_ = characters_ = 0;
    characters_ += count_characters(before.substr(bytes_));
    line_ = line;
    bytes_ = before.size();
    return characters_ + 1;
}

MessageCollection::MessageCollection(const Source &source) : source_(source) {
    files_.emplace_back().file = printable(source.shown_name);
    places_.emplace(source.shown_name, 0);
}

/* The user's name of a file, which may be a copy. */
std::string MessageCollection::shown_name(const char *file) const {
    return !file || file == source_.argument ? source_.shown_name : file;
}

FileMessages &MessageCollection::messages_of(const Message &message) {
    const std::string name = shown_name(message.file);
    const auto [place, is_new] = places_.try_emplace(name, files_.size());
    if (!is_new) return files_[place->second];
    FileMessages &file = files_.emplace_back();
    file.file = printable(name);
    file.called_from =
        printable(shown_name(message.called_from)) + ':' + std::to_string(message.called_from_line);
    return file;
}

void MessageCollection::add(const Message &message) {
    FileMessages &of = messages_of(message);
    ++counts_[severity_of(message.id)];
    if (message.id == UNKNOWN_FUNCTION) {
        of.unknown_functions.push_back(name_in(message.text));
        return;
    }
    const Range range = range_of(message);
    const std::size_t column = of.columns.column(message.line, range.line.substr(0, range.begin));
    of.messages.push_back({message.offset, text_of(message, range, of.file, column)});
}

std::string MessageCollection::text() const {
    std::string text;
    for (FileMessages file : files_) {
        std::stable_sort(file.messages.begin(), file.messages.end(),
                         [](const auto &a, const auto &b) { return a.offset < b.offset; });
        if (!file.called_from.empty() && !file.messages.empty())
            text += file.called_from + ": note: '" + file.file + "' is called here\n";
        for (const ShownMessage &message : file.messages) text += message.text;
    }
    for (const FileMessages &file : files_) text += unknown_text(file);
    return text;
}

}  // namespace mtranslate
