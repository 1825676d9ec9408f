/* Rules and configurations, by running the tool. */
#include <vector>

#include "tests/tool.h"

namespace mtranslate {

namespace {

/* A command and its translation under some rules. */
struct Answer {
    const char *command;
    const char *translation;
};

/* A configuration and what is said about it, after its name. */
struct Mistake {
    const char *text;
    const char *messages;
};

class Rules : public Tool {
protected:
    void check_answers(const std::string &rules, const std::vector<Answer> &answers) const {
        write(directory / "r.toml", rules);
        for (const Answer &answer : answers) {
            SCOPED_TRACE(answer.command);
            write(directory / "s.m", answer.command);
            EXPECT_EQ(run("mtranslate --rules r.toml s.m"), 0);
            EXPECT_EQ(read(directory / "out"), std::string(answer.translation) + '\n');
            EXPECT_EQ(read(directory / "err"), "");
        }
    }

    void check_mistakes(const std::string &command, const std::string &file,
                        const std::vector<Mistake> &mistakes) const {
        for (const Mistake &mistake : mistakes) {
            SCOPED_TRACE(mistake.text);
            write(directory / file, mistake.text);
            EXPECT_EQ(run(command), 2);
            EXPECT_EQ(read(directory / "out"), "");
            EXPECT_EQ(read(directory / "err"), file + ':' + mistake.messages);
        }
    }
};

TEST_F(Rules, give_names_and_calls_their_forms) {
    const std::string rules = R"toml([names]
gamma = "g_value"
show = "display_of"
[functions]
pi = "Pi"
sq = '{1}^2'
add = "{1} + {2}"
flip = "LinearAlgebra:-Transpose({1})"
set = "{{{args}}}"
apply = "{1}({2..})"
mk = "make(0, {args}, {count})"
wrap = "outer(({1}))"
"stats.mean" = "mean_of({1})"
display_of = "put({args})"
hold = "keep({1})"
size = { 1 = "dims({1})", 2 = "dims({1})[{2}]", default = "all_dims({1}, [{2..}])" }
horzcat = "join({args})"
lead = ", {args}"
both = """
first({1});
second({1})
"""
__own__ = "own({args})"
getfield = "field_of({1}, {2})"
system = "run({1})"
)toml";
    check_answers(
        rules,
        {
            {"x = 2*pi;", "x := 2*Pi;"},
            {"a = 1; x = sq(3)*2; y = -sq(a + 1); z = sq(-a); w = sq(sq(a));",
             "a := 1;\nx := (3^2) . 2;\ny := -((a + 1)^2);\nz := ((-a)^2);\nw := ((a^2)^2);"},
            {"x = sq(1e-5); y = sq('a b'); z = sq([1 2]);",
             "x := (1e-5^2);\ny := (\"a b\"^2);\nz := (Vector[row]([1, 2])^2);"},
            {"a = 2; x = add(a, -1); y = wrap(a + 1); c = {add(1, 2)};",
             "a := 2;\nx := (a + (-1));\ny := outer(((a + 1)));\n"
             "c := rtable([(1 + 2)],subtype='Vector[row]');"},
            {"x = set(1, 2); y = set();", "x := {1, 2};\ny := {};"},
            {"x = apply(@(t) t, 2); y = apply(@gamma);",
             "x := (proc( t ) return t; end proc)(2);\ny := g_value();"},
            {"x = mk(); y = mk(1); z = mk(1, 2);",
             "x := make(0, 0);\ny := make(0, 1, 1);\nz := make(0, 1, 2, 2);"},
            {"x = size(1); y = size(1, 2); z = size(1, 2, 3); w = size(1, 2, 3, 4);",
             "x := dims(1);\ny := dims(1)[2];\nz := all_dims(1, [2, 3]);\nw := all_dims(1, [2, 3, "
             "4]);"},
            {"x = flip(1);", "with(LinearAlgebra):\nx := Transpose(1);"},
            {"gamma = 1; x = gamma + 1; show(x); show;",
             "g_value := 1;\nx := g_value + 1;\nput(x);\ndisplay_of;"},
            {"x = stats.mean(1)^2; if x, y = (stats.mean(2) + 1); end",
             "x := mean_of(1)^2;\nif ArrayTools[AllNonZero](x) then\n"
             "  y := mean_of(2) +~ 1;\nend if;"},
            {"if 1, both(1), end", "if true then\n  first(1);\n  second(1);\nend if;"},
            {"x = __own__(1);", "x := own(1);"},
            {"hold on", "keep(\"on\");"},
            {"x = lead(1); lead();", "x := (, 1);\n;"},
            {"n = 2; s = ['n = ' n]; t = s.(n); !ls",
             "n := 2;\ns := join(\"n = \", n);\nt := field_of(s, n);\nrun(\"ls\");"},
        });
}

/* A call with another number of arguments than the form has places for stays as it is. */
TEST_F(Rules, leave_calls_that_no_form_fits) {
    write(directory / "r.toml", R"toml([functions]
f = "F({1}, {2})"
g = { 2 = "G({1})", default = "G({2})" }
h = "H({1}, {3..})"
try = "{1} {2} {3}"
)toml");
    const auto unknown = [](const char *name) {
        return std::string(
                   "<command>: warning: 1 function is found nowhere and left to the host: ") +
               name + " [MT401]\n";
    };
    check({
        {"mtranslate --rules r.toml -c 'f(1); f(1, 2); f(1, 2, 3)'", 0,
         "f(1);\nF(1, 2);\nf(1, 2, 3);\n", unknown("f")},
        {"mtranslate --rules r.toml -c 'g(1); g(1, 2); g(1, 2, 3)'", 0, "g(1);\nG(1);\nG(2);\n",
         unknown("g")},
        {"mtranslate --rules r.toml -c 'h(1); h(1, 2); h(1, 2, 3)'", 0, "h(1);\nH(1);\nH(1, 3);\n",
         unknown("h")},
        {"mtranslate --rules r.toml -c 'y = feval(\"try\");'", 0, "y := try();\n", unknown("try")},
        {"mtranslate --no-translator --rules r.toml -c 'f(1, 2)'", 0, "f(1, 2);\n", ""},
        {"mtranslate --language classic --rules r.toml -c 'x = f(:, end)'", 0,
         "x := F(<seq(1..1)>, -1);\n", ""},
    });
}

/* What else than the number of arguments a form can depend on. */
TEST_F(Rules, give_forms_by_results_literals_and_uses) {
    const std::string rules = R"toml([functions]
sort.1 = "up({1})"
sort."{1}, 'descend'" = "down({1})"
sort."{1}, {2}" = "up_in({1}, {2})"
sort."{1}, {2}, 'descend'" = "down_in({1}, {2})"
sort.results.2.1 = "places({1})"
sort.results.2."{1}, 'descend'" = "down_places({1})"
map."{1}, {2..}, 'UniformOutput', false" = "cells({1}, {2..})"
map.default = "numbers({args})"
check = "if not ({1}) then stop({2..}) end if"
show = { 1 = "shown({1})", results = { 0 = "show {1}" } }
dims = "dims_of({1}, {results})"
split = { results = { 2 = "halves({1})", default = "parts({1}, {results})" } }
sq = "{1}^2"
fn = "host_fn({args})"
numel.handle = "element_count"
"p.f" = { 1 = "pf({1})", handle = "proc( x ) return 1; end proc" }
g.kind = "text"
[functions.round]
1 = "whole({1})"
"{1}, -1" = "tens({1})"
"{1}, []" = "w({1})"
"'a''b\\\"', {1}" = "q({1})"
)toml";
    check_answers(
        rules,
        {
            {"a = 1; x = sort(a); x = sort(a, 'descend'); x = sort(a, 2); x = sort(a, 2, "
             "\"descend\");",
             "a := 1;\nx := up(a);\nx := down(a);\nx := up_in(a, 2);\nx := down_in(a, 2);"},
            {"[s, t] = sort(1); [s, t] = sort(1, 'descend');",
             "(s, t) := places(1);\n(s, t) := down_places(1);"},
            {"x = map(1, 2, 3, 'UniformOutput', false); y = map(1, 2, 'UniformOutput', true);",
             "x := cells(1, 2, 3);\ny := numbers(1, 2, \"UniformOutput\", true);"},
            {"if 1, check(2 > 1, 'a'), end",
             "if true then\n"
             "  if not (evalhf(zip(`>`,eval(2),eval(1)))) then stop(\"a\") end if;\nend if;"},
            {"show(1); x = show(1);", "show 1;\nx := shown(1);"},
            {"[m, n] = dims(1); n = dims(1); h = @(t) dims(t); [m, n] = h(1);",
             "(m, n) := dims_of(1, 2);\nn := dims_of(1, 1);\nh := proc( t )\n"
             "  local qxrp_1, qxrp_2;\n  if _nresults = 2 then\n"
             "    (qxrp_1, qxrp_2) := dims_of(t, _nresults);\n"
             "    return qxrp_1, qxrp_2;\n  end if;\n  return dims_of(t, _nresults);\n"
             "end proc;\n(m, n) := h(1);"},
            {"[m, n] = split(1); [m, n, o] = split(1); m = split(1);",
             "(m, n) := halves(1);\n(m, n, o) := parts(1, 3);\nm := parts(1, 1);"},
            {"x = round(1); x = round(1, -1); x = round(1, []); x = round('a''b\\\"', 2);",
             "x := whole(1);\nx := tens(1);\nx := w(1);\nx := q(2);"},
            {"f = @sq; g = {@fn, @numel}; h = @p.f;",
             "f := proc( qxrp_x1 ) return qxrp_x1^2; end proc;\n"
             "g := rtable([host_fn, element_count],subtype='Vector[row]');\n"
             "h := (proc( x ) return 1; end proc);"},
            {"sq(3)", "3^2;"},
        });
    const auto unknown = [](const std::string &names) {
        return "<command>: warning: " + names + " [MT401]\n";
    };
    check({
        {"mtranslate --rules r.toml -c '[s, t] = sq(1); x = check(1)'", 0,
         "(s, t) := sq(1);\nx := check(1);\n",
         unknown("2 functions are found nowhere and left to the host: sq, check")},
        {"mtranslate --rules r.toml -c 'x = @fft'", 0, "x := fft;\n",
         unknown("1 function is found nowhere and left to the host: fft")},
        {"mtranslate --rules r.toml --language classic -c '[s, t] = sq(1)'", 0,
         "(s, t) := (1^2);\n", ""},
    });
}

