/* Conditions made up from a number: which sides are evaluated, in which order, and their values. */
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <sstream>
#include <vector>

#include "tests/executed.h"
#include "tests/matlab_run.h"

namespace mtranslate {

namespace {

constexpr unsigned PROGRAMS = 260;
constexpr int CASES = 12; /* in a program */

/* What the variables of a program hold, in the program and for the expected values. */
struct Surroundings {
    double a, b, k, u;
    std::vector<double> x;
};

/* The state of a program that goes on beside the translated one, by MATLAB's rules. */
struct Course {
    const Surroundings *variables;
    double n = 0;
    std::vector<double> trace = {};
    bool has_failed = false; /* a side was evaluated that cannot be */
};

enum class Kind { VALUE, CALL, ELEMENT, COMPARISON, NOT, BOTH, EITHER, AND, OR };

struct Condition {
    Kind kind;
    std::string text;                         /* of a value, an element or an operator */
    std::function<double(Course &)> evaluate; /* of a value, a call or an element */
    std::vector<Condition> parts = {};
};

/* From the loosest operator of MATLAB to the tightest. */
int level_of(Kind kind) {
    switch (kind) {
        case Kind::OR: return 1;
        case Kind::AND: return 2;
        case Kind::EITHER: return 3;
        case Kind::BOTH: return 4;
        case Kind::COMPARISON: return 5;
        case Kind::NOT: return 6;
        default: return 7;
    }
}

std::string text_of(const Condition &condition);

std::string operand_text(const Condition &part, int least_level) {
    const std::string text = text_of(part);
    return level_of(part.kind) < least_level ? "(" + text + ")" : text;
}

std::string text_of(const Condition &condition) {
    const int level = level_of(condition.kind);
    if (condition.parts.empty()) return condition.text;
    const std::string left = operand_text(condition.parts[0], level);
    if (condition.kind == Kind::NOT) return "~" + left;
    return left + " " + condition.text + " " + operand_text(condition.parts[1], level + 1);
}

bool compares(const std::string &relation, double left, double right) {
    if (relation == "<") return left < right;
    if (relation == "<=") return left <= right;
    if (relation == ">") return left > right;
    if (relation == ">=") return left >= right;
    return (left == right) == (relation == "==");
}

/* At the top of a condition | and & leave their right side out, too. */
double value_of(const Condition &condition, Course &run, bool is_at_top) {
    const auto part = [&](size_t which, bool stays_at_top = false) {
        return value_of(condition.parts[which], run, stays_at_top);
    };
    const bool is_or = condition.kind == Kind::OR || condition.kind == Kind::EITHER;
    switch (condition.kind) {
        case Kind::COMPARISON: {
            const double left = part(0);
            return compares(condition.text, left, part(1)) ? 1 : 0;
        }
        case Kind::NOT: return part(0) == 0 ? 1 : 0;
        case Kind::BOTH:
        case Kind::EITHER:
        case Kind::AND:
        case Kind::OR: {
            const bool is_elementwise =
                condition.kind == Kind::BOTH || condition.kind == Kind::EITHER;
            const bool left = part(0, is_at_top && is_elementwise) != 0;
            if ((!is_elementwise || is_at_top) && left == is_or) return left ? 1 : 0;
            const bool right = part(1, is_at_top && is_elementwise) != 0;
            return (is_or ? left || right : left && right) ? 1 : 0;
        }
        default: return condition.evaluate(run);
    }
}

class Maker {
public:
    explicit Maker(unsigned seed) : random_(seed) {}

