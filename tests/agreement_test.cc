/* Both front ends on sources that they read alike: generated statements, whose variables have been
 * assigned, become the same host text, but for pairs that keep nothing together and the operators
 * of literal numbers. */
#include <gtest/gtest.h>

#include <random>
#include <regex>

#include "tests/translation.h"

namespace mtranslate {

namespace {

// Makes statements that mean the same to both. Left out is what the classic language misreads, and
// where its host text would group in another way.
class Maker {
public:
    explicit Maker(unsigned seed) : random_(seed) {}

    std::string script() {
        std::string text = "a = 3; b = [1, 2, 3; 4, 5, 6]; c = 'text'; d = 2.5;\n";
        for (int i = 0; i < 6; i++) text += statement() + "\n";
        return text;
    }

private:
    std::string pick(std::initializer_list<const char *> texts) {
        return texts.begin()[random_() % texts.size()];
    }
    bool one_in(unsigned n) { return random_() % n == 0; }
    std::string listed(int count, int depth) {
        std::string text = expression(depth);
        while (--count > 0) text += ", " + expression(depth);
        return text;
    }

    std::string statement() {
        switch (random_() % 8) {
            case 0: return "f(" + listed(2, 2) + ")";
            case 1: return pick({"hold on", "axis equal tight", "format long"});
            case 2: return "[x, y] = g(" + expression(2) + ");";
            case 3:
                return "b(" + pick({"1", "end, 2", "2:3, :", "a"}) + ") = " + expression(2) + ";";
            default: return pick({"x", "y", "c"}) + " = " + expression(3) + ";";
        }
    }
    std::string expression(int depth) {
        if (one_in(5)) return comparison(depth);
        return one_in(8) ? "-" + term(depth) : sum(depth);
    }
    std::string comparison(int depth) {
        const std::string left = sum(depth) + pick({" < ", " >= ", " == ", " ~= "}) + sum(depth);
        return one_in(3) ? left + pick({" & ", " | "}) + "~" + atom(depth) : left;
    }
    std::string sum(int depth) {
        std::string text = term(depth);
        while (one_in(3)) text += pick({" + ", " - "}) + term(depth);
        return text;
    }
    std::string term(int depth) {
        std::string text = power(depth);
        while (one_in(3)) text += pick({"*", ".*", "./"}) + power(depth);
        if (one_in(8)) text += "\\b'";
        return one_in(6) ? text + "/" + number() : text;
    }
    std::string power(int depth) {
        const std::string base = atom(depth);
        if (one_in(8)) return base + "^" + number();
        return one_in(8) ? base + ".^" + atom(0) : base;
    }
    // What classic divides by and raises to in the form of numbers.
    std::string number() { return pick({"2", "0.5", "1e3"}); }
    std::string atom(int depth) {
        if (depth <= 0) return pick({"a", "b", "d", "2", "0.5", "1e3", "true", "f('x', c)"});
        switch (random_() % 8) {
            case 0: return "(" + expression(depth - 1) + ")";
            case 1: return pick({"f", "h", "g"}) + "(" + listed(1 + one_in(3), depth - 1) + ")";
            case 2: return "b(" + index() + ")";
            case 3: return "[" + row(depth - 1) + "; " + row(depth - 1) + "]";
            case 4: return "[" + row(depth - 1) + "]";
            case 5: return pick({"a", "b", "f(1)"}) + pick({"'", ".'"});
            default: return atom(0);
        }
    }
    // What is known to be a text is joined to others, and counts by its characters. Of single
    // numbers alone only matlab knows.
    std::string row(int depth) {
        const std::string first = pick({"a", "b", "d", "7", "0.5", "f(2)", "(a)", "b(1)"});
        return first + ", " + pick({"f(1)", "b'"}) + (depth > 0 && one_in(2) ? ", d" : "");
    }
    std::string index() {
        return pick({"1", "end", ":", "2:3", "a", "1:2:5", "2:end", "1:2:end", "b > 2",
                     "1, :", "end, 1", ":, 2:end", "a + 1, 1:a"});
    }

    std::mt19937 random_;
};

// Without pairs, blanks and copies, and with one writing of each operator.
std::string normalized(std::string text) {
    static const std::regex copy(R"(:= copy\()");
    static const std::regex product(R"( \. )");
    static const std::regex rest(R"([() ~\n])");
    text = std::regex_replace(text, copy, ":=(");
    text = std::regex_replace(text, product, "*");
    return std::regex_replace(text, rest, "");
}

void expect_agreement(StandInHost &host, const std::string &source) {
    const std::string classic = translate(host, "command", source);
    EXPECT_EQ(normalized(translate_in(host, "matlab", "command", source)), normalized(classic))
        << source;
}

TEST(Agreement, generated_scripts) {
    StandInHost silent;
    StandInHost answering;
    answering.translate_name("h", "my_h");
    answering.translate_function("g", "ArrayTools:-Size(A)");
    for (unsigned seed = 0; seed < 400; seed++) {
        const std::string source = Maker(seed).script();
        expect_agreement(silent, source);
        expect_agreement(answering, source);
    }
}

}  // namespace

}  // namespace mtranslate
