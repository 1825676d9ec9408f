/* What nests in MATLAB, for what measures and for what breaks it. */
#pragma once

#include <string>
#include <string_view>

namespace mtranslate {

/* Pieces one after the other, or one in the other where each has its closing. */
struct Construct {
    std::string_view front, piece, inside, closing; /* # in a piece: its number, from 1 */
};

// clang-format off
inline constexpr Construct NESTED_EXPRESSIONS[] = {
    {"y = ", "(1 + ", "1", ")"},
    {"y = ", "[1 ", "1", "]"},
    {"y = ", "{1, ", "1", "}"},
    {"y = ", "f(1, ", "1", ")"},
    {"y = ", "f(1 + ", "1", ")"},
    {"y = ", "x(", "1", ")"},
    {"y = ", "x(end - ", "1", ")"},
    {"y = ", "s.(", "1", ")"},
    {"y = ", "-", "1", ""},
    {"y = ", "x && f(", "1", ")"},
    {"y = ", "(x || ~", "f(1)", ")"},
    {"y = ", "@() f(", "1", ")"},
    {"y = ", "f(", "1", " == 1)^2"},
    {"y = ", "x(1, ", "1", ")'"},
    {"y = ", "c{", "1", "}{:}"},
    {"y = ", "x(", "1", ")(end - 1)"},
    {"y = ", "['a' f(", "1", ")]"},
    {"if f(", "1 + f(", "1", ")"},
    {"x(2) = ", "f(1).b(", "1", ")"},
    {"x(", "s(2).a(", "1", ")"},
    {"y = ", "f(1).b(end - ", "1", ")'.c"},
    {"y = ", "{c{:}, ", "1", "}"},
    {"y = ", "@(t) t + ", "1", ""},
    {"y = ", "s.(", "1", ").a(1)"},
    {"y = ", "f(1).(", "1", ").a{1}'"},
    {"y = ", "x && (f(1) || ", "f(1)", ")"},
    {"[a, b] = f(", "f(1).a(end, ", "1", ")"},
    {"y = ", "[c{", "1", "}]"},
    {"s.(", "s.a.(", "1", ")"},
    {"y = ", "(-", "1", ")'"},
    {"y = ", "~", "1", ""},
    {"y = ", "@(t) ", "1", ""},
};

inline constexpr Construct NESTED_BLOCKS[] = {
    {"", "if x\n", "y = 1;\n", "end\n"},
    {"", "if x, else\n", "y = 1;\n", "end\n"},
    {"", "if x, elseif x && f(1)\n", "y = 1;\n", "end\n"},
    {"", "for k = 1:3\n", "y = 1;\n", "end\n"},
    {"", "while x && f(1)\n", "y = 1;\n", "end\n"},
    {"", "do\n", "y = 1;\n", "until x\n"},
    {"", "switch x, case {1, 2}\n", "y = 1;\n", "end\n"},
    {"", "unwind_protect\n", "y = 1;\n", "unwind_protect_cleanup, f(1); end\n"},
    {"", "try\n", "y = 1;\n", "catch e, f(2), end\n"},
    {"", "if x, try\n", "y = 1;\n", "catch\nwhile f(1), f, end, end, end\n"},
    {"", "try, y = 2; catch e\n", "y = 1;\n", "end\n"},
    {"", "function f#\n", "y = 1;\n", "end\n"},
};
// clang-format on

inline std::string numbered(std::string_view piece, int number) {
    std::string text;
    for (const char c : piece)
        if (c == '#')
            text += std::to_string(number);
        else
            text += c;
    return text;
}

/* A program with so many pieces. */
inline std::string source_of(const Construct &construct, int pieces) {
    const bool is_function =
        construct.front.starts_with("function") || construct.piece.starts_with("function");
    std::string text = is_function ? "" : "x = 1; c = {}; s.a = 1;\n";
    text += construct.front;
    for (int k = 1; k <= pieces; k++) text += numbered(construct.piece, k);
    text += construct.inside;
    for (int k = 1; k <= pieces; k++) text += construct.closing;
    return text + '\n';
}

}  // namespace mtranslate
