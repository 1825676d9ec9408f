// Made-up programs: statements and expressions as pieces, by the grammar of the language.
#include "tests/generate.h"

#include <initializer_list>
#include <random>
#include <vector>

namespace mtranslate {

namespace {

/* Binary operators that group to the left, from the loosest level to the tightest; those of
 * transposes and powers, of prefixes and of ranges have rules of their own. */
const std::vector<std::vector<std::string>> Levels = {{"||"},
                                                      {"&&"},
                                                      {"|"},
                                                      {"&"},
                                                      {"<", "<=", ">", ">=", "==", "~="},
                                                      {":"},
                                                      {"+", "-"},
                                                      {"*", "/", "\\", ".*", "./", ".\\"}};
constexpr size_t RANGES = 5;

class Maker {
public:
    Maker(ProgramKind kind, unsigned seed)
        : kind_(kind), random_(seed * 3 + static_cast<unsigned>(kind)) {}

    Program program() {
        if (kind_ == ProgramKind::FUNCTIONS) {
            for (unsigned count = 1 + number_below(3); count > 0; count--) function(2);
        } else {
            variables();
            statements(3, 4 + number_below(4));
            if (one_in(3)) moved_function(2);
        }
        return std::move(program_);
    }

private:
    unsigned number_below(unsigned n) { return static_cast<unsigned>(random_() % n); }
    bool one_in(unsigned n) { return number_below(n) == 0; }
    std::string pick(std::initializer_list<const char *> texts) {
        return texts.begin()[number_below(static_cast<unsigned>(texts.size()))];
    }

    void put(Piece::Kind kind) { program_.pieces.push_back({kind, ""}); }
    void put(const std::string &text) { program_.pieces.push_back({Piece::TEXT, text}); }
    /* A sign around which blanks may stand; inside brackets they stand on both sides or not. */
    void put_sign(const std::string &sign) {
        if (in_brackets_) return put(one_in(2) ? " " + sign + " " : sign);
        put(Piece::MAY_BREAK);
        put(sign);
        put(Piece::MAY_BREAK);
    }
    void may_break() {
        if (!in_brackets_) put(Piece::MAY_BREAK);
    }

    std::string variable() { return pick({"a", "b", "c", "d"}); }
    std::string new_call() {
        program_.calls.push_back("f" + std::to_string(program_.calls.size() + 1));
        return program_.calls.back();
    }

    // literals

    std::string next_number() { return std::to_string(1000 + program_.literals.size()); }
    void whole_number() {
        put(next_number());
        program_.literals.push_back(next_number());
    }
    void literal() {
        const std::string digits = next_number();
        switch (number_below(6)) {
            case 0: return literal(digits + ".5", digits + ".5");
            case 1: return literal(digits + "D3", digits + "e3");
            case 2: return literal(digits + "j", digits + "*I");
            case 3: return literal("'té" + digits + " %''['", "té" + digits + " %'[");
            case 4: return literal("\"t" + digits + " ...\"\"\"", "t" + digits + " ...\\\"");
            default: return whole_number();
        }
    }
    void literal(const std::string &source, const std::string &host_text) {
        put(source);
        program_.literals.push_back(host_text);
    }

    // expressions

    void expression(int depth) {
        if (depth > 0 && one_in(12)) return anonymous(depth);
        chain(depth > 0 ? number_below(static_cast<unsigned>(Levels.size())) : Levels.size(),
              depth);
    }

    /* Operators of a level or none, between operands of tighter levels. */
    void chain(size_t level, int depth) {
        if (level == Levels.size()) return prefixed(depth);
        unsigned operators = depth <= 0 || one_in(2) ? 0 : 1 + number_below(2);
        if (operators == 0) return chain(level + 1, depth);
        const bool groups = level != RANGES;
        for (unsigned i = 1; groups && i < operators; i++) put(Piece::OPEN);
        operand(level + 1, depth - 1);
        for (unsigned i = 1; i <= operators; i++) {
            put_sign(Levels[level][number_below(static_cast<unsigned>(Levels[level].size()))]);
            operand(level + 1, depth - 1);
            if (groups && i < operators) put(Piece::CLOSE);
        }
    }
    void operand(size_t level, int depth) {
        put(Piece::OPEN);
        chain(level, depth);
        put(Piece::CLOSE);
    }