/* Patterns for the same calls: that with most literals, then one without a list. */
TEST_F(Rules, take_the_closest_pattern) {
    const std::string rules = R"toml([functions]
take."{1}, {2..}" = "many({1}, [{2..}])"
take."{1}, {2}" = "two({1}, {2})"
take."{1}, [], {2}" = "along({1}, {2})"
take."1, {1}" = "first({1})"
take."-1, {1}" = "minus({1})"
take."{1}, true" = "yes({1})"
take."1, true" = "surely()"
take."{1}, 'a, b'" = "comma({1})"
take."{1}, 'it''s'" = "quote({1})"
take."{1}, 'end', 'for'" = "words({1})"
take.results.0."'x'" = "done()"
take.results.2."{1}, 'x'" = "pair_of({1})"
take.results.2.default = "pair({args})"
take.results.default."{1}, 'x'" = "some_of({1}, {results})"
)toml";
    check_answers(rules,
                  {
                      {"x = take(2); x = take(2, 3); x = take(2, 3, 4);",
                       "x := many(2, []);\nx := two(2, 3);\nx := many(2, [3, 4]);"},
                      {"x = take(2, [], 3); x = take([], 2, 3); x = take(2, {}, 3);",
                       "x := along(2, 3);\nx := many(Vector(), [2, 3]);\n"
                       "x := many(2, [rtable([],subtype='Vector[row]'), 3]);"},
                      {"x = take(1, 2); x = take(-1, 2); x = take(2, true); x = take(1, true);",
                       "x := first(2);\nx := minus(2);\nx := yes(2);\nx := surely();"},
                      {"x = take(2, 'a, b'); x = take(2, \"it's\"); x = take(2, 'end', 'for');",
                       "x := comma(2);\nx := quote(2);\nx := words(2);"},
                      {"x = take(2, 'end'); t = true; x = take(2, t);",
                       "x := two(2, \"end\");\nt := true;\n"
                       "x := two(2, t);"},
                      {"take('x'); take x", "done();\ndone();"},
                      {"x = take('x'); [x, y] = take(2, 'x'); [x, y] = take(2, 'y');",
                       "x := many(\"x\", []);\n(x, y) := pair_of(2);\n(x, y) := pair(2, \"y\");"},
                      {"[x, y, z] = take(2, 'x');", "(x, y, z) := some_of(2, 3);"},
                  });
    check(
        {{"mtranslate --rules r.toml -c '[x, y, z] = take(2, 3);'", 0, "(x, y, z) := take(2, 3);\n",
          "<command>: warning: 1 function is found nowhere and left to the host: take [MT401]\n"}});
}

