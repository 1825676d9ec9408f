// The form of host text.
#include "tests/host_text.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <map>
#include <set>
#include <vector>

namespace mtranslate {

namespace {

bool is_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

/* The end of a quoted text that begins at a position; npos where it is not closed on its line. */
size_t end_of_quoted(std::string_view text, size_t at) {
    const char quote = text[at++];
    for (; at < text.size() && text[at] != '\n'; at++) {
        if (text[at] == quote) return at + 1;
        if (text[at] == '\\' && quote == '"') at++;
    }
    return std::string_view::npos;
}

/* Splits host text: a word or number, a quoted text, a comment, a line end, a prefix with its
 * member, or any other character alone. Blanks are left out. */
class Tokens {
public:
    explicit Tokens(std::string_view text) : text_(text) {}

    /* The next token; empty at the end, a lone quote where a quoted text is not closed. */
    std::string_view next() {
        while (at_ < text_.size() && text_[at_] == ' ') at_++;
        start_ = at_;
        at_ = end_of_token();
        return text_.substr(start_, at_ - start_);
    }
    size_t start() const { return start_; }

private:
    size_t end_of_token() const {
        if (at_ == text_.size()) return at_;
        const char first = text_[at_];
        if (first == '#') return std::min(text_.find('\n', at_), text_.size());
        if (first == '"' || first == '\'' || first == '`') {
            const size_t end = end_of_quoted(text_, at_);
            return end == std::string_view::npos ? at_ + 1 : end;
        }
        const bool is_member = text_.substr(at_, 2) == ":-";
        size_t end = at_ + (is_member ? 2 : 1);
        if (!is_member && !is_word(first)) return end;
        while (end < text_.size() && is_word(text_[end])) end++;
        return end;
    }

    std::string_view text_;
    size_t at_ = 0;
    size_t start_ = 0;
};

/* What is open: a closing bracket, the end of a block, or before its body what ends its head,
 * "then", "do" or "proc(". */
struct Open {
    std::string_view end;
    size_t line; /* where it begins */
};

bool is_block(const Open &what) { return what.end.starts_with("end "); }

/* Follows a text and keeps what is open. */
class Checker {
public:
    std::string check(std::string_view text) {
        Tokens tokens(text);
        while (error_.empty()) {
            const std::string_view token = tokens.next();
            if (token.empty()) break;
            if (token[0] == '#') continue;
            if (token == "\n") {
                end_line();
                line_start_ = tokens.start() + 1;
                line_++;
                continue;
            }
            if (last_.empty()) check_indentation(token, tokens.start() - line_start_);
            take(token);
            last_ = token;
        }
        if (error_.empty() && !open_.empty())
            fail("'" + std::string(open_.back().end) + "' is missing at the end");
        return error_;
    }

private:
    void fail(const std::string &what) {
        if (error_.empty()) error_ = "line " + std::to_string(line_) + ": " + what;
    }
    bool is_open(std::string_view what) const { return !open_.empty() && open_.back().end == what; }
    void open(const char *end) { open_.push_back({end, line_}); }
    void replace(std::string_view expected, const char *by) {
        if (!is_open(expected)) return fail(std::string(by) + " stands alone");
        open_.back().end = by;
    }

    /* How many lines begin the first of the blocks. */
    size_t lines_of_blocks(size_t count) const {
        size_t lines = 0;
        size_t last = 0;
        for (size_t i = 0; i < count; i++) {
            if (!is_block(open_[i]) || open_[i].line == last) continue;
            last = open_[i].line;
            lines++;
        }
        return lines;
    }

    void check_indentation(std::string_view first, size_t indentation) {
        if (first == "then" && is_open("then")) return;
        const bool leaves = first == "end" || first == "else" || first == "elif";
        size_t count = open_.size();
        if (leaves && count > 0) {
            const size_t head = open_.back().line;
            while (count > 0 && open_[count - 1].line == head) count--;
        }
        const size_t depth = lines_of_blocks(count);
        if (indentation != std::min<size_t>(2 * depth, 100))
            fail("indented by " + std::to_string(indentation));
    }