    void prefixed(int depth) {
        if (depth <= 0 || !one_in(5)) return powers(depth);
        put(pick({"-", "~", "+", "!"}));
        may_break();
        put(Piece::OPEN);
        prefixed(depth - 1);
        put(Piece::CLOSE);
    }

    /* Transposes and powers have one level, and an exponent may have prefixes. */
    void powers(int depth) {
        const unsigned count = depth <= 0 ? 0 : number_below(8) % 4;
        for (unsigned i = 0; i < count; i++) put(Piece::OPEN);
        atom(depth);
        for (unsigned i = 0; i < count; i++) {
            if (one_in(2)) {
                put(ends_with_quote() ? ".'" : pick({"'", ".'"}));
            } else {
                put_sign(pick({"^", ".^"}));
                put(Piece::OPEN);
                put(pick({"", "", "-", "~"}));
                atom(0);
                put(Piece::CLOSE);
            }
            put(Piece::CLOSE);
        }
    }

    /* A quote directly after one would be part of the string. */
    bool ends_with_quote() const {
        size_t last = program_.pieces.size() - 1;
        while (program_.pieces[last].kind != Piece::TEXT) last--;
        return program_.pieces[last].text.ends_with("['");
    }

    void atom(int depth) {
        if (depth <= 0) return leaf();
        switch (number_below(9)) {
            case 0: return enclosed("(", ")", [&] { expression(depth - 1); });
            case 1: return call(depth);
            case 2: return element(depth);
            case 3: return field(depth);
            case 4: return bracketed("[", "]", depth);
            case 5: return bracketed("{", "}", depth);
            default: return leaf();
        }
    }
    void leaf() {
        if (in_index_ && one_in(4)) return put("end");
        switch (number_below(5)) {
            case 0:
            case 1: return literal();
            case 2: return put(new_call());
            case 3: return put("s.p");
            default: return put(variable());
        }
    }

    template <typename Inside>
    void enclosed(const char *open, const char *close, const Inside &inside) {
        const bool outer = in_brackets_;
        in_brackets_ = *open != '(';
        put(open);
        may_break();
        inside();
        may_break();
        put(close);
        in_brackets_ = outer;
    }
    template <typename Inside>
    void indexed(const char *open, const char *close, bool is_index, const Inside &inside) {
        const bool outer = in_index_;
        in_index_ = is_index;
        enclosed(open, close, inside);
        in_index_ = outer;
    }

    void list(unsigned count, int depth) {
        for (unsigned i = 0; i < count; i++) {
            if (i > 0) put(",");
            if (i > 0) may_break();
            if (one_in(8)) {
                put(":");
            } else {
                expression(depth - 1);
            }
        }
    }
    void call(int depth) {
        put(new_call());
        may_break();
        indexed("(", ")", false, [&] { list(number_below(3), depth); });
    }
    void element(int depth) {
        put(variable());
        if (one_in(4)) return put("(2).q");
        index(depth);
    }
    void index(int depth) {
        indexed("(", ")", true, [&] { list(1 + one_in(3), depth); });
    }
    void field(int depth) {
        put(one_in(3) ? "s.(" + variable() + ")" : "s.p" + pick({"", ".q", ".end"}));
        if (one_in(2)) index(depth);
    }
    void anonymous(int depth) {
        put("@");
        may_break();
        if (one_in(4)) return put(new_call());
        const bool outer = in_index_;
        in_index_ = false;
        put("(u)");
        may_break();
        expression(depth - 1);
        in_index_ = outer;
    }
    void bracketed(const char *open, const char *close, int depth) {
        const unsigned rows = 1 + one_in(3);
        const unsigned elements = number_below(3) + (rows > 1);
        enclosed(open, close, [&] {
            for (unsigned row = 0; row < rows; row++) {
                if (row > 0) put(Piece::ROW_END);
                for (unsigned i = 0; i < elements; i++) {
                    if (i > 0) put(Piece::ELEMENT_END);
                    expression(depth - 1);
                }
            }
        });
    }

    // statements

    void variables() {
        for (const char *name : {"a", "b", "c", "d", "s.p"}) {
            put(name + std::string(" = "));
            whole_number();
            put(Piece::STATEMENT_END);
        }
    }