TEST_F(Rules, tell_what_results_are) {
    const char *rules = R"toml([functions]
f = "ff({args})"
n = { default = "nn({args})", kind = "number" }
t = { default = "tt({args})", kind = "truth" }
w = { default = "ww({args})", kind = "text" }
c = { default = "cc({args})", kind = "cell" }
s = { default = "ss({args})", kind = "several" }
r = { default = "rr({args})", kind = "record" }
"p.n" = { default = "pn({args})", kind = "number" }
numel = { default = "sides({args})", kind = "several" }
)toml";
    check_answers(rules, {
                             {"if n(1) < 2, a = 1; end", "if nn(1) < 2 then\n  a := 1;\nend if;"},
                             {"if n < 2, a = 1; end", "if nn() < 2 then\n  a := 1;\nend if;"},
                             {"if p.n(1) < 2, a = 1; end", "if pn(1) < 2 then\n  a := 1;\nend if;"},
                             {"a = t(1); b = iscell(a);", "a := tt(1);\nb := false;"},
                             {"a = w(1); b = [a 2];", "a := ww(1);\nb := horzcat(a, 2);"},
                             {"a = c(1); b = a(2);", "a := cc(1);\nb := a(2..2);"},
                             {"a = {1, 2}; a(s(1)) = {3};",
                              "a := rtable([1, 2],subtype='Vector[row]');\n"
                              "a(ss(1)) := rtable([3],subtype='Vector[row]');"},
                             {"a = r(1); b = isstruct(a);", "a := rr(1);\nb := true;"},
                             {"x = f(1); a = numel(x) + 1;", "x := ff(1);\na := sides(x) +~ 1;"},
                             {"x = f(1); f(numel(x));", "x := ff(1);\nff(sides(x));"},
                         });
    write(directory / "r.m", "function r\nif n(1) < 2, return, end\nfunction b = n(x)\nb = {x};\n");
    check({{"mtranslate --rules r.toml r.m", 0,
            "r := proc(  )\n  if ArrayTools[AllNonZero](evalhf(zip(`<`,eval(n(1)),eval(2)))) then\n"
            "    return;\n  end if;\nend proc;\n\nn := proc( x )\n  local b;\n  b := "
            "rtable([x],subtype='Vector[row]');\n  return b;\nend proc;\n\n",
            ""}});
}

TEST_F(Rules, have_forms_for_constructs) {
    const std::string rules = R"toml([forms]
try.named = """
attempt do
  {body}
otherwise {name} do
  {handler}
end attempt;
"""
try.unnamed = """
attempt do
  {body}
otherwise
  {handler}
end attempt;
"""
eval = "run({text}) + 0"
evalc = "text_of({text})"
evalin = "run_in({scope}, {text})"
assignin = "set_in({scope}, {name}, {value})"
exist = "assigned({name})"
rethrow = "raise {error}"
display = "show({name}, {value})"
[functions]
sine.handle = "Sine"
pair.results.2 = "both()"
)toml";
    check_answers(
        rules,
        {
            {"try, f = 1; % one\n  for k = 1:2, break, end\ncatch err % two\n  % three\n"
             "  try, f = 2; end, rethrow(err)\nend",
             "attempt do\n  f := 1; # one\n  for k from 1 to 2 do\n    break;\n"
             "  end do;\notherwise err do\n  # two\n  # three\n  attempt do\n"
             "    f := 2;\n  otherwise\n  end attempt;\n  raise err;\nend attempt;"},
            {"s = 'a'; x = 1; eval(s); x = eval(s); y = evalc(s); z = evalin('base', s);",
             "s := \"a\";\nx := 1;\nrun(s) + 0;\nx := (run(s) + 0);\ny := text_of(s);\n"
             "z := run_in(\"base\", s);"},
            {"x = 1, y(2) = x; [by, z.a] = pair\nx, x + 1\ny(2)\nfor k = 1:2, k, end, f = @sine; "
             "f(1)",
             "x := 1;\nshow(\"x\", x);\ny := Vector();\ny(2) := x;\nz := struct();\n(m_by, "
             "z:-a) := both();\n"
             "show(\"by\", m_by);\nshow(\"z\", z);\nshow(\"x\", x);\nshow(\"ans\", x + 1);\n"
             "show(\"ans\", y(2));\nfor k from 1 to 2 do\n  show(\"k\", k);\nend do;\n"
             "f := Sine;\nf(1);"},
            {"assignin('base', 'a', 2);", "set_in(\"base\", \"a\", 2);"},
            {"if exist('by', 'var'), end, by = 2; x = exist('other', 'var');",
             "if ArrayTools[AllNonZero](assigned(m_by)) then\nend if;\nm_by := 2;\n"
             "x := assigned(other);"},
        });
}

