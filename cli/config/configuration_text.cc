/* Places, and messages about them. */
#include "cli/config/configuration_text.h"

#include <algorithm>

#include "cli/config/configuration.h"
#include "cli/messages/excerpt.h"
#include "cli/support/characters.h"
#include "cli/support/suggestion.h"

namespace mtranslate {

namespace {

constexpr std::size_t MOST_SHOWN = 100; /* mistakes */

std::string one_of(const std::vector<std::string> &names) {
    std::string list;
    for (const std::string &name : names)
        list += (list.empty() ? "" : name == names.back() ? " or " : ", ") + name;
    return list;
}

}  // namespace

/* Without its end. */
std::string_view ConfigurationText::line_from(std::size_t begin) const {
    const std::string_view rest = std::string_view(text_).substr(begin);
    const std::string_view line = rest.substr(0, rest.find('\n'));
    return line.substr(0, line.find_last_not_of('\r') + 1);
}

RulePlace ConfigurationText::place_of(std::size_t offset) const {
    const TextPlace place = places_.place_of(offset);
    return {name_, place.line, place.column};
}

RulePlace ConfigurationText::place_of(const toml::key &key) const {
    return place_of(offset_of(key.source().begin));
}

void ConfigurationText::report(std::size_t offset, const std::string &message) {
    mistakes_.emplace(offset, message);
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

std::string ConfigurationText::text_of_mistake(std::size_t offset,
                                               const std::string &message) const {
    const std::size_t begin = places_.begin_of_line(offset);
    const std::string_view line = line_from(begin);
    const std::size_t mark = std::min(offset - begin, line.size());
    return text_of(place_of(offset)) + ": error: " + printable(message) + '\n' +
           excerpt(line, mark, mark);
}

void ConfigurationText::throw_mistakes() const {
    if (mistakes_.empty()) return;
    std::string lines;
    std::size_t count = 0;
    for (const auto &[offset, message] : mistakes_) {
        if (++count > MOST_SHOWN) break;
        lines += text_of_mistake(offset, message);
    }
    if (mistakes_.size() > MOST_SHOWN)
        lines += printable(name_) +
                 ": error: mistakes in all: " + std::to_string(mistakes_.size()) + '\n';
    throw ConfigurationError(lines);
}

}  // namespace mtranslate
