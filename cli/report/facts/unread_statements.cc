/* Statements counted over bytes. */
#include "cli/report/facts/unread_statements.h"

#include <algorithm>
#include <array>
#include <string>

namespace mtranslate {

namespace {

/* Words that begin no statement of their own. */
constexpr std::array NO_STATEMENTS{
    "case",        "catch",         "classdef",      "else",
    "elseif",      "end",           "end_try_catch", "end_unwind_protect",
    "endclassdef", "endfor",        "endfunction",   "endif",
    "endmethods",  "endproperties", "endswitch",     "endwhile",
    "enumeration", "events",        "function",      "methods",
    "otherwise",   "properties",    "until",         "unwind_protect_cleanup"};

bool is_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\f'; }
bool is_line_end(char c) { return c == '\n' || c == '\r'; }

class Counter {
public:
    explicit Counter(std::string_view text) : text_(text) {}

    std::size_t count() {
        while (at_ < text_.size()) step();
        end_statement();
        return count_;
    }

private:
    char peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\n';
    }

    std::string_view rest_of_line() const {
        std::size_t end = at_;
        while (end < text_.size() && !is_line_end(text_[end])) ++end;
        return text_.substr(at_, end - at_);
    }

    void step() {
        const char c = peek();
        if (is_line_end(c)) return end_line();
        if (c == '%' || c == '#') return skip_comment();
        if (text_.substr(at_, 3) == "...") return skip_continuation();
        if (c == '"' || (c == '\'' && !follows_operand())) return skip_string(c);
        if (open_.empty() && (c == ';' || c == ',')) return ++at_, end_statement();
        if (c == '(' || c == '[' || c == '{') open_ += c;
        if ((c == ')' || c == ']' || c == '}') && !open_.empty()) open_.pop_back();
        if (!is_blank(c)) note(c);
        ++at_;
    }

    /* Only brackets and braces go on in the next line. */
    void end_line() {
        ++at_;
        if (open_.empty() || open_.back() == '(') end_statement();
    }

    bool is_first_on_line() const {
        std::size_t before = at_;
        while (before > 0 && is_blank(text_[before - 1])) --before;
        return before == 0 || is_line_end(text_[before - 1]);
    }

    /* A line of nothing but %{ or %}, with another as the second byte. */
    bool is_block_mark(char brace) const {
        const std::string_view line = rest_of_line();
        return is_first_on_line() && line.size() >= 2 && line[1] == brace &&
               std::all_of(line.begin() + 2, line.end(), is_blank);
    }

    void skip_line() { at_ += rest_of_line().size(); }

    void skip_comment() {
        int blocks = is_block_mark('{') ? 1 : 0;
        skip_line();
        while (blocks > 0 && at_ < text_.size()) {
            ++at_;
            while (at_ < text_.size() && is_blank(peek())) ++at_;
            const bool is_mark = peek() == '%' || peek() == '#';
            if (is_mark && is_block_mark('{')) ++blocks;
            if (is_mark && is_block_mark('}')) --blocks;
            skip_line();
        }
    }

    void skip_continuation() {
        skip_line();
        if (peek() == '\r' && peek(1) == '\n') ++at_;
        if (at_ < text_.size()) ++at_;
    }

    /* A quote after what has a value transposes it; in brackets no blank may stand between. */
    bool follows_operand() const {
        const bool is_next = at_ > 0 && last_at_ == at_ - 1;
        const bool is_operand =
            is_word(last_) || std::string_view(")]}'.").find(last_) != std::string_view::npos;
        return last_ != '\0' && is_operand && (is_next || open_.empty());
    }

    void skip_string(char quote) {
        note('"');
        for (++at_; at_ < text_.size() && !is_line_end(peek()); ++at_)
            if (peek() == quote && (peek(1) != quote || ++at_ == 0)) break;
        if (peek() == quote) ++at_;
    }

    void note(char c) {
        const bool goes_on = is_word(c) && (last_ == '\0' || last_at_ == at_ - 1);
        if (goes_on && first_word_.size() == length_) first_word_ += c;
        ++length_;
        last_ = c;
        last_at_ = at_;
    }

    void end_statement() {
        if (length_ > 0 && std::find(NO_STATEMENTS.begin(), NO_STATEMENTS.end(), first_word_) ==
                               NO_STATEMENTS.end())
            ++count_;
        first_word_.clear();
        length_ = 0;
        last_ = '\0';
        open_.clear();
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t count_ = 0;
    std::string open_;       /* brackets */
    std::string first_word_; /* of the statement */
    std::size_t length_ = 0; /* bytes of the statement that are no blanks */
    char last_ = '\0';       /* of them */
    std::size_t last_at_ = 0;
};

}  // namespace

std::size_t count_unread_statements(std::string_view text) { return Counter(text).count(); }

}  // namespace mtranslate