TEST_F(Rules, put_the_lines_of_try_where_the_form_has_them) {
    const std::string rules = R"toml([functions]
try = """
attempt do
  {1}
otherwise {3}
  {2}
end attempt;
"""
)toml";
    check_answers(rules, {
                             {"try, a = 1; b = 2; catch e, try, c = 3; catch, end, end",
                              "attempt do\n  a := 1;\n  b := 2;\notherwise e\n"
                              "  attempt do\n    c := 3;\n  otherwise \n"
                              "  end attempt;\nend attempt;"},
                             {"for k = 1:2, try, a = 1; end, end",
                              "for k from 1 to 2 do\n  attempt do\n    a := 1;\n"
                              "  otherwise \n  end attempt;\nend do;"},
                         });
}

TEST_F(Rules, of_later_files_replace_or_take_back_those_of_earlier_ones) {
    write(directory / "a.toml", "[names]\nn = 'N'\n[functions]\nf = 'A()'\ng = { 0 = 'A0()' }\n");
    write(directory / "b.toml", "[names]\nn = ''\n[functions]\nf = ''\ng = { 1 = 'B({1})' }\n");
    const std::string left =
        "<command>: warning: 2 functions are found nowhere and left to the host: f, g [MT401]\n";
    check({
        {"mtranslate --rules a.toml -c 'n = f; g'", 0, "N := A();\nA0();\n", ""},
        {"mtranslate --rules a.toml --rules b.toml -c 'n = f; g'", 0, "n := f();\ng();\n", left},
        {"mtranslate --rules b.toml --rules a.toml -c 'n = f; g'", 0, "N := A();\nA0();\n", ""},
    });
}

TEST_F(Rules, are_refused_with_the_place_of_each_mistake) {
    check_mistakes(
        "mtranslate --rules bad.toml -c 'x = 1'", "bad.toml",
        {
            {"x = = 1\n",
             "1:5: error: no TOML in the value: could not determine value type\n"
             "x = = 1\n    ^\n"},
            {"[functions]\nf = 'a'\nf = 'b'\n",
             "3:5: error: no TOML in the key-value pair: cannot redefine existing string 'f'\n"
             "f = 'b'\n    ^\n"},
            {"[}a]\n",
             "1:2: error: no TOML in the key: expected bare key starting character or string "
             "delimiter, saw '}'\n[}a]\n ^\n"},
            {"a\u00e9 = 1\n",
             "1:2: error: no TOML in the key-value pair: expected '=', saw '\u00e9'\na\u00e9 = 1\n "
             "^\n"},
            {"[name]\n", "1:2: error: unknown key 'name'; did you mean 'names'?\n[name]\n ^\n"},
            {"x = 1\n",
             "1:1: error: unknown key 'x'; expected names, functions or forms\nx = 1\n^\n"},
            {"[options]\njobs = 1\n",
             "1:2: error: options are set in a file mtranslate.toml only\n[options]\n ^\n"},
            {"names = 1\n", "1:9: error: expected a table: [names]\nnames = 1\n        ^\n"},
            {"[names]\n'a b' = 'c'\n", "2:1: error: 'a b' is no name of MATLAB\n'a b' = 'c'\n^\n"},
            {"[names]\na = 1\n",
             "2:5: error: expected a name of the host's, a string\na = 1\n    ^\n"},
            {"[names]\na = '2*b'\n",
             "2:6: error: this is no name; what a function without arguments stands for is a form "
             "of [functions]\na = '2*b'\n     ^\n"},
            {"[functions]\nf = 1\n",
             "2:5: error: expected a form of the call, a string\nf = 1\n    ^\n"},
            {"[functions]\nf.1 = 'F({1}, {2})'\n",
             "2:15: error: there is no argument 2 in a call with 1\nf.1 = 'F({1}, {2})'\n"
             "              ^\n"},
            {"[functions]\nf = '\xC3\xA4{0}'\n",
             "2:7: error: '{0}' is not allowed here: there are {1}, {2}, ..., {2..}, {args}, "
             "{count} and "
             "{results}; a brace of the text is written '{{'\nf = '\xC3\xA4{0}'\n      ^\n"},
            {"[functions]\nf = '{1'\n",
             "2:6: error: this '{' is not closed; a brace of the text is written '{{'\nf = '{1'\n"
             "     ^\n"},
            {"[functions]\nf = '''\na\n}'''\n",
             "4:1: error: this '}' closes nothing; a brace of the text is written '}}'\n}'''\n^\n"},
            {"[functions]\nf = 'g(h[1)]'\n",
             "2:11: error: this ')' is unmatched\nf = 'g(h[1)]'\n          ^\n"},
            {"[functions]\nf = 'g(\"a)'\n",
             "2:8: error: this '\"' is unmatched\nf = 'g(\"a)'\n       ^\n"},
            {"[functions]\nf = 'g();'\n",
             "2:9: error: a statement's last semicolon is written by the translator\n"
             "f = 'g();'\n        ^\n"},
            {"[functions]\np.f = 'g()'\nh = 1\n",
             "2:3: error: unknown key 'f'; expected a number of arguments, a pattern of them "
             "(\"{1}, 'x'\"), default, results, handle or kind (a function of a package is "
             "written in quotes: \"package.function\")\np.f = 'g()'\n  ^\n"
             "bad.toml:3:5: error: expected a form of the call, a string\nh = 1\n    ^\n"},
            {"[functions]\nf.\"{1}, x\" = 'g()'\n",
             "2:3: error: 'x' is neither a place, as {1}, nor a text, a number, true, false or "
             "[]\nf.\"{1}, x\" = 'g()'\n  ^\n"},
            {"[functions]\nf.\"{2}, ''\" = 'g()'\n",
             "2:3: error: '{2}' does not go on with the places: they are {1}, {2}, ..., and the "
             "last one may be a list, {2..}\nf.\"{2}, ''\" = 'g()'\n  ^\n"},
            {"[functions]\nf.\"{1}, 'a'\" = 'g({2})'\n",
             "2:19: error: there is no argument 2 in the pattern\nf.\"{1}, 'a'\" = 'g({2})'\n"
             "                  ^\n"},
            {"[functions]\nf.results = 2\nf.kind = 'x'\n",
             "2:13: error: expected a table of forms by the number of results\nf.results = 2\n"
             "            ^\nbad.toml:3:10: error: expected number, truth, text, cell, record or "
             "several\nf.kind = 'x'\n         ^\n"},
            {"[functions]\nf.results.x = 'a'\n",
             "2:11: error: unknown key 'x'; expected a number of results or default\n"
             "f.results.x = 'a'\n          ^\n"},
            {"[functions]\nf.results.2.x = 'a'\n",
             "2:13: error: unknown key 'x'; expected a number of arguments, a pattern of them "
             "(\"{1}, 'x'\") or default\nf.results.2.x = 'a'\n            ^\n"},
            {"[functions]\nf.handle = 'g({1})'\n",
             "2:13: error: a handle is a value without arguments\nf.handle = 'g({1})'\n"
             "            ^\n"},
            {"[forms]\ntyr = 'a'\n",
             "2:1: error: unknown key 'tyr'; did you mean 'try'?\ntyr = 'a'\n^\n"},
            {"[forms]\neval = '{1}'\n",
             "2:9: error: '{1}' is not allowed here: there is {text}; a brace of the text is "
             "written "
             "'{{'\neval = '{1}'\n        ^\n"},
            {"[forms]\ntry = '''\na {body}\nb {body}\n'''\n",
             "3:1: error: the form has no place for {handler}\na {body}\n^\n"
             "bad.toml:4:3: error: {body} stands for lines, which have one place\n"
             "b {body}\n  ^\n"},
            {"[forms]\ntry.unnamed = '{body} {handler} {name}'\n",
             "2:33: error: '{name}' is not allowed here: there are {body} and {handler}; a brace "
             "of the "
             "text is written '{{'\ntry.unnamed = '{body} {handler} {name}'\n"
             "                                ^\n"},
            {"[names]\nf = 'F'\n[functions]\nf = 'g()'\n",
             "4:1: error: calls of 'f' are calls of 'F' by bad.toml:2:1\n"},
        });
    check({{"mtranslate --rules none.toml -c x", 3, "",
            "mtranslate: error: cannot read 'none.toml': No such file or directory\n"}});
}