    void statements(int depth, unsigned count) {
        for (; count > 0; count--) statement(depth);
    }
    void statement(int depth) {
        const unsigned choice = number_below(depth > 0 ? 16 : 9);
        if (choice >= 10) return block(depth, choice);
        simple_statement();
        put(Piece::STATEMENT_END);
    }
    void simple_statement() {
        switch (number_below(kind_ == ProgramKind::WITH_GAPS ? 11 : 9)) {
            case 0: return whole_call();
            case 1: return several_targets();
            case 2: return put(new_call() + " on all -x");
            case 3: return put(pick({"global g", "return", "d++", "d--"}));
            case 4: put(variable()); return assigned_by(pick({"+=", "-=", "*=", "/="}));
            case 9: return gap();
            default: target(); return assigned_by("=");
        }
    }
    void whole_call() {
        put(new_call());
        indexed("(", ")", false, [&] { list(number_below(4), 2); });
    }
    void assigned_by(const std::string &sign) {
        put(" " + sign);
        put(Piece::MAY_BREAK);
        expression(3);
    }
    void target() {
        switch (number_below(8)) {
            case 0: put(variable()); return index(1);
            case 1: put("z"); return indexed("{", "}", true, [&] { may_index_by_brackets(); });
            case 2: return put("s.p" + pick({".q", "", ".end"}));
            case 3: return put("s.(" + variable() + ")");
            default: return put(variable());
        }
    }
    /* Inside braces the rules of blanks are those of brackets. */
    void may_index_by_brackets() { put(pick({"2", "end+1", "end", "a"})); }
    void several_targets() {
        put("[a");
        put(Piece::ELEMENT_END);
        put(pick({"b", "~", "s.p", "c(2)"}));
        put("]");
        put_sign("=");
        whole_call();
    }
    void gap() {
        switch (number_below(3)) {
            case 0: return put("eval(a)");
            case 1: return put("a(1, 2) = []");
            default: return put("[z{:}] = " + new_call() + "(1)");
        }
    }

    void block(int depth, unsigned choice) {
        switch (choice) {
            case 10: return loop(depth);
            case 11: return repeated_while(depth);
            case 12: return switched(depth);
            case 13: return special_block(depth);
            default: return conditional(depth);
        }
    }
    void head(const std::string &word, int depth) {
        put(word);
        put(Piece::BREAK);
        expression(depth);
        put(Piece::HEAD_END);
    }
    void body(int depth) { statements(depth - 1, number_below(3)); }
    void word(const char *word) {
        put(word);
        put(Piece::HEAD_END);
    }
    void end() {
        put("end");
        put(Piece::STATEMENT_END);
    }

    void conditional(int depth) {
        head("if", 2);
        body(depth);
        for (unsigned count = number_below(3); count > 0; count--) {
            head("elseif", 2);
            body(depth);
        }
        if (one_in(2)) {
            word("else");
            body(depth);
        }
        end();
    }
    void loop_body(int depth) {
        body(depth);
        if (one_in(4)) {
            put(pick({"break", "continue"}));
            put(Piece::STATEMENT_END);
        }
        end();
    }
    void loop(int depth) {
        put(pick({"for", "for", "parfor"}));
        put(Piece::BREAK);
        put(pick({"k", "k", "a"}));
        put_sign("=");
        expression(2);
        put(Piece::HEAD_END);
        loop_body(depth);
    }
    void repeated_while(int depth) {
        head("while", 2);
        loop_body(depth);
    }
    void switched(int depth) {
        put("switch");
        put(Piece::BREAK);
        expression(1);
        put(Piece::LINE_END);
        for (unsigned count = number_below(3); count > 0; count--) {
            put("case");
            put(Piece::BREAK);
            if (one_in(2)) {
                bracketed("{", "}", 1);
            } else {
                literal();
            }
            put(Piece::HEAD_END);
            body(depth);
        }
        if (one_in(2)) {
            word("otherwise");
            body(depth);
        }
        end();
    }
    void special_block(int depth) {
        if (kind_ != ProgramKind::WITH_GAPS) return repeated_until(depth);
        word("try");
        body(depth);
        put("catch e");
        put(Piece::LINE_END);
        body(depth);
        end();
    }
    void repeated_until(int depth) {
        word("do");
        body(depth);
        put("until");
        put(Piece::BREAK);
        expression(2);
        put(Piece::STATEMENT_END);
    }

