/* Places, and messages about them. */
#include "cli/config/configuration_text.h"

#include <algorithm>

#include "cli/config/configuration.h"
#include "cli/messages/excerpt.h"
#include "cli/support/characters.h"
#include "cli/support/suggestion.h"

namespace mtranslate {

namespace {

std::string one_of(const std::vector<std::string> &names) {
    std::string list;
    for (const std::string &name : names)
        list += (list.empty() ? "" : name == names.back() ? " or " : ", ") + name;
    return list;
}

}  // namespace

/* Columns count characters. */
std::size_t ConfigurationText::offset_of(const toml::source_position &place) const {
    std::size_t at = 0;
    for (auto line = place.line; line > 1 && at < text_.size(); --line)
        at = std::min(text_.find('\n', at), text_.size() - 1) + 1;
    const auto continues = [this](std::size_t byte) {
        return byte < text_.size() && (text_[byte] & 0xC0) == 0x80;
    };
    for (auto column = place.column; column > 1 && at < text_.size(); --column)
        for (++at; continues(at);) ++at;
    return at;
}

std::size_t ConfigurationText::begin_of_line(std::size_t offset) const {
    return offset == 0 ? 0 : text_.rfind('\n', offset - 1) + 1;  // npos + 1 is 0
}

/* Without its end. */
std::string_view ConfigurationText::line_from(std::size_t begin) const {
    const std::string_view rest = std::string_view(text_).substr(begin);
    const std::string_view line = rest.substr(0, rest.find('\n'));
    return line.substr(0, line.find_last_not_of('\r') + 1);
}

RulePlace ConfigurationText::place_of(std::size_t offset) const {
    const std::size_t begin = begin_of_line(offset);
    const auto before = std::string_view(text_).substr(0, begin);
    const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    return {name_, lines + 1, count_characters(line_from(begin).substr(0, offset - begin)) + 1};
}

RulePlace ConfigurationText::place_of(const toml::key &key) const {
    return place_of(offset_of(key.source().begin));
}

void ConfigurationText::report(std::size_t offset, const std::string &message) {
    const RulePlace place = place_of(offset);
    const std::size_t begin = begin_of_line(offset);
    const std::string_view line = line_from(begin);
    const std::size_t mark = std::min(offset - begin, line.size());
    mistakes_.emplace(offset, text_of(place) + ": error: " + printable(message) + '\n' +
                                  excerpt(line, mark, mark));
}

void ConfigurationText::report(const toml::source_position &place, const std::string &message) {
    report(offset_of(place), message);
}

void ConfigurationText::report(const toml::key &key, const std::string &message) {
    report(offset_of(key.source().begin), message);
}

void ConfigurationText::report(const toml::node &value, const std::string &message) {
    report(offset_of(value.source().begin), message);
}

/* A string with escapes is marked at its beginning. */
void ConfigurationText::report_in(const toml::node &string, std::size_t byte,
                                  const std::string &message) {
    const std::size_t begin = offset_of(string.source().begin);
    const std::string_view raw = std::string_view(text_).substr(begin);
    const bool is_long = raw.starts_with("'''") || raw.starts_with(R"(""")");
    const std::size_t quotes = is_long ? 3 : 1;
    const std::size_t first = quotes + (is_long && raw.substr(quotes).starts_with('\n') ? 1 : 0);
    const bool is_plain = raw.substr(first).starts_with(string.value_or<std::string>(""));
    report(is_plain ? begin + first + byte : begin, message);
}

void ConfigurationText::report_unknown(const toml::key &key,
                                       const std::vector<std::string> &known) {
    const std::string name(key.str());
    const std::string nearest = suggestion(name, known);
    report(key, "unknown key '" + name + '\'' +
                    (nearest.empty() ? "; expected " + one_of(known) : nearest));
}

void ConfigurationText::throw_mistakes() const {
    std::string lines;
    for (const auto &[offset, line] : mistakes_) lines += line;
    if (!lines.empty()) throw ConfigurationError(lines);
}

}  // namespace mtranslate