/* Places far into long lines and texts; of many mistakes the first hundred. */
TEST_F(Rules, have_places_however_long_their_text_is) {
    write(directory / "long.toml", repeated("\n", 700) + "[names]\n'" + repeated("\u00e9", 600) +
                                       "' = 'f'\ng =" + std::string(999, ' ') + "1\n");
    EXPECT_EQ(run("mtranslate --rules long.toml -c x"), 2);
    EXPECT_NE(read(directory / "err").find("\nlong.toml:703:1003: error: "), std::string::npos);
    std::string many = "[names]\n";
    for (int i = 100; i < 250; i++) many += 'n' + std::to_string(i) + " = 1\n";
    write(directory / "many.toml", many);
    EXPECT_EQ(run("mtranslate --rules many.toml -c x"), 2);
    const std::string shown = read(directory / "err");
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '^'), 100);
    EXPECT_TRUE(shown.ends_with("many.toml: error: mistakes in all: 150\n")) << shown;
}

/* Dots in comments and strings are none of keys, and mistakes that come first are told. */
TEST_F(Rules, have_no_keys_of_any_depth) {
    const std::string deep = repeated("a.", 300000) + "a";
    const std::string dots = repeated(".", 300);
    const std::string mistake = "deep.toml:2:1: error: more than 256 dots";
    const std::pair<std::string, std::string> files[] = {
        {deep + " = 1\n", mistake},
        {'[' + deep + "]\n", mistake},
        {repeated("a.", 256) + "a = 1.5\n", mistake},
        {"x = { y = '', " + deep + " = 1 }\n", mistake},
        {"x = [{ " + repeated("a . 'b'.", 256) + "c = 1 }]\n", mistake},
        {"x = [\ny.1 = ''\n" + deep, "deep.toml:3:1: error: no TOML"},
        {"names.x = \"\"\"'" + dots + "\\\"'\"\"\"\n", "deep.toml:2:11: error: this is no name"},
    };
    for (const auto &[text, start] : files) {
        write(directory / "deep.toml", "# " + dots + '\n' + text);
        EXPECT_EQ(run("mtranslate --rules deep.toml -c x"), 2);
        const std::string shown = read(directory / "err");
        EXPECT_TRUE(shown.starts_with(start)) << shown.substr(0, 200);
    }
}

