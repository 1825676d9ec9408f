/* Quotes, brackets and operators of host texts. */
#include "cli/rules/rules_text.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace mtranslate {

namespace {

constexpr std::string_view OPENING = "([{";
constexpr std::string_view CLOSING = ")]}";
constexpr std::string_view QUOTES = "\"'`";

bool is_one_of(std::string_view set, char c) { return set.find(c) != set.npos; }

bool is_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

/* After the quoted text that begins at the place; at its end where it is not closed. */
std::size_t after_quotes(std::string_view text, std::size_t at) {
    const char quote = text[at];
    for (++at; at < text.size() && text[at] != quote; ++at)
        if (quote == '"' && text[at] == '\\') ++at;
    return std::min(at + 1, text.size());
}

/* After the pair of brackets that begins at the place; at the end where it is not closed. */
std::size_t after_brackets(std::string_view text, std::size_t at) {
    std::size_t depth = 0;
    while (at < text.size()) {
        const char c = text[at];
        at = is_one_of(QUOTES, c) ? after_quotes(text, at) : at + 1;
        if (is_one_of(OPENING, c)) ++depth;
        if (is_one_of(CLOSING, c) && --depth == 0) break;
    }
    return at;
}

/* After what belongs together at the place: quotes, brackets, or one byte. */
std::size_t after_part(std::string_view text, std::size_t at) {
    if (is_one_of(QUOTES, text[at])) return after_quotes(text, at);
    return is_one_of(OPENING, text[at]) ? after_brackets(text, at) : at + 1;
}

bool is_number(std::string_view text) {
    const std::size_t end = text.find_first_not_of("0123456789");
    std::string_view rest = end == text.npos ? "" : text.substr(end);
    if (end == 0 && !rest.starts_with('.')) return false;
    if (rest.starts_with('.'))
        rest.remove_prefix(std::min(rest.find_first_not_of("0123456789", 1), rest.size()));
    if (rest.starts_with('e')) rest.remove_prefix(1);
    if (rest.starts_with('-') || rest.starts_with('+')) rest.remove_prefix(1);
    return rest.find_first_not_of("0123456789") == rest.npos;
}

bool begins_with_word(std::string_view text, std::string_view word) {
    return text.starts_with(word) && (text.size() == word.size() || !is_word(text[word.size()]));
}

/* Whether the text is a procedure from its first word to its last. */
bool is_procedure(std::string_view text) { return begins_with_word(text, "proc"); }

/* Whether a word in front makes a statement of the text. */
bool begins_statement(std::string_view text) {
    constexpr std::string_view WORDS[] = {"if", "for", "while", "return", "break", "next"};
    return std::any_of(std::begin(WORDS), std::end(WORDS),
                       [text](std::string_view word) { return begins_with_word(text, word); });
}

}  // namespace

bool is_operand(std::string_view text) {
    if (text.empty()) return false;
    if (is_number(text)) return true;
    for (std::size_t at = 0; at < text.size();) {
        const bool is_member = text.substr(at, 2) == ":-";
        const bool goes_on = is_member || is_word(text[at]) || is_one_of(QUOTES, text[at]) ||
                             is_one_of(OPENING, text[at]);
        if (!goes_on) return false;
        at = is_member ? at + 2 : after_part(text, at);
    }
    return true;
}

std::string as_operand(const std::string &text) {
    return is_operand(text) ? text : '(' + text + ')';
}

bool is_statements(std::string_view text) {
    if (is_procedure(text)) return false;
    if (begins_statement(text)) return true;
    for (std::size_t at = 0; at < text.size(); at = after_part(text, at))
        if (text[at] == '\n' || text[at] == ';' || text.substr(at, 2) == ":=") return true;
    return false;
}

std::size_t find_lone_half(std::string_view text) {
    std::vector<std::size_t> open;
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at];
        if (is_one_of(OPENING, c)) open.push_back(at);
        if (is_one_of(CLOSING, c)) {
            if (open.empty() || OPENING.find(text[open.back()]) != CLOSING.find(c)) return at;
            open.pop_back();
        }
        if (!is_one_of(QUOTES, c)) {
            ++at;
            continue;
        }
        const std::size_t end = after_quotes(text, at);
        if (end - at < 2 || text[end - 1] != c) return at;
        at = end;
    }
    return open.empty() ? text.npos : open.back();
}

bool is_host_name(std::string_view text) {
    constexpr std::string_view MEMBER = ":-";
    if (text.size() > 2 && text[0] == '`') return text.find('`', 1) == text.size() - 1;
    const std::size_t end = std::min(text.find(MEMBER), text.size());
    if (end == 0 || std::isdigit(static_cast<unsigned char>(text[0]))) return false;
    if (!std::all_of(text.begin(), text.begin() + static_cast<long>(end), is_word)) return false;
    return end == text.size() || is_host_name(text.substr(end + MEMBER.size()));
}

}  // namespace mtranslate
