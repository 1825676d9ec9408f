/* Reading patterns, and matching them. */
#include "cli/rules/pattern.h"

#include <algorithm>
#include <cctype>

#include "cli/rules/rules_template.h"

namespace mtranslate {

namespace {

constexpr std::string_view EMPTY_ARRAY = "Vector()";

/* A part of a pattern and where it begins. */
struct Part {
    std::string text;
    std::size_t offset;
};

Part trimmed(const std::string &text, std::size_t begin, std::size_t end) {
    while (begin < end && text[begin] == ' ') ++begin;
    while (end > begin && text[end - 1] == ' ') --end;
    return {text.substr(begin, end - begin), begin};
}

/* What stands between the commas outside of quotes. */
std::vector<Part> parts_of(const std::string &text) {
    std::vector<Part> parts;
    std::size_t begin = 0;
    char quote = 0;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const bool is_end = at == text.size();
        if (!is_end && quote == 0 && (text[at] == '\'' || text[at] == '"'))
            quote = text[at];
        else if (!is_end && text[at] == quote)
            quote = 0;
        if (!is_end && (text[at] != ',' || quote != 0)) continue;
        parts.push_back(trimmed(text, begin, at));
        begin = at + 1;
    }
    return parts;
}

/* The characters between the quotes of a text of MATLAB, where a doubled quote is one. */
std::optional<std::string> characters_of(const std::string &literal) {
    const char quote = literal.front();
    if ((quote != '\'' && quote != '"') || literal.size() < 2 || literal.back() != quote)
        return std::nullopt;
    std::string characters;
    for (std::size_t at = 1; at + 1 < literal.size(); ++at) {
        if (literal[at] == quote && literal[++at] != quote) return std::nullopt;
        if (at + 1 >= literal.size()) return std::nullopt;
        characters += literal[at];
    }
    return characters;
}

std::string quoted_for_host(const std::string &characters) {
    std::string text = "\"";
    for (const char c : characters) {
        if (c == '"' || c == '\\') text += '\\';
        text += c;
    }
    return text + '"';
}

bool is_number(std::string_view text) {
    if (text.starts_with('-')) text.remove_prefix(1);
    const auto is_part = [](char c) {
        return std::isdigit(static_cast<unsigned char>(c)) || c == '.';
    };
    return !text.empty() && std::all_of(text.begin(), text.end(), is_part) &&
           std::count(text.begin(), text.end(), '.') <= 1 && text != ".";
}

bool is_word(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    });
}

/* A negative number is handed over in parentheses. */
std::string_view without_pair(std::string_view argument) {
    const bool has_pair = argument.starts_with("(-") && argument.ends_with(')');
    return has_pair ? argument.substr(1, argument.size() - 2) : argument;
}

}  // namespace

std::optional<std::string> host_text_of_literal(const std::string &literal) {
    if (literal.empty()) return std::nullopt;
    if (literal == "true" || literal == "false" || is_number(literal)) return literal;
    if (literal == "[]") return std::string(EMPTY_ARRAY);
    const auto characters = characters_of(literal);
    return characters ? std::optional(quoted_for_host(*characters)) : std::nullopt;
}

std::optional<std::string> option_literal(const std::string &host_text) {
    if (host_text == "true" || host_text == "false") return host_text;
    const bool is_text = host_text.size() > 2 && host_text.starts_with('"');
    const std::string word = is_text ? host_text.substr(1, host_text.size() - 2) : "";
    return is_word(word) ? std::optional('\'' + word + '\'') : std::nullopt;
}

ArgumentPattern::ArgumentPattern(const std::string &text) {
    for (const Part &part : parts_of(text)) {
        if (part.text.starts_with('{')) {
            add_place(part.text, part.offset);
        } else if (const auto literal = host_text_of_literal(part.text)) {
            items_.emplace_back(*literal);
        } else {
            throw TemplateError("'" + part.text +
                                    "' is neither a place, as {1}, nor a text, a number, true, "
                                    "false or []",
                                part.offset);
        }
    }
}

void ArgumentPattern::add_place(const std::string &word, std::size_t offset) {
    const std::string number = std::to_string(places_ + 1 + (list_ ? 1 : 0));
    if (word == '{' + number + '}' && !list_) {
        items_.emplace_back(std::nullopt);
        ++places_;
    } else if (word == '{' + number + "..}" && !list_) {
        list_ = items_.size();
    } else {
        throw TemplateError("'" + word +
                                "' does not go on with the places: they are {1}, {2}, ..., "
                                "and the last one may be a list, {2..}",
                            offset);
    }
}

std::optional<std::vector<std::string>> ArgumentPattern::match(
    const std::vector<std::string> &arguments) const {
    const std::size_t count = arguments.size();
    if (count < items_.size() || (!list_ && count > items_.size())) return std::nullopt;
    const std::size_t in_list = count - items_.size();
    std::vector<std::string> open;
    std::size_t at = 0;
    for (std::size_t item = 0; item <= items_.size(); ++item) {
        for (std::size_t i = 0; list_ == item && i < in_list; ++i) open.push_back(arguments[at++]);
        if (item == items_.size()) break;
        const std::string &argument = arguments[at++];
        if (!items_[item])
            open.push_back(argument);
        else if (*items_[item] != without_pair(argument))
            return std::nullopt;
    }
    return open;
}

}  // namespace mtranslate