TEST_F(Rules, and_options_come_from_the_nearest_configuration) {
    const std::pair<const char *, const char *> files[] = {
        {"t/mtranslate.toml",
         "[options]\nrules = ['r.toml']\noutput-dir = 'o'\nsuffix = '.x'\nexclude = ['b*']\n"
         "closure = true\ninclude = ['lib']\n[functions]\nf = 'T({1})'\n"},
        {"t/r.toml", "[functions]\nf = 'R({1})'\ng = 'R()'\n"},
        {"t/lib/k.m", "k = 1;\n"},
        {"t/s/a.m", "x = f(1) + g; k\n"},
        {"t/s/b.m", "x = 1;\n"},
        {"t/u/mtranslate.toml",
         "[options]\nlanguage = 'octave'\nstrict = true\nmessages = ['no-MT401']\n"},
        {"t/u/c.m", "x = y = h;\n"},
        {"t/u/d.m", "x = (;\n"},
        {"later.toml", "[functions]\nf = 'L({1})'\n"}};
    for (const auto &[path, text] : files) write(directory / path, text);
    const std::string a = "x := T(1) +~ R();\nk := 1;\n";
    const std::string refused =
        "t/u/d.m:1:6: error: expected a value after '(', found ';' [MT101]\nx = (;\n     ^\n";
    check({
        {"mtranslate t/s/a.m", 0, a, ""},
        {"mtranslate --rules later.toml t/s/a.m", 0, "x := L(1) +~ R();\nk := 1;\n", ""},
        {"cd t/s; \"$tool\" a.m; \"$tool\" -I ../lib - < a.m; \"$tool\" -c 'x = f(1)'", 0,
         a + a + "x := T(1);\n", ""},
        {"mtranslate t/u/c.m; mtranslate t/u/d.m", 1, "y := h();\nx := y;\n", refused},
        {"mtranslate -W MT401 t/u/c.m", 0, "y := h();\nx := y;\n",
         "t/u/c.m: warning: 1 function is found nowhere and left to the host: h [MT401]\n"},
        {"mtranslate --language matlab t/u/c.m 2>&1 | head -n 1", 0,
         "t/u/c.m:1:7: error: a second '=' in one statement: assign to one target after the other "
         "[MT109]\n",
         ""},
        {"cd t/s; \"$tool\" --no-config a.m", 0, "x := f(1) +~ g();\nk();\n",
         "a.m: warning: 3 functions are found nowhere and left to the host: f, g, k [MT401]\n"},
        {"mtranslate t -j 2; cat t/o/s/a.x; find t/o -type f | sort", 0,
         "x := T(1) +~ R();\nk := 1;\nt/o/lib/k.x\nt/o/s/a.x\nt/o/u/c.x\n",
         refused +
             "mtranslate: 4 of 4 files: 3 without errors or gaps, 0 with gaps, 1 with errors, "
             "0 failed; 3 written; 1 message left out\n"},
        {"echo 'x := 2;' > t/o/lib/k.x; mtranslate diff t --exclude '[acd].m' --closure", 1,
         "--- t/o/lib/k.x\n+++ t/o/lib/k.x\n@@ -1 +1 @@\n-x := 2;\n+k := 1;\n"
         "--- /dev/null\n+++ t/o/s/b.x\n@@ -0,0 +1 @@\n+x := 1;\n",
         "mtranslate: 2 of 2 files: 2 without errors or gaps, 0 with gaps, 0 with errors, 0 "
         "failed; 1 would change, 1 would be new\n"},
    });
    run("cd t/u; ln -s ../../later.toml link.toml; ln -s .. up; mkfifo pipe");
    check_mistakes(
        "mtranslate t/u/c.m", "t/u/mtranslate.toml",
        {
            {"[options]\njob = 1\n",
             "2:1: error: unknown key 'job'; did you mean 'jobs'?\njob = 1\n^\n"},
            {"[options]\njobs = -1\n",
             "2:8: error: expected a number of 0 or more\njobs = -1\n       ^\n"},
            {"[options]\njobs = 'x'\n", "2:8: error: expected a number\njobs = 'x'\n       ^\n"},
            {"[options]\nlanguage = 'x'\nsuffix = 1\n",
             "2:12: error: expected matlab, octave or classic\nlanguage = 'x'\n"
             "           ^\nt/u/mtranslate.toml:3:10: error: expected a string\n"
             "suffix = 1\n         ^\n"},
            {"[options]\nexclude = 'x'\ninclude = [1]\n",
             "2:11: error: expected a list of strings, in brackets\nexclude = 'x'\n"
             "          ^\nt/u/mtranslate.toml:3:12: error: expected a string\n"
             "include = [1]\n           ^\n"},
            {"[options]\nstrict = 1\n",
             "2:10: error: expected true or false\nstrict = 1\n         ^\n"},
            {"[options]\nrules = ['none']\n",
             "2:9: error: cannot read 't/u/none': No such file or directory\n"
             "rules = ['none']\n        ^\n"},
            {"[options]\nrules = ['../../later.toml']\n",
             "2:9: error: 'later.toml' is outside of the configuration's folder; --rules may name "
             "any\nrules = ['../../later.toml']\n        ^\n"},
            {"[options]\nrules = ['link.toml', 'pipe']\n",
             "2:9: error: 't/u/link.toml' is outside of the configuration's folder; --rules may "
             "name any\nrules = ['link.toml', 'pipe']\n        ^\n"
             "t/u/mtranslate.toml:2:9: error: cannot read 't/u/pipe': not a regular file\n"
             "rules = ['link.toml', 'pipe']\n        ^\n"},
            {"[options]\noutput-dir = '..'\n",
             "2:14: error: 't/' is outside of the configuration's folder; -O may name any\n"
             "output-dir = '..'\n             ^\n"},
            {"[options]\noutput-dir = '/tmp'\n",
             "2:14: error: '/tmp' is outside of the configuration's folder; -O may name any\n"
             "output-dir = '/tmp'\n             ^\n"},
            {"[options]\noutput-dir = 'up/x'\n",
             "2:14: error: 't/u/up/x' is outside of the configuration's folder; -O may name any\n"
             "output-dir = 'up/x'\n             ^\n"},
            {"[options]\nsuffix = '/../../.bashrc'\n",
             "2:10: error: the ending of a file's name has no '/'\nsuffix = '/../../.bashrc'\n"
             "         ^\n"},
            {"[options]\nsuffix = \".m\\u0000\"\ninclude = [\"a\\u0000\"]\n",
             "2:10: error: expected a string without NUL characters\nsuffix = \".m\\u0000\"\n"
             "         ^\nt/u/mtranslate.toml:3:12: error: expected a string without NUL "
             "characters\ninclude = [\"a\\u0000\"]\n           ^\n"},
            {"[options]\nmessages = ['no-x']\n",
             "2:12: error: no message has the code or name 'x'\nmessages = ['no-x']\n"
             "           ^\n"},
            {"[option]\n",
             "1:2: error: unknown key 'option'; did you mean 'options'?\n[option]\n ^\n"},
        });
    // one mistake in a tree is found before anything is written
    check({{"mtranslate t -O o2; echo $?; ls o2 2> /dev/null", 2, "2\n",
            "t/u/mtranslate.toml:1:2: error: unknown key 'option'; did you mean 'options'?\n"
            "[option]\n ^\n"}});
}