    // functions

    void moved_function(int depth) {
        program_.is_in_order = false;
        function(depth);
    }
    void function(int depth) {
        put("function");
        put(Piece::BREAK);
        put("[a");
        put(Piece::ELEMENT_END);
        put(pick({"b", "r"}) + "]");
        put_sign("=");
        put("n" + std::to_string(++functions_));
        put(pick({"(b, c)", "(c, varargin)", "(a, ~, b)"}));
        put(Piece::LINE_END);
        variables();
        statements(depth, 2 + number_below(3));
        if (depth > 1 && one_in(3)) moved_function(depth - 1);
        end();
    }

    const ProgramKind kind_;
    std::mt19937 random_;
    Program program_;
    bool in_brackets_ = false; /* [ ] or { }, where blanks count */
    bool in_index_ = false;    /* of a variable, where end has a meaning */
    unsigned functions_ = 0;
};

class Writer {
public:
    explicit Writer(const Writing &writing) : writing_(writing), random_(writing.seed) {}

    std::string write(const std::vector<Piece> &pieces) {
        for (const Piece &piece : pieces) write(piece);
        return std::move(text_);
    }

private:
    bool one_in(unsigned n) { return random_() % n == 0; }
    std::string pick(std::initializer_list<const char *> texts) {
        return texts.begin()[random_() % texts.size()];
    }
    std::string comment() {
        if (!writing_.has_comments || one_in(2)) return "";
        return pick({" % ", "%", "\t# "}) + mark();
    }
    std::string mark() { return "_" + std::to_string(comments_++) + "_"; }

    void write(const Piece &piece) {
        switch (piece.kind) {
            case Piece::TEXT: text_ += piece.text; return;
            case Piece::MAY_BREAK: return may_break();
            case Piece::BREAK: text_ += " "; return may_break();
            case Piece::OPEN: text_ += writing_.has_parentheses ? "(" : ""; return;
            case Piece::CLOSE: text_ += writing_.has_parentheses ? ")" : ""; return;
            case Piece::ELEMENT_END: return end_element();
            case Piece::ROW_END: return end_row();
            case Piece::HEAD_END: return end_by(pick({"", ",", ";"}), "");
            case Piece::STATEMENT_END: return end_by(pick({"", ",", ";"}), ";");
            case Piece::LINE_END: text_ += comment(); return end_line();
        }
    }

    void may_break() {
        if (writing_.has_blanks) text_ += pick({"", " ", "  ", "\t"});
        if (writing_.has_continuations && one_in(4)) break_line();
    }
    void break_line() {
        text_ += "...";
        if (writing_.has_comments) text_ += " " + mark();
        text_ += writing_.line_end;
    }
    void end_element() {
        text_ += writing_.has_separators ? pick({",", ", ", " , ", " "}) : ", ";
        if (writing_.has_continuations && one_in(4)) break_line();
    }
    void end_row() {
        const bool is_broken = writing_.has_separators && one_in(2);
        if (!is_broken || one_in(2)) text_ += ";";
        if (!is_broken) return;
        text_ += comment();
        text_ += writing_.line_end;
    }
    void end_by(const std::string &separator, const char *usual) {
        text_ += writing_.has_separators ? separator : usual;
        if (writing_.has_separators && !separator.empty() && one_in(3)) {
            text_ += " ";
            return;
        }
        text_ += comment();
        end_line();
    }
    void end_line() {
        text_ += writing_.line_end;
        if (writing_.has_blanks && one_in(6)) text_ += " " + writing_.line_end;
        if (!writing_.has_comments || !one_in(4)) return;
        if (one_in(3)) {
            text_ += "%{" + writing_.line_end + mark() + writing_.line_end + "%}";
        } else {
            text_ += "  % " + mark();
        }
        text_ += writing_.line_end;
    }

    const Writing writing_;
    std::mt19937 random_;
    std::string text_;
    int comments_ = 0;
};

}  // namespace

Program make_program(ProgramKind kind, unsigned seed) { return Maker(kind, seed).program(); }

std::string written(const Program &program, const Writing &writing) {
    return Writer(writing).write(program.pieces);
}

}  // namespace mtranslate
