/* Arithmetic made up from a number, against an evaluation by MATLAB's levels of operators. */
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>
#include <vector>

#include "tests/executed.h"
#include "tests/matlab_run.h"

namespace mtranslate {

namespace {

constexpr unsigned PROGRAMS = 100;
constexpr int EXPRESSIONS = 25;                                         /* in a program */
constexpr double LARGEST = 1e5;                                         /* of a value on the way */
constexpr double VARIABLES[3][3] = {{2, 5, 1}, {3, 2, 4}, {0.5, 1, 2}}; /* a, b, c */

/* Operators with two operands, from MATLAB's loosest level to its tightest but for powers. */
const std::vector<Texts> LEVELS = {{"|"},
                                   {"&"},
                                   {"<", "<=", ">", ">=", "==", "~="},
                                   {"+", "-"},
                                   {"*", "/", "\\", ".*", "./", ".\\"}};

/* The value of a text, with elements of the variables; no number where MATLAB gives none that
 * stays small and real. */
class Evaluation {
public:
    Evaluation(const std::string &text, size_t element) : text_(text), element_(element) {}

    double value() {
        const double value = level(0);
        EXPECT_EQ(at_, text_.size()) << text_;
        return value;
    }

private:
    bool accept(const std::string &token) {
        while (at_ < text_.size() && text_[at_] == ' ') at_++;
        if (text_.compare(at_, token.size(), token) != 0) return false;
        at_ += token.size();
        return true;
    }

    /* One of the operators, the longest that stands here; empty for none. */
    std::string accept_one(const Texts &tokens) {
        std::string longest;
        for (const std::string &token : tokens) {
            const size_t start = at_;
            if (accept(token) && token.size() > longest.size()) longest = token;
            at_ = start;
        }
        accept(longest);
        return longest;
    }

    static double kept(double value) { return std::fabs(value) <= LARGEST ? value : NAN; }

    double level(size_t number) {
        if (number == LEVELS.size()) return prefixed();
        double left = level(number + 1);
        for (std::string sign; !(sign = accept_one(LEVELS[number])).empty();)
            left = combined(sign, left, level(number + 1));
        return left;
    }

    static double combined(const std::string &sign, double left, double right) {
        if (std::isnan(left + right)) return NAN;
        if (sign == "|") return left != 0 || right != 0;
        if (sign == "&") return left != 0 && right != 0;
        if (sign == "<") return left < right;
        if (sign == "<=") return left <= right;
        if (sign == ">") return left > right;
        if (sign == ">=") return left >= right;
        if (sign == "==") return left == right;
        if (sign == "~=") return left != right;
        if (sign == "+") return kept(left + right);
        if (sign == "-") return kept(left - right);
        if (sign.back() == '*') return kept(left * right);
        return kept(sign.back() == '/' ? left / right : right / left);
    }

    double prefixed() {
        if (accept("-")) return -prefixed();
        if (accept("+")) return prefixed();
        if (accept("~")) return negated(prefixed());
        return powers();
    }

    static double negated(double value) {
        if (std::isnan(value)) return NAN;
        return value == 0 ? 1 : 0;
    }

    double powers() {
        double base = operand();
        while (!accept_one({"^", ".^"}).empty()) {
            const double power = exponent();
            base = std::isnan(base + power) ? NAN : kept(std::pow(base, power));
        }
        return base;
    }

    double exponent() {
        if (accept("-")) return -exponent();
        if (accept("+")) return exponent();
        if (accept("~")) return negated(exponent());
        return operand();
    }

    double operand() {
        if (accept("(")) {
            const double inner = level(0);
            EXPECT_TRUE(accept(")")) << text_;
            return inner;
        }
        for (const size_t which : {0, 1, 2})
            if (accept(std::string(1, "abc"[which]))) return VARIABLES[which][element_];
        size_t length = 0;
        accept("");
        const double number = std::stod(text_.substr(at_), &length);
        at_ += length;
        return number;
    }

    const std::string &text_;
    size_t element_;
    size_t at_ = 0;
};

class Maker {
public:
    explicit Maker(unsigned seed) : random_(seed) {}

    int number(size_t count) { return static_cast<int>(random_() % count); }

    std::string expression(const Texts &operators, int depth) {
        std::string text = operand(operators, depth);
        for (int more = number(4); more > 0; more--) {
            const std::string &sign = operators[number(operators.size())];
            const bool is_power = sign.back() == '^';
            text += is_power ? sign : " " + sign + " ";
            text += operand(operators, depth);
        }
        return text;
    }

private:
    std::string operand(const Texts &operators, int depth) {
        static const char *const PREFIXES[] = {"", "", "", "", "", "", "-", "+", "~", "- -", "-~"};
        const std::string prefix = PREFIXES[number(std::size(PREFIXES))];
        if (depth > 0 && number(3) == 0)
            return prefix + "(" + expression(operators, depth - 1) + ")";
        static const char *const LEAVES[] = {"a", "b", "c", "a", "b", "c", "1", "2", "3", "0.5"};
        return prefix + LEAVES[number(std::size(LEAVES))];
    }