/* A tree that somebody else has written is translated as any other. */
TEST_F(Rules, of_a_tree_write_nothing_outside_of_it) {
    write(directory / "t/mtranslate.toml",
          "[options]\noutput-dir = 'o'\nsuffix = ''\n[functions]\nf = 'F'\n");
    write(directory / "t/a/x.m", "f\n");
    write(directory / "t/b/y.m", "f\n");
    write(directory / "t/c/z.m", "f\n");
    write(directory / "t/d/p.m", "f\n");
    run("mkdir -p t/o/b t/o/d home; ln -s ../../home t/o/a; ln -s ../../../home/y t/o/b/y; "
        "mkfifo t/o/d/p");
    const auto refused = [](const std::string &folder) {
        return "t/a/x.m: error: its output 't/o/a/x' leads out of the folder '" + folder +
               "'\nt/b/y.m: error: its output 't/o/b/y' leads out of the folder '" + folder +
               "'\nt/d/p.m: error: its output 't/o/d/p' is no regular file\n"
               "mtranslate: 4 of 4 files: 1 without errors or gaps, 0 with gaps, 0 with errors, 3 "
               "failed; 1 written\n";
    };
    check({
        {"mtranslate t; echo $?; find t/o home -type f", 0, "3\nt/o/c/z\n", refused("t")},
        {"rm t/o/c/z; mtranslate t -O t/o; echo $?; find t/o home -type f", 0, "3\nt/o/c/z\n",
         refused("t/o")},
        {"mkdir big; ln -s big o; mtranslate t -O o 2> /dev/null; find big -type f | sort", 0,
         "big/a/x\nbig/b/y\nbig/c/z\nbig/d/p\n", ""},  // the user's own link
    });
}

/* Nobody writes into a pipe that a tree has: it would be waited for before any limit holds. */
TEST_F(Rules, are_read_from_pipes_that_the_user_names) {
    write(directory / "t/a.m", "f\n");
    const std::string refused =
        "mtranslate: error: cannot read 't/mtranslate.toml': not a regular file\n";
    check({
        {"mkfifo p; echo '[functions]\nf = \"F\"' > p & mtranslate --rules p t/a.m", 0, "F;\n", ""},
        {"mkfifo t/mtranslate.toml; mtranslate t/a.m", 3, "", refused},
        {"mtranslate t -O o", 3, "", refused},
        {"rm t/mtranslate.toml; ln -s /dev/zero t/mtranslate.toml; mtranslate t/a.m", 3, "",
         refused},
        {"rm t/mtranslate.toml; mkdir t/mtranslate.toml; mtranslate t/a.m", 3, "", refused},
        {"mtranslate --no-config t/a.m 2> /dev/null", 0, "f();\n", ""},
    });
}

TEST_F(Rules, are_shown_with_their_places) {
    write(directory / "t/mtranslate.toml", "[functions]\nf.2 = 'F({1})'\nf.default = \"a\\nb\"\n");
    write(directory / "t/a.m", "x = 1;\n");
    write(directory / "r.toml", "[names]\nn = 'N'\n[functions]\n'p.f' = 'P()'\ng = ''\n");
    const std::string there =
        "t/mtranslate.toml:2: functions.f.2 = \"F({1})\"\n"
        "t/mtranslate.toml:3: functions.f.default = \"a\\nb\"\n";
    const std::string given = "r.toml:2: names.n = \"N\"\nr.toml:4: functions.\"p.f\" = \"P()\"\n";
    write(directory / "k.toml",
          "[forms]\neval = 'e({text})'\n[functions.f]\nkind = 'text'\nresults.2.default = 'g'\n"
          "\"{1}, ''\" = 'h'\n");
    check({
        {"mtranslate rules --rules k.toml", 0,
         "k.toml:6: functions.f.\"{1}, ''\" = \"h\"\n"
         "k.toml:5: functions.f.results.2.default = \"g\"\n"
         "k.toml:4: functions.f.kind = \"text\"\nk.toml:2: forms.eval = \"e({text})\"\n",
         ""},
        {"mtranslate rules", 0, "", "mtranslate: no rules are in force\n"},
        {"mtranslate rules t t/a.m", 0, there, ""},
        {"mtranslate rules --rules r.toml; mtranslate rules t --rules r.toml -o o; cat o", 0,
         given + given.substr(0, given.find('\n') + 1) + there + given.substr(given.find('\n') + 1),
         ""},
        {"mtranslate rules -c x 2> /dev/null", 2, "", ""},
        {"mtranslate rules none", 0, "", "mtranslate: no rules are in force\n"},
    });
}

