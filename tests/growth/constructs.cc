/* Translates sources of n and of four times as many pieces, one construct after the other, under
 * callgrind, which dumps what each run has cost: tests/growth/check compares. Prints a line for
 * each run: the construct, whether it nests, the number of pieces and the bytes of the translation.
 */
#include <valgrind/callgrind.h>

#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "host/stand_in_host.h"
#include "tests/growth/constructs.h"

using namespace mtranslate;

namespace {

// clang-format off
constexpr Construct ROWS[] = {
    {"", "x# = #;\n", "", ""},
    {"", "qxrp_# = #;\n", "", ""},
    {"", "% #\n", "", ""},
    {"", "%{\n#\n%}\n", "", ""},
    {"", "x = 1; % #\n", "", ""},
    {"", "x = y#;\n", "", ""},
    {"", "y = f#(1);\n", "", ""},
    {"", "y = f(#);\n", "", ""},
    {"", "f #\n", "", ""},
    {"", "hold on\n", "", ""},
    {"", "global g#\n", "", ""},
    {"", "clear x#\n", "", ""},
    {"", "clear\n", "", ""},
    {"", "x(#) = 1;\n", "", ""},
    {"", "x(#) = [];\n", "", ""},
    {"", "x(end+1) = #;\n", "", ""},
    {"", "c{end+1} = #;\n", "", ""},
    {"", "c{#}{2} = 1;\n", "", ""},
    {"", "s.a# = 1;\n", "", ""},
    {"", "s(#).a.b = 1;\n", "", ""},
    {"", "s(end+1).a = #;\n", "", ""},
    {"", "s.(f(#)) = 1;\n", "", ""},
    {"", "[a, b#] = f(#);\n", "", ""},
    {"", "[c{1:2}] = f(#);\n", "", ""},
    {"", "[~, b] = max(x);\n", "", ""},
    {"", "g# = @(t) t + x + #;\n", "", ""},
    {"", "g = @sin;\n", "", ""},
    {"", "g = @(t) t(1); y = g(#);\n", "", ""},
    {"function f(x)\n", "g = @f; v# = x(1); g(#); f(#);\n", "", ""},
    {"", "y = cellfun(@(t) f(t), c);\n", "", ""},
    {"", "y = ['a' f(#)];\n", "", ""},
    {"", "y = [1 2; 3 #];\n", "", ""},
    {"", "y = {1, 'a', #};\n", "", ""},
    {"", "y = x(:)';\n", "", ""},
    {"", "y = eval('1 + #');\n", "", ""},
    {"", "eval('x = #;');\n", "", ""},
    {"", "y = num2str(#);\n", "", ""},
    {"", "y = strcmp(z, 'a#');\n", "", ""},
    {"", "fprintf('%d\\n', #);\n", "", ""},
    {"", "y = 'text # it''s';\n", "", ""},
    {"", "if x, y = #; end\n", "", ""},
    {"", "b = true; if b, y = #; end\n", "", ""},
    {"", "m = cellfun(@isempty, c); c(m) = {#};\n", "", ""},
    {"", "if f(x) && g(x), y = #; else, y = 2; end\n", "", ""},
    {"function f(x)\n", "if x > #, x# = 1; end\n", "", ""},
    {"function f(x)\n", "x = x(:);\n", "", ""},
    {"if x(1)", " || x(#)", ", y = 1; end\n", ""},
    {"", "for k = 1:3, y(k) = #; end\n", "", ""},
    {"", "for k = c, y = #; end\n", "", ""},
    {"", "while f(x), x = #; if x, break, end, end\n", "", ""},
    {"", "do\nx = #;\nuntil x\n", "", ""},
    {"", "switch x, case {#, 'a'}, y = 1; otherwise, y = 2; end\n", "", ""},
    {"", "try, y = f(#); catch e, y = g(e); end\n", "", ""},
    {"", "try, y = s.a#; catch, y = 0; end\n", "", ""},
    {"", "try, y = f(#); catch, error('a'); end\n", "", ""},
    {"", "return\n", "", ""},
    {"", "if x, return, end\n", "", ""},
    {"", "unwind_protect, y = f(#); unwind_protect_cleanup, y = 1; end\n", "", ""},
    {"", "x = ;\n", "", ""},
    {"", "x = (1;\n", "", ""},
    {"", "end\n", "", ""},
    {"", "\n", "", ""},
    {"", ";", "", ""},
    {"", "x += #;\n", "", ""},
    {"", "x++;\n", "", ""},
    {"", "function f, x = 1; end\n", "", ""},
    {"", "function f#(x), y = x + #; end\n", "", ""},
    {"", "function y = f#(x), y = f#(x - 1); end\n", "", ""},
    {"", "function [a, b] = f#(x), if x, return, end, a = #; b = 2; end\n", "", ""},
    {"", "function y = f#(varargin), y = varargin{1}; end\n", "", ""},
    {"", "function f#(x), persistent p, p = x; end\n", "", ""},
    {"function f\n", "function g#, x = #; end\n", "", ""},
    {"function f(x)\n", "if nargin < #, x = 1; end\n", "", ""},
    {"function [a, b, c] = f(x)\n", "if x, return, end\n", "", ""},
    {"function y = f(k)\ns = g(k);\n", "y.a# = s.a#; s.b#(2) = 1; z# = s;\n", "", ""},
    {"function f(s, k)\nif k, x = s;\n", "elseif k < #, x = s.a; s.b(2) = x;\n", "", ""},
    {"y = 1", " + #", "", ""},
    {"y = 1", " + f(#)", "", ""},
    {"y = x", " * x", "", ""},
    {"y = x", " .* f(#)", "", ""},
    {"y = x", "'", "", ""},
    {"y = x", "^2", "", ""},
    {"y = x", " & x", "", ""},
    {"y = x", " && f(#)", "", ""},
    {"y = x", " || x == #", "", ""},
    {"y = x", " == #", "", ""},
    {"y = x", ":1", "", ""},
    {"y = s", ".a", "", ""},
    {"y = s", ".a(#)", "", ""},
    {"y = s", ".a(end - 1)", "", ""},
    {"y = s", ".(f)", "", ""},
    {"y = x", "(2:end-1)", "", ""},
    {"y = c", "{end}", "", ""},
    {"y = c", "{1}{:}", "", ""},
    {"y = 1", "...\n + 1", "", ""},
    {"y = 1 ...\n", "% c ...\n", "", ""},
    {"s", "(#).a", "", ""},
    {"if x, y = 1;", "\nelseif f(#), y = 2;", "", ""},
    {"switch x", "\ncase #", "", ""},
    {"switch x", "\ncase {#, 'a'}, f(1)", "", ""},
    {"f(1", ", #", "", ""},
    {"f(1", ", @(t) t + x", "", ""},
    {"f(1", ", x(end)", "", ""},
    {"global", " g#", "", ""},
    {"clear", " x#", "", ""},
    {"f", " a#", "", ""},
    {"y = 'a", "#", "", ""},
    {"% c", "#", "", ""},
    {"y = a", "b", "", ""},
    {"y = 1", "0", "", ""},
    {"y = 0x1", "0", "", ""},
    {"y = [1", ", #", "]", ""},
    {"y = [1", "; #", "]", ""},
    {"y = [1", "; f(#)", "]", ""},
    {"y = {1", ", 'a#'", "}", ""},
    {"y = {1", ", c{:}", "}", ""},
    {"y = [1", ", c{:}", "]", ""},
    {"y = f(1", ", c{:}", ")", ""},
    {"y = ['a'", " f(#)", "]", ""},
    {"[a", ", b#", "] = f(1);", ""},
    {"[a", ", ~", "] = f(1);", ""},
    {"[a", ", s.a(#)", "] = f(1);", ""},
    {"[a", ", c{:}", "] = f(1);", ""},
    {"function f(a", ", b#", ")\n", ""},
    {"function [a", ", b#", "] = f(x)\na = 1; if x, return, end\n", ""},
    {"function [a", ", b#", ", varargout] = f(x)\nif x, return, end\n", ""},
    {"g = @(a", ", b#", ") a + x;", ""},
    {"s", "(2).a", " = 1;", ""},
    {"s", "(end + 1).a", " = 1;", ""},
    {"c", "{end + 1}", " = 1;", ""},
    {"s", "(end).a", "(end) = [];", ""},
    {"s", ".(f)", " = 1;", ""},
    {"x(1", ", #", ") = 1;", ""},
    {"eval('", "x = #;", "');", ""},
};

/* Each field is looked for by its whole path. */
constexpr Construct SQUARE[] = {
    {"s", ".a", " = 1;", ""},
};
// clang-format on

std::size_t translate(const std::string &source) {
    StandInHost host;
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.equation(values.name("KeepGoing"), values.boolean(true))};
    return host.translate("command", source, {std::begin(options), std::end(options)})
        .value_or("")
        .size();
}

/* In one line. */
std::string shown(const Construct &construct) {
    std::string text;
    for (const std::string_view part :
         {construct.front, construct.piece, construct.inside, construct.closing}) {
        for (const char c : part) text += c == '\n' ? std::string("\\n") : std::string(1, c);
        text += " | ";
    }
    return text;
}

void measure(std::span<const Construct> constructs, const char *kind, int pieces) {
    for (std::size_t row = 0; row < constructs.size(); row++)
        for (const int count : {pieces, 4 * pieces}) {
            const std::string source = source_of(constructs[row], count);
            const std::string label = kind + std::to_string(row) + ' ' + std::to_string(count);
            CALLGRIND_ZERO_STATS;
            const std::size_t bytes = translate(source);
            CALLGRIND_DUMP_STATS_AT(label.c_str());
            std::printf("%s %zu %s\n", label.c_str(), bytes, shown(constructs[row]).c_str());
        }
}

}  // namespace

int main() {
    translate("x = 1");  // what only the first run does
    measure(ROWS, "row", 200);
    measure(SQUARE, "square", 200);
    measure(NESTED_EXPRESSIONS, "nested", 60);
    measure(NESTED_BLOCKS, "nested_block", 60);
    return 0;
}
