/* Reading templates, and filling them. */
#include "cli/rules/rules_template.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "cli/rules/rules_text.h"

namespace mtranslate {

namespace {

constexpr std::size_t MOST_ARGUMENTS = 1000;

std::string joined(const std::vector<std::string> &texts, std::size_t first) {
    std::string list;
    for (std::size_t i = first; i < texts.size(); ++i)
        list.append(i == first ? "" : ", ").append(texts[i]);
    return list;
}

std::string_view without_blanks_after(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view without_blanks_before(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

/* Takes a comma from the text's end, with blanks around it; false where there is none. */
bool drop_comma(std::string &text) {
    std::string_view before = without_blanks_after(text);
    if (!before.ends_with(',')) return false;
    before.remove_suffix(1);
    text = without_blanks_after(before);
    return true;
}

/* The text without a comma at its front, and blanks around it. */
std::string_view without_comma(std::string_view text) {
    const std::string_view rest = without_blanks_before(text);
    return rest.starts_with(',') ? without_blanks_before(rest.substr(1)) : text;
}

/* The last line as far as it has been written. */
std::string last_line(const std::string &text) { return text.substr(text.rfind('\n') + 1); }

/* The number at the front of the text, which is removed; 0 for none that an argument can have. */
std::size_t take_number(std::string_view &text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc() && number <= MOST_ARGUMENTS ? number : 0;
}

}  // namespace

Template::Template(const std::string &text, const std::vector<std::string> &names) {
    std::string outline;  // the text with a word for each place
    for (std::size_t at = 0; at < text.size();) {
        const std::string two = text.substr(at, 2);
        if (text[at] == '{' && two != "{{") {
            const std::size_t offset = at;
            at = read_place(text, at, names);
            pieces_.back().offset = offset;
            pieces_.back().at = outline.size();
            outline += 'x';
            continue;
        }
        if (text[at] == '}' && two != "}}")
            throw TemplateError("this '}' closes nothing; a brace of the text is written '}}'", at);
        append_text(text.substr(at, 1));
        outline += text[at];
        at += two == "{{" || two == "}}" ? 2 : 1;
    }
    const std::size_t lone = find_lone_half(text);
    if (lone != text.npos)
        throw TemplateError(std::string("this '") + text[lone] + "' is unmatched", lone);
    is_statements_ = mtranslate::is_statements(outline);
    const std::string_view all = outline;
    for (Piece &piece : pieces_)
        piece.is_operand = is_bound(all.substr(0, piece.at), all.substr(piece.at + 1));
}

static std::string places_of(const std::vector<std::string> &names) {
    if (names.empty()) return "{1}, {2}, ..., {2..}, {args}, {count} and {results}";
    std::string list;
    for (const std::string &name : names)
        list += (list.empty() ? "{" : name == names.back() ? " and {" : ", {") + name + '}';
    return list;
}

/* Reads a place; answers where the text goes on. */
std::size_t Template::read_place(const std::string &text, std::size_t at,
                                 const std::vector<std::string> &names) {
    const std::size_t end = text.find('}', at);
    if (end == text.npos)
        throw TemplateError("this '{' is not closed; a brace of the text is written '{{'", at);
    const std::string word = text.substr(at + 1, end - at - 1);
    if (!(names.empty() ? append_numbered(word) : append_named(word, names)))
        throw TemplateError("'{" + word + "}' is not allowed here: there " +
                                (names.size() == 1 ? "is " : "are ") + places_of(names) +
                                "; a brace of the text is written '{{'",
                            at);
    return end + 1;
}

bool Template::append_numbered(const std::string &word) {
    std::string_view rest = word;
    const std::size_t number = take_number(rest);
    if (word == "args" || (number > 0 && rest == ".."))
        append_place(Kind::List, std::max<std::size_t>(number, 1));
    else if (word == "count" || word == "results")
        append_place(word == "count" ? Kind::Count : Kind::Results, 0);
    else if (number > 0 && rest.empty())
        append_place(Kind::Argument, number);
    else
        return false;
    return true;
}

bool Template::append_named(const std::string &word, const std::vector<std::string> &names) {
    const auto found = std::find(names.begin(), names.end(), word);
    if (found == names.end()) return false;
    append_place(Kind::Argument, static_cast<std::size_t>(found - names.begin()) + 1);
    return true;
}

void Template::append_text(const std::string &text) {
    if (pieces_.empty() || pieces_.back().kind != Kind::Text) pieces_.push_back({Kind::Text, ""});
    pieces_.back().text += text;
}

void Template::append_place(Kind kind, std::size_t number) {
    const std::size_t needed = kind == Kind::Argument ? number : number > 0 ? number - 1 : 0;
    least_ = std::max(least_, needed);
    has_list_ = has_list_ || kind == Kind::List;
    has_results_ = has_results_ || kind == Kind::Results;
    pieces_.push_back({kind, "", number});
}

/* Nothing binds what stands between brackets, commas, or the ends of statements. */
bool Template::is_bound(std::string_view before, std::string_view after) {
    constexpr std::string_view OPENING = "([{,;\n";
    constexpr std::string_view CLOSING = ")]},;\n";
    before = without_blanks_after(before);
    after = without_blanks_before(after);
    const bool is_free_before = before.empty() || OPENING.find(before.back()) != OPENING.npos;
    const bool is_free_after = after.empty() || CLOSING.find(after.front()) != CLOSING.npos;
    return !is_free_before || !is_free_after;
}

std::string Template::fill(const std::vector<std::string> &arguments,
                           const std::string &results) const {
    const std::string text = fill_statement(arguments, results);
    return is_statements_ ? text : as_operand(text);
}

std::string Template::fill_statement(const std::vector<std::string> &arguments,
                                     const std::string &results) const {
    std::string text;
    bool skips_comma = false;
    for (const Piece &piece : pieces_) {
        if (piece.kind == Kind::Text) text += skips_comma ? without_comma(piece.text) : piece.text;
        if (piece.kind == Kind::Count) text += std::to_string(arguments.size());
        if (piece.kind == Kind::Results) text += results;
        if (piece.kind == Kind::List) text += joined(arguments, piece.number - 1);
        if (piece.kind == Kind::Argument) {
            const std::string &argument = arguments[piece.number - 1];
            text += piece.is_operand ? as_operand(argument) : argument;
        }
        const bool is_empty = piece.kind == Kind::List && piece.number > arguments.size();
        skips_comma = is_empty && !drop_comma(text);
    }
    return text;
}

bool Template::is_alone_on_line(std::size_t piece, const std::string &before) const {
    const bool is_last = piece + 1 == pieces_.size();
    return without_blanks_after(last_line(before)).empty() &&
           (is_last || pieces_[piece + 1].text.starts_with('\n'));
}

std::string Template::fill_lines(const std::vector<std::string> &arguments) const {
    std::string text;
    bool skips_line_end = false;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        const Piece &piece = pieces_[i];
        if (piece.kind == Kind::Text) {
            text += piece.text.substr(skips_line_end ? 1 : 0);
            continue;
        }
        const std::string argument =
            piece.kind == Kind::Argument ? arguments[piece.number - 1] : "";
        skips_line_end = argument.empty() && is_alone_on_line(i, text);
        if (skips_line_end) text.resize(text.size() - last_line(text).size());
        text += argument;
    }
    return text;
}

bool Template::is_plain() const {
    return std::all_of(pieces_.begin(), pieces_.end(),
                       [](const Piece &piece) { return piece.kind == Kind::Text; });
}

std::vector<std::size_t> Template::uses_of(std::size_t number) const {
    std::vector<std::size_t> offsets;
    for (const Piece &piece : pieces_)
        if (piece.kind == Kind::Argument && piece.number == number) offsets.push_back(piece.offset);
    return offsets;
}

std::string Template::name_called() const {
    const bool is_call = pieces_.size() == 3 && pieces_[0].kind == Kind::Text &&
                         pieces_[1].kind == Kind::List && pieces_[1].number == 1 &&
                         pieces_[2].kind == Kind::Text && pieces_[2].text == ")";
    if (!is_call || !pieces_[0].text.ends_with('(')) return "";
    const std::string name = pieces_[0].text.substr(0, pieces_[0].text.size() - 1);
    return is_host_name(name) ? name : "";
}

}  // namespace mtranslate
