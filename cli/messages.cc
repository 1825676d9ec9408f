/* Messages in the form of a compiler: place, severity, text and code, then the line of the source
 * with the range marked. */
#include "cli/messages.h"

#include <algorithm>

#include "cli/excerpt.h"

namespace mtranslate {

namespace {

std::string line_of(const Message &message) {
    std::uint32_t length;
    const char *line = line_text(message.source, message.line, &length);
    return {line, length};
}

std::string text_of(const SourceMessage &message, const std::string &file) {
    const std::string_view line = message.line_text;
    const std::size_t begin = std::min(message.column - 1, line.size());
    const std::size_t end = std::min(begin + message.length, line.size());
    return file + ':' + std::to_string(message.line) + ':' +
           std::to_string(column_in_characters(line, message.column)) + ": " +
           severity_name(message.row->severity) + ": " + printable(message.text) + " [" +
           message.row->code + "]\n" + excerpt(line, begin, end);
}

/* Names as a list for people; long ones are cut, as the reader wants to know of what kind they
 * are. */
std::string list_of(const std::vector<std::string> &names) {
    constexpr std::size_t MOST = 20;
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), MOST); ++i)
        list.append(i > 0 ? ", " : "").append(printable(names[i]));
    return names.size() > MOST ? list + " and " + std::to_string(names.size() - MOST) + " more"
                               : list;
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

FileMessages &MessageCollection::messages_of(const Message &message,
                                             const std::string &shown_file) {
    const auto [place, is_new] = places_.try_emplace(shown_file, files_.size());
    if (!is_new) return files_[place->second];
    FileMessages &file = files_.emplace_back();
    file.file = printable(shown_file);
    if (message.called_from)
        file.called_from =
            printable(message.called_from) + ':' + std::to_string(message.called_from_line);
    return file;
}

void MessageCollection::add(const Message &message, const std::string &shown_file) {
    FileMessages &of = messages_of(message, shown_file);
    ++counts_[severity_of(message.id)];
    if (message.id == UNKNOWN_FUNCTION) {
        const std::string name = name_in(message.text);
        if (of.unknown_names.insert(name).second) of.unknown_functions.push_back(name);
        return;
    }
    of.messages.push_back({&MessageTable[message.id], message.text, message.line, message.column,
                           message.offset, message.length, line_of(message)});
}

std::string MessageCollection::text() const {
    std::string text;
    for (FileMessages file : files_) {
        std::stable_sort(file.messages.begin(), file.messages.end(),
                         [](const auto &a, const auto &b) { return a.offset < b.offset; });
        if (!file.called_from.empty() && !file.messages.empty())
            text += file.called_from + ": note: '" + file.file + "' is called here\n";
        for (const SourceMessage &message : file.messages) text += text_of(message, file.file);
        text += unknown_text(file);
    }
    return text;
}

std::size_t column_in_characters(std::string_view line, std::size_t column) {
    const std::string_view before = line.substr(0, std::min(column - 1, line.size()));
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    const auto inside = std::count_if(before.begin(), before.end(), continues);
    return column - static_cast<std::size_t>(inside);
}

}  // namespace mtranslate