    void end_line() {
        static const std::map<std::string_view, bool> ends = {
            {";", true}, {":", true}, {"then", true}, {"do", true}, {"else", true}};
        const bool is_head = last_ == ")" && is_open("end proc") && head_ends_;
        const bool has_then_below =
            last_ == "}" && is_open("then");  // of a case with several values
        if (!last_.empty() && !ends.contains(last_) && !is_head && !has_then_below)
            fail("a line ends after '" + std::string(last_) + "'");
        if (!open_.empty() && !is_block(open_.back()) && !has_then_below)
            fail("a line ends in front of " + std::string(open_.back().end));
        last_ = {};
    }

    void take(std::string_view token) {
        head_ends_ = false;
        if (after_end_) return close_block(token);
        static const std::map<std::string_view, const char *> brackets = {
            {"(", ")"}, {"[", "]"}, {"{", "}"}};
        if (const auto bracket = brackets.find(token); bracket != brackets.end())
            return open(bracket->second);
        if (token == ")" || token == "]" || token == "}") return close_bracket(token);
        if (token == "\"" || token == "'" || token == "`") return fail("a text is open");
        take_word(token);
    }

    void close_bracket(std::string_view token) {
        if (!is_open(token)) return fail("'" + std::string(token) + "' closes nothing");
        open_.pop_back();
        if (!is_open("proc(")) return;
        open_.back().end = "end proc";
        head_ends_ = true;
    }

    void take_word(std::string_view token) {
        if (token == "proc") return open("proc(");
        if (token == "if") return open("then");
        if (token == "while") return open("do");
        if (token == "for") return open("do");
        if (token == "elif") return replace("end if", "then");
        if (token == "then") return replace("then", "end if");
        if (token == "do") return replace("do", "end do");
        if (token == "else" && !is_open("end if")) return fail("else stands alone");
        after_end_ = token == "end";
    }

    void close_block(std::string_view word) {
        after_end_ = false;
        if (!is_open("end " + std::string(word)))
            return fail("no block for end " + std::string(word));
        open_.pop_back();
    }

    std::vector<Open> open_;
    std::string_view last_; /* token of the line; empty at its start */
    bool after_end_ = false;
    bool head_ends_ = false; /* the last token has closed the parameters of a procedure */
    size_t line_ = 1;
    size_t line_start_ = 0;
    std::string error_;
};

}  // namespace

static bool begins_with_operator(std::string_view line) {
    static const std::set<std::string_view> operators = {
        "+",  "-",  "*",  "/",  ".", "^", "+~", "-~",  "*~", "/~",
        "^~", "<>", "<=", ">=", "<", ">", "=",  "and", "or"};
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return operators.contains(line.substr(0, line.find(' ')));
}

static bool goes_on(std::string_view line, std::string_view next) {
    std::string_view last;
    Tokens tokens(line);
    for (std::string_view token = tokens.next(); !token.empty(); token = tokens.next()) {
        if (token[0] == '#') return false;
        last = token;
    }
    return last == "," || last == "=" || last == "(" || begins_with_operator(next);
}

std::string with_whole_lines(std::string_view host_text) {
    std::string text;
    std::string_view line;
    while (!host_text.empty()) {
        const std::string_view next = host_text.substr(0, host_text.find('\n'));
        if (!text.empty() && goes_on(line, next)) {
            text.back() = ' ';  // in the place of the line's end
            text += next.substr(std::min(next.find_first_not_of(' '), next.size()));
        } else {
            text += next;
        }
        if (next.size() < host_text.size()) text += '\n';
        host_text.remove_prefix(std::min(next.size() + 1, host_text.size()));
        line = next;
    }
    return text;
}

std::string form_error(std::string_view host_text) {
    return Checker().check(with_whole_lines(host_text));
}

static bool is_line_start(const std::string &text) { return text.empty() || text.ends_with('\n'); }

std::string without_comments(std::string_view host_text) {
    std::string text;
    Tokens tokens(host_text);
    for (std::string_view token = tokens.next(); !token.empty(); token = tokens.next()) {
        if (token[0] == '#' || (token == "\n" && is_line_start(text))) continue;
        text += token;
        if (token != "\n") text += ' ';
    }
    // An else with comments alone stands for none.
    constexpr std::string_view EMPTY_ELSE = "else \nend if";
    while ((text.find(EMPTY_ELSE)) != std::string::npos)
        text.erase(text.find(EMPTY_ELSE), strlen("else \n"));
    return text;
}

}  // namespace mtranslate