TEST_F(Rules, are_prepared_for_what_is_found_nowhere) {
    write(directory / "t/a.m", "x = f(1) + g(f(1, 2), 3) + own(4);\ny = known(1);\n");
    write(directory / "t/own.m",
          "function y = own(x)\ny = f(x) + pk.h(x) + eachfun(@k, x);\nend\n");
    write(directory / "t/b.m", "hold on\nx = (;\n");
    write(directory / "t/mtranslate.toml", "[functions]\nknown = 'K({1})'\n");
    const std::string made =
        "# Functions that are found nowhere, most used first. Between the quotes belongs what the\n"
        "# host has for them: \"f({args})\", say. A call stays as it is while they are empty.\n\n"
        "[functions]\n"
        "f = \"\" # 3 calls in 2 files, with 1 or 2 arguments; t/a.m:1\n"
        "eachfun = \"\" # 1 call in 1 file, with 2 arguments; t/own.m:2\n"
        "g = \"\" # 1 call in 1 file, with 2 arguments; t/a.m:1\n"
        "hold = \"\" # 1 call in 1 file, with 1 argument; t/b.m:1\n"
        "\"pk.h\" = \"\" # 1 call in 1 file, with 1 argument; t/own.m:2\n\n"
        "[names]\n"
        "k = \"\" # a handle in 1 file; t/own.m:2\n";
    check({
        {"mtranslate rules --template t", 0, made, ""},
        {"mtranslate rules --template -j 8 t/a.m t/b.m t/own.m -W no-MT401", 0, made, ""},
        {"mtranslate rules --template t -o r.toml; mtranslate rules --rules r.toml", 0, "",
         "mtranslate: no rules are in force\n"},
        {"sed -i '/call/s/\"\"/\"F({args})\"/; /handle/s/\"\"/\"K\"/' r.toml; "
         "mtranslate t/own.m --rules r.toml | grep F; mtranslate rules --template t --rules r.toml "
         "| grep '='; true",
         0, "  y := F(x) +~ F(x) +~ F(K, x);\n", ""},
        {"mtranslate rules --template", 2, "",
         "mtranslate: error: give PATH, the sources of the functions\nTry 'mtranslate --help'.\n"},
        {"mtranslate rules --template none.m", 3, "",
         "mtranslate: error: cannot read 'none.m': No such file or directory\n"},
        {"mkdir u; mtranslate rules --template u", 3, "",
         "mtranslate: error: no file *.m is found in what was given\n"},
    });
}

TEST_F(Rules, are_prepared_for_each_kind_of_call) {
    write(directory / "t/a.m",
          "x = f(1); x = f(1, 'up'); x = f(1, 'up'); [a, b] = f(1, 'up'); c = {@f, @h};\n"
          "y = g(1, 'a'); y = g(1, 'b'); y = g(1, 'c'); y = g(1, 'd'); y = g(1, 'e');\n"
          "z = k(1, 2, 'all', false);\n");
    check({
        {"mtranslate rules --template t | tail -n +4", 0,
         "[functions]\n"
         "g = \"\" # 5 calls in 1 file, with 2 arguments; t/a.m:2\n"
         "# f: 4 calls in 1 file; t/a.m:1\n"
         "f.1 = \"\" # 1 call\n"
         "f.\"{1}, 'up'\" = \"\" # 2 calls\n"
         "f.results.2.2 = \"\" # 1 call\n"
         "f.handle = \"\" # 1 handle\n"
         "# k: 1 call in 1 file; t/a.m:3\n"
         "k.\"{1}, {2}, 'all', false\" = \"\" # 1 call\n\n"
         "[names]\nh = \"\" # a handle in 1 file; t/a.m:1\n",
         ""},
        {"mtranslate rules --template t -o r.toml; mtranslate rules --rules r.toml", 0, "",
         "mtranslate: no rules are in force\n"},
    });
}

TEST_F(Rules, that_answer_nothing_are_shown) {
    write(directory / "t/a.m", "x = disp(1);\n");
    write(directory / "r.toml",
          "[names]\nx = 'y'\n[functions]\ndips = 'a()'\ndisp = { 1 = 'b()', 2 = 'c()', kind = "
          "'text' }\n[forms]\ntry = '{body}{handler}'\n");
    write(directory / "u.toml", "[functions]\ndips = 'a()'\nother = 'b()'\n");
    write(directory / "v.toml", "[functions]\ndisp = 'a({1})'\n");
    check({
        {"mtranslate rules --unused --rules r.toml t", 0,
         "r.toml:4: functions.dips = \"a()\"\nr.toml:5: functions.disp.2 = \"c()\"\n"
         "r.toml:7: forms.try = \"{body}{handler}\"\n",
         ""},
        {"mtranslate rules --unused --rules u.toml t", 0,
         "u.toml:2: functions.dips = \"a()\"; did you mean 'disp'?\n"
         "u.toml:3: functions.other = \"b()\"\n",
         ""},
        {"mtranslate rules --unused --rules v.toml t", 0, "", "mtranslate: all rules are used\n"},
        {"mtranslate rules --unused", 2, "",
         "mtranslate: error: give PATH, the sources of the functions\nTry 'mtranslate --help'.\n"},
    });
}

TEST_F(Rules, are_what_outputs_are_made_from) {
    write(directory / "t/mtranslate.toml", "[options]\nrules = ['r.toml']\n");
    write(directory / "t/r.toml", "");
    write(directory / "t/a.m", "x = 1;\n");
    write(directory / "l.toml", "");
    const std::string files = " \\\n  t/a.m \\\n  t/mtranslate.toml \\\n  t/r.toml \\\n  l.toml\n";
    check({
        {"mtranslate t/a.m --rules l.toml -o o.txt --depfile d; head -n 5 d", 0, "o.txt:" + files,
         ""},
        {"mtranslate t --rules l.toml -O o --depfile d 2> /dev/null; head -n 5 d", 0,
         "o/a.txt:" + files, ""},
        {"mtranslate t/a.m --rules l.toml -o l.toml", 3, "",
         "mtranslate: error: the output 'l.toml' is the source 'l.toml' itself\n"},
    });
}

}  // namespace

}  // namespace mtranslate