    std::mt19937 random_;
};

struct Equation {
    std::string expression;
    std::vector<double> values; /* the elements of what it means */
};

/* Expressions that have values for as many elements of the variables. */
std::vector<Equation> equations(Maker &maker, const Texts &operators, size_t elements) {
    std::vector<Equation> made;
    while (made.size() < EXPRESSIONS) {
        Equation equation{maker.expression(operators, 2), {}};
        bool has_values = true;
        for (size_t element = 0; element < elements; element++) {
            equation.values.push_back(Evaluation(equation.expression, element).value());
            has_values = has_values && !std::isnan(equation.values.back());
        }
        if (has_values) made.push_back(std::move(equation));
    }
    return made;
}

std::string name_of(size_t at) { return "y" + std::to_string(at); }

/* The statements; in a function, where nothing is known of the parameters, or after values. */
std::string program_of(const std::vector<Equation> &equations, const char *values,
                       bool is_in_function) {
    std::string statements, names;
    for (size_t at = 0; at < equations.size(); at++) {
        statements += name_of(at) + " = " + equations[at].expression + ";\n";
        names += (at == 0 ? "" : ", ") + name_of(at);
    }
    if (!is_in_function) return values + statements;
    return values + ("[" + names + "] = all(a, b, c);\nfunction [" + names + "] = all(a, b, c)\n") +
           statements + "end\n";
}

/* "[1 2]" or "1". */
std::vector<double> numbers_of(const std::string &text) {
    std::istringstream words(text.starts_with('[') ? text.substr(1) : text);
    std::vector<double> numbers;
    for (double number = 0; words >> number;) numbers.push_back(number);
    return numbers;
}

void expect_values(const std::vector<Equation> &equations, const std::string &variables,
                   const std::string &source) {
    ASSERT_FALSE(variables.starts_with("error")) << variables << "\n" << source;
    for (size_t at = 0; at < equations.size(); at++) {
        const auto &[expression, values] = equations[at];
        std::vector<double> found = numbers_of(value_of(variables, name_of(at)));
        if (found.size() == 1) found.resize(values.size(), found[0]);  // no variable is in it
        ASSERT_EQ(found.size(), values.size()) << expression;
        for (size_t k = 0; k < values.size(); k++)
            EXPECT_NEAR(found[k], values[k], 1e-9 * (1 + std::fabs(values[k]))) << expression;
    }
}

void expect_meaning(const Texts &operators, size_t elements, const char *values) {
    for (unsigned seed = 0; seed < PROGRAMS && !testing::Test::HasFailure(); seed++) {
        Maker maker(seed);
        const std::vector<Equation> made = equations(maker, operators, elements);
        const std::string source = program_of(made, values, seed % 2 == 1);
        SCOPED_TRACE("seed " + std::to_string(seed) + ", a, b, c: " + values);
        expect_values(made, executed(source), source);
    }
}

TEST(Arithmetic, of_single_numbers_groups_as_in_matlab) {
    expect_meaning({"+", "-", "*", "/", "\\", ".*", "./", ".\\", "^",  ".^", "+", "-",
                    "*", "/", "^", "<", "<=", ">",  ">=", "==",  "~=", "&",  "|"},
                   1, "a = 2; b = 3; c = 0.5;\n");
}

TEST(Arithmetic, of_arrays_groups_as_in_matlab) {
    expect_meaning({"+", "-", ".*", "./", ".\\", ".^", "+", "-", ".*", "./", ".^", "<",
                    "==", "~=", ">=", "&", "|"},
                   3, "a = [2 5 1]; b = [3 2 4]; c = [0.5 1 2];\n");
}

TEST(Arithmetic, bounds_loops) {
    Maker maker(1);
    const Texts operators = {"+", "-", "*", "/", "+", "-", "^"};
    for (int loop = 0; loop < 400 && !HasFailure(); loop++) {
        std::string bounds[3];
        double values[3];
        for (int k = 0; k < 3; k++) {
            bounds[k] = maker.expression(operators, 1);
            values[k] = Evaluation(bounds[k], 0).value();
        }
        const auto [first, step, last] = values;
        if (std::isnan(first + step + last) || step == 0 || std::fabs(last - first) > 20) continue;
        if (std::fabs(step) < 0.1) continue;
        double sum = 0;
        const double count = std::floor((last - first) / step * (1 + 0x1p-52)) + 1;
        for (int k = 0; k < count; k++) sum = 2 * sum + first + k * step;
        const std::string range = bounds[0] + ":" + bounds[1] + ":" + bounds[2];
        std::string source = "a = 2; b = 3; c = 0.5; s = 0; for k = ";
        source.append(range).append(", s = 2*s + k; end, x = ").append(range).append(";");
        const std::string variables = executed(source);
        ASSERT_FALSE(variables.starts_with("error")) << variables << "\n" << source;
        EXPECT_NEAR(numbers_of(value_of(variables, "s")).at(0), sum, 1e-9 * (1 + std::fabs(sum)))
            << source;
        const std::vector<double> row = numbers_of(value_of(variables, "x"));
        ASSERT_EQ(double(row.size()), std::max(count, 0.0)) << source;
        for (size_t k = 0; k < row.size(); k++)
            EXPECT_NEAR(row[k], first + double(k) * step, 1e-9) << source;
    }
}

}  // namespace

}  // namespace mtranslate