    int number(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

    Surroundings surroundings() {
        Surroundings made{
            double(number(3)), double(number(4)), double(1 + number(5)), double(number(4)), {}};
        for (int k = 0; k < 3; k++) made.x.push_back(number(3));
        return made;
    }

    Condition condition(int depth) {
        const int kind = depth == 0 ? number(3) : number(10);
        if (kind < 2) return comparison(depth);
        if (kind < 3) return operand();
        if (kind < 4) return {Kind::NOT, "~", {}, {condition(depth - 1)}};
        if (kind < 5) return elementwise(number(2) == 0, pure(depth - 1), pure(depth - 1));
        return joined(number(2) == 0, condition(depth - 1), condition(depth - 1));
    }

    /* One of an if or a while, where sides of | and & may be left out. */
    Condition whole_condition(int depth) {
        if (number(5) > 0) return condition(depth);
        return elementwise(number(2) == 0, condition(1),
                           number(3) == 0 ? whole_condition(1) : operand());
    }

private:
    static Condition joined(bool is_and, Condition left, Condition right) {
        return {is_and ? Kind::AND : Kind::OR,
                is_and ? "&&" : "||",
                {},
                {std::move(left), std::move(right)}};
    }
    static Condition elementwise(bool is_both, Condition left, Condition right) {
        return {is_both ? Kind::BOTH : Kind::EITHER,
                is_both ? "&" : "|",
                {},
                {std::move(left), std::move(right)}};
    }

    /* What can be evaluated anywhere, and tells nobody. */
    Condition pure(int depth) {
        if (depth <= 0 || number(3) == 0) return value();
        if (number(2) == 0) return {Kind::NOT, "~", {}, {pure(depth - 1)}};
        if (number(2) == 0) return {Kind::COMPARISON, relation(), {}, {value(), pure(depth - 2)}};
        return joined(number(2) == 0, pure(depth - 1), pure(depth - 1));
    }

    std::string relation() {
        static const char *const RELATIONS[] = {"<", "<=", ">", ">=", "==", "~="};
        return RELATIONS[number(6)];
    }

    Condition comparison(int depth) {
        // Calls in front of a side that becomes branches are after it in the translation.
        if (depth > 1 && number(4) == 0)
            return {Kind::COMPARISON,
                    number(2) == 0 ? "==" : "~=",
                    {},
                    {pure(depth - 2), condition(depth - 2)}};
        return {Kind::COMPARISON, relation(), {}, {operand(), operand()}};
    }

    Condition operand() {
        const int kind = number(8);
        if (kind < 2) return call();
        if (kind < 4) return element();
        return value();
    }

    Condition call() {
        const double result = number(3);
        const int id = ++calls_;
        return {Kind::CALL,
                "noted(" + std::to_string(id) + ", " + std::to_string(int(result)) + ")",
                [=](Course &run) {
                    run.trace.push_back(id);
                    return result;
                }};
    }

    Condition element() {
        static const char *const PLACES[] = {"k", "n", "n + 1", "k - 1"};
        const int which = number(4);
        return {Kind::ELEMENT, std::string("x(") + PLACES[which] + ")", [=](Course &run) {
                    const double k = run.variables->k;
                    const double places[] = {k, run.n, run.n + 1, k - 1};
                    const double place = places[which];
                    run.has_failed = run.has_failed || place < 1 || place > 3;
                    return run.has_failed ? 0 : run.variables->x[static_cast<size_t>(place) - 1];
                }};
    }

    Condition value() {
        struct Known {
            const char *text;
            double (*value)(const Course &run);
        };
        static constexpr Known KNOWN[] = {
            {"a", [](const Course &run) { return run.variables->a; }},
            {"b", [](const Course &run) { return run.variables->b; }},
            {"k", [](const Course &run) { return run.variables->k; }},
            {"u", [](const Course &run) { return run.variables->u; }},
            {"n", [](const Course &run) { return run.n; }},
            {"t", [](const Course &run) { return run.variables->a > 1 ? 1.0 : 0.0; }},
            {"2", [](const Course &) { return 2.0; }},
            {"true", [](const Course &) { return 1.0; }},
            {"false", [](const Course &) { return 0.0; }},
            {"numel(x)", [](const Course &) { return 3.0; }},
            {"isempty(x)", [](const Course &) { return 0.0; }},
            {"isempty(e)", [](const Course &) { return 1.0; }},
            {"strcmp(s, 'ab')", [](const Course &) { return 1.0; }},
            {"(k <= numel(x))",
             [](const Course &run) { return run.variables->k <= 3 ? 1.0 : 0.0; }},
            {"any(x > 1)",
             [](const Course &run) {
                 const auto &x = run.variables->x;
                 return x[0] > 1 || x[1] > 1 || x[2] > 1 ? 1.0 : 0.0;
             }},
        };
        const Known &known = KNOWN[number(std::size(KNOWN))];
        return {Kind::VALUE, known.text, [&known](Course &run) { return known.value(run); }};
    }

    std::mt19937 random_;
    int calls_ = 0;
};

/* A statement that assigns y, and n on its way, and what it assigns. */
struct Case {
    std::string text;
    double y;
    bool returns = false; /* it has to stand in a function */
};

bool holds(const Condition &condition, Course &run) { return value_of(condition, run, true) != 0; }

Case branches(Maker &maker, Course &run) {
    const Condition first = maker.whole_condition(2);
    const Condition second = maker.whole_condition(2);
    const Condition third = maker.whole_condition(1);
    const std::string text = "if " + text_of(first) + ", y = 1; elseif " + text_of(second) +
                             ", if " + text_of(third) + ", y = 2; else, y = 3; end, elseif " +
                             text_of(third) + ", y = 4; else, y = 5; end";
    if (holds(first, run)) return {text, 1};
    if (holds(second, run)) return {text, holds(third, run) ? 2.0 : 3.0};
    return {text, holds(third, run) ? 4.0 : 5.0};
}

Case assigned(Maker &maker, Course &run) {
    const Condition condition = maker.condition(3);
    return {"y = " + text_of(condition) + ";", value_of(condition, run, false)};
}

Case repeated(Maker &maker, Course &run) {
    const Condition condition = maker.whole_condition(3);
    for (run.n = 1; run.n <= 4 && holds(condition, run);) run.n++;
    return {"n = 1; while " + text_of(condition) + ", n = n + 1; if n > 4, break, end, end, y = n;",
            run.n};
}

Case gone_on(Maker &maker, Course &run) {
    const Condition condition = maker.whole_condition(2);
    const Condition last = maker.condition(1);
    double y = 0;
    for (int turn = 1; turn <= 3; turn++) {
        run.n = turn;
        if (holds(condition, run)) continue;
        y = 10 * y + turn;
        if (holds(last, run)) break;
    }
    return {"y = 0; for n = 1:3, if " + text_of(condition) + ", continue, end, y = 10*y + n; if " +
                text_of(last) + ", break, end, end",
            y};
}

Case returned(Maker &maker, Course &run) {
    const Condition first = maker.whole_condition(2);
    const Condition second = maker.condition(2);
    const std::string text = "y = 1; if " + text_of(first) + ", return, end, n = 1; while ~(" +
                             text_of(second) +
                             "), n = n + 1; if n > 3, y = 2; return, end, end, y = 3;";
    if (holds(first, run)) return {text, 1, true};
    for (run.n = 1; value_of(second, run, false) == 0;)
        if (++run.n > 3) return {text, 2, true};
    return {text, 3, true};
}

std::string written(const std::vector<double> &numbers) {
    std::string text;
    for (const double number : numbers)
        text += (text.empty() ? "" : " ") + std::to_string(static_cast<int>(number));
    if (numbers.empty()) return "[]";
    return numbers.size() == 1 ? text : "[" + text + "]";
}

struct Written {
    std::string source, expected;
};

/* Cases after each other; those in functions get the variables as parameters, of which less is
 * known. */
Written program_of(const Surroundings &variables, const std::vector<Case> &cases,
                   const std::vector<double> &trace) {
    std::ostringstream script, functions;
    script << "global trace, trace = []; a = " << variables.a << "; b = " << variables.b
           << "; k = " << variables.k << "; u = itself(" << variables.u << "); t = a > 1;\n"
           << "x = " << written(variables.x) << "; e = []; s = 'ab'; n = 0; all = -1;\n";
    std::vector<double> values = {-1};
    for (size_t at = 0; at < cases.size(); at++) {
        const Case &each = cases[at];
        if (each.returns || at % 3 == 0) {
            script << "y = case" << at << "(a, b, k, u, t, x, e, s, n);\n";
            functions << "function y = case" << at << "(a, b, k, u, t, x, e, s, n)\n"
                      << each.text << "\nend\n";
        } else {
            script << each.text << "\n";
        }
        script << "n = 0; all(end + 1) = y;\n";
        values.push_back(each.y);
    }
    script << functions.str()
           << "function r = noted(k, r)\nglobal trace\ntrace(end + 1) = k;\nend\n"
           << "function r = itself(r)\nend\n";
    return {script.str(), "all = " + written(values) + ", trace = " + written(trace)};
}

std::string outcome_of(const std::string &source) {
    std::string variables = executed(source);
    if (variables.starts_with("error")) return variables;
    return "all = " + mtranslate::value_of(variables, "all") +
           ", trace = " + mtranslate::value_of(variables, "trace");
}

using MakeCase = Case (*)(Maker &, Course &);
constexpr MakeCase MAKERS[] = {branches, assigned, repeated, gone_on, returned};

/* Whether a case means what it has to, by itself. */
void expect_meaning(const Surroundings &variables, const std::vector<Case> &cases,
                    const std::vector<double> &trace) {
    const Written program = program_of(variables, cases, trace);
    EXPECT_EQ(outcome_of(program.source), program.expected) << program.source;
}

TEST(Conditions, evaluate_the_sides_that_count_in_order) {
    for (unsigned seed = 0; seed < PROGRAMS && !HasFailure(); seed++) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Maker maker(seed);
        const Surroundings variables = maker.surroundings();
        std::vector<Case> cases;
        std::vector<std::vector<double>> traces;
        std::vector<double> trace;
        while (cases.size() < CASES) {
            Course run{&variables};
            Case made = MAKERS[maker.number(std::size(MAKERS))](maker, run);
            if (run.has_failed) continue;  // MATLAB stops with an error
            cases.push_back(std::move(made));
            traces.push_back(run.trace);
            trace.insert(trace.end(), run.trace.begin(), run.trace.end());
        }
        const Written program = program_of(variables, cases, trace);
        if (outcome_of(program.source) == program.expected) continue;
        for (size_t at = 0; at < cases.size(); at++)  // the smallest programs that are wrong
            expect_meaning(variables, {cases[at]}, traces[at]);
        if (!HasFailure()) expect_meaning(variables, cases, trace);
    }
}

}  // namespace

}  // namespace mtranslate
