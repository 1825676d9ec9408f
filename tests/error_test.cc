/* Errors: their full texts, and what goes on when RaiseError returns. */
#include "run/last_error.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "support/allocation.h"
#include "tests/small_stack.h"
#include "tests/translation.h"

namespace mtranslate {

namespace {

/* The text of the one error of a run, or the translation where there is none. The same must be
 * raised again by a second run, however the first was left. */
std::string error_of(const char *mode, const std::string &source) {
    std::string first;
    for (const ErrorExit exit : EVERY_EXIT) {
        const Outcome outcome = run_leaving(exit, mode, source);
        const std::string text =
            outcome.errors.empty() ? outcome.result.value_or("null") : outcome.errors[0];
        if (first.empty()) first = text;
        EXPECT_EQ(text, first);
    }
    return first;
}

std::string blanks(size_t count) { return std::string(count, ' '); }

TEST(Errors, show_line_and_caret_in_commands) {
    const Row rows[] = {
        {"x = = 2", "on line 1, syntax error\nx = = 2\n     ^\n"},
        {"'open", "on line 1, lexical error.\n\n^\n"},
        {"x = 'open", "on line 1, syntax error\nx = 'open\n    ^\n"},
        {"\n'open", "on line 2, syntax error\n'open\n    ^\n"},
        {"a .'", "on line 1, syntax error\na .'\n ^\n"},
        {"[1 2", "on line 1, lexical error.\n[1 2\n ^\n"},
        {"a = 1;\nb = )\nc", "on line 2, syntax error\nb = )\n     ^\n"},
        // a line end is counted when it is read: number of the next line, text of the last
        {"x =\ny", "on line 2, syntax error\nx =\n  ^\n"},
        {"a\nx = (1\ny", "on line 3, syntax error\nx = (1\n     ^\n"},
        {"a\nx + %\ny", "on line 3, syntax error\na\n^\n"},
        {"a\n\nx + )", "on line 3, syntax error\n\n     ^\n"},
        {"a\r\nx + )\r\nb", "on line 2, syntax error\nx + )\n     ^\n"},
        {"a\r\nx +\r\nb", "on line 3, syntax error\nx +\n  ^\n"},
        {"a\rx +\rb", "on line 3, syntax error\nx +\n  ^\n"},
        {"a\n\fx + )\fb", "on line 3, syntax error\n\fx + )\fb\n     ^\n"},
        // comments and continuations count lines but do not move the text
        {"a\nb % c\nx = )", "on line 3, syntax error\nb % c\n     ^\n"},
        {"a\nb + ...\n + )", "on line 3, syntax error\nb + ...\n    ^\n"},
        {"x = [1 2 )", "on line 1, syntax error\nx = [1 2 )\n     ^\n"},
        // commas stand for the blanks given up
        {"a\nx = [1   2 )]", "on line 2, syntax error\nx = [1   2 )]\n          ^\n"}};
    for (const Row &row : rows) EXPECT_EQ(error_of("command", row.source), row.expected);
}

TEST(Errors, refuse_what_the_grammar_leaves_out) {
    for (const std::string &source : cells(table("refused"))) {
        const std::string text = error_of("command", unescaped(source));
        EXPECT_NE(text.find(", syntax error\n"), std::string::npos) << source << ": " << text;
    }
}

TEST(Errors, have_the_column_of_the_source) {
    for (const Row &row : short_rows(table("columns")))
        EXPECT_EQ(std::to_string(error_column(row.source)), row.expected) << row.source;
}

TEST(Errors, name_a_loop_that_has_no_last_value) {
    const std::string first =
        "on line 2, the range of the for loop over kk has no last value\nfor kk = 1:end\n"
        "             ^\n";
    EXPECT_EQ(error_of("command", "for kk = 1:end\nx\nend"), first);
    // where it returns, a later error has its own place
    const char *source = "function f\nfor kk = 1:end\nend\nend\nfunction g\nx = )";
    const Texts errors = run_leaving(ErrorExit::Return, "command", source).errors;
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].substr(errors[0].find(',')), first.substr(first.find(',')));
    EXPECT_EQ(errors[1], "on line 6, syntax error\nx = )\n     ^\n");
}

TEST(Errors, cut_long_lines) {
    const struct {
        std::string source, excerpt_and_caret;
    } rows[] = {// the column reached: 79 has a caret, 80 none
                {"x =" + blanks(75) + ")", "x =" + blanks(75) + ")\n" + blanks(79) + "^\n"},
                {"x =" + blanks(76) + ")", "x =" + blanks(76) + ")\n"},
                // the end of the line before: 899 characters have a caret, 900 none
                {"x =" + blanks(896) + "\n", "x =" + blanks(896) + "\n" + blanks(898) + "^\n"},
                {"x =" + blanks(897) + "\n", "x =" + blanks(897) + "\n"},
                // 1024 characters are whole; of more, the caret follows the cut
                {"a\nx = )" + blanks(1019), "x = )" + blanks(1019) + "\n     ^\n"},
                {"a\nx = )" + blanks(1020), "x = )" + blanks(1019) + "...\n     ^\n"},
                {"a\nx = " + blanks(1021) + "\nb", "x = " + blanks(1020) + "...\n"},
                // the first line of a command: its whole text counts
                {"x = )\n" + blanks(1100), "x = )\n" + blanks(1018) + "...\n     ^\n"},
                {"x = )" + blanks(1017), "x = )" + blanks(1017) + "\n     ^\n"},
                {"x = )" + blanks(1018), "x = )" + blanks(1018) + "\n...\n     ^\n"}};
    for (const auto &row : rows) {
        const std::string text = error_of("command", row.source);
        EXPECT_EQ(text.substr(text.find('\n') + 1), row.excerpt_and_caret);
    }
}

TEST(Errors, name_the_file) {
    const SourceFiles files(R"(
first => x = )\n   second => a;\nx = [1 % one\n 2 )]\n   end => x = (   proc => function f\nx\nend
caller => \n\nf(1)\n   f => y = 1;\ny = )\n   carry => a\ng(1)   g => y = )
after => a\nh(1))\n   h => function y = h(x)\n\n\n'z';\n)");
    const struct {
        const char *file, *header_end, *rest;
    } rows[] = {{"first.m", "1 of first.m", "\n     ^\n"},  // nothing is kept of a first line
                {"second.m", "3 of second.m", "x = [1 % one\n    ^\n"},
                {"end.m", "1 of end.m", "\n     ^\n"},
                {"proc.m", "3 of proc.m", "end\n   ^\n"},
                {"caller.m", "2 of f.m", "y = )\n     ^\n"},
                // text and column carry over from the caller
                {"carry.m", "1 of g.m", "g(1)\n         ^\n"},
                // after a complete script, when the functions that it calls have been translated
                {"after.m", "2 of after.m", "h(1))\n     ^\n"}};
    for (const auto &row : rows) {
        std::string where = row.header_end;
        where.insert(where.find("of ") + 3, files.path(""));
        EXPECT_EQ(error_of("file", files.path(row.file)),
                  "on line " + where + ", syntax error\n" + row.rest);
    }
}

TEST(Errors, are_kept_as_records) {
    const SourceFiles files("main => f(1)   f => a;\\nb = (   g => x");
    const std::string f = files.path("f.m");
    const struct {
        const char *mode;
        std::string source;
        ErrorRecord record;
    } rows[] = {
        {"command", "a;\nbb = )", {"syntax error", nullptr, 2, 8, GIVEN_IS_WRONG}},
        {"command", "[1", {"lexical error.", nullptr, 1, 0, GIVEN_IS_WRONG}},
        {"command",
         "for k = 1:end\nx, end",
         {"the range of the for loop over k has no last value", nullptr, 2, 13, GIVEN_IS_WRONG}},
        {"file", files.path("main.m"), {"syntax error", f.c_str(), 2, 8, GIVEN_IS_WRONG}},
        {"file", files.path("no.m"), {"unable to open %1", nullptr, 0, -1, FILE_IS_UNREADABLE}}};
    for (const auto &row : rows) {
        run_leaving(ErrorExit::Jump, row.mode, row.source);
        EXPECT_STREQ(LastError.message, row.record.message);
        EXPECT_STREQ(LastError.file, row.record.file);
        EXPECT_EQ(LastError.line, row.record.line);
        EXPECT_EQ(LastError.offset, row.record.offset);
        EXPECT_EQ(LastError.cause, row.record.cause);
        mTranslateRelease();
        EXPECT_EQ(LastError.message, nullptr);
    }
}

TEST(Errors, fit_into_2048_bytes) {
    const std::string line = "x = )" + blanks(800);
    const SourceFiles files;
    files.write("f.m", "a\n" + line);
    auto long_name = [&files](size_t length) {
        std::string name = files.path("");
        while (name.size() + 3 < length) name += name.size() + 4 == length ? "/" : "./";
        return name + "f.m";
    };
    const std::string caret = "     ^\n";
    // header and caret survive what is cut from the excerpt
    const std::string header = "on line 2 of " + long_name(1500) + ", syntax error\n";
    const size_t kept = 2047 - header.size() - caret.size() - 1;
    EXPECT_EQ(error_of("file", long_name(1500)), header + line.substr(0, kept) + "\n" + caret);
    // a file name that does not fit itself keeps its end
    const std::string text = error_of("file", long_name(3000));
    EXPECT_EQ(text.size(), 2047u);
    EXPECT_EQ(text.substr(0, 16), "on line 2 of ...");
    const std::string end = "/f.m, syntax error\n\n" + caret;
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
    // a message that does not fit is cut itself
    const std::string message = "on line 1, the range of the for loop over " + repeated("k", 2100);
    EXPECT_EQ(error_of("command", "for " + repeated("k", 2100) + " = 1:end, end"),
              message.substr(0, 2047 - 5) + "\n...\n");
}

TEST(Errors, stop_scripts_that_call_scripts_at_a_limit) {
    SourceFiles files;
    for (int i = 0; i <= 500; i++)
        files.write("s" + std::to_string(i) + ".m", "s" + std::to_string(i + 1) + "()");
    std::string all;
    for (int i = 501; i > 1; i--) all += "s" + std::to_string(i) + "();\n";
    EXPECT_EQ(on_small_stack([&] { return error_of("file", files.path("s1.m")); }), all);
    EXPECT_EQ(on_small_stack([&] { return error_of("file", files.path("s0.m")); }),
              "on line 1 of " + files.path("s500.m") + ", scripts are nested too deeply\n\n");
    EXPECT_EQ(on_small_stack([&] { return error_of("file", files.path("s1.m")); }), all);
}

TEST(Errors, do_not_stop_scripts_one_after_the_other) {
    SourceFiles files;
    std::string main;
    for (int i = 0; i <= 500; i++) {
        files.write("s" + std::to_string(i) + ".m", "x = 1");
        main += "s" + std::to_string(i) + "()\n";
    }
    files.write("main.m", main);
    const std::string text = error_of("file", files.path("main.m"));
    EXPECT_TRUE(text.starts_with(repeated("x := 1;\n", 501) + "s0();\n")) << text;
}

TEST(Errors, stop_blocks_at_the_limit_of_the_parser) {
    const struct {
        const char *before, *block, *inside, *after, *end;
        int deepest;
        const char *line;  // of the translation, one a block
    } rows[] = {
        {"", "for k=a,", "b,", "end,", "", 1999, "qxrp_A := a;\n"},
        {"", "switch a, case 1,", "b,", "end,", "", 1665, " := a;\n"},
        {"", "switch a, otherwise,", "b,", "end,", "", 1999, "if true then\n"},
        {"if a,", "elseif a,", "", "", "end,", 3331, "elif ArrayTools[AllNonZero](a) then\n"},
        {"if a,", "else, if a,", "", "end,", "end,", 1998, "else\n"},
        {"switch a, case 0,", "case 1,", "", "", "end,", 3330,
         "elif switch_condition0 = 1 then\n"}};
    for (const auto &row : rows) {
        const auto translated = [&row](int depth) {
            const std::string source = row.before + repeated(row.block, depth) + row.inside +
                                       repeated(row.after, depth) + row.end;
            return on_small_stack([&source] {
                const Outcome outcome = run_leaving(ErrorExit::Throw, "command", source);
                return outcome.result ? *outcome.result : outcome.errors.at(0);
            });
        };
        const std::string text = translated(row.deepest);
        int blocks = 0;
        for (size_t at = 0; (at = text.find(row.line, at)) != std::string::npos; at++) blocks++;
        EXPECT_EQ(blocks, row.deepest) << row.block << text.substr(0, 100);
        const std::string error = translated(row.deepest + 1).substr(0, 100);
        EXPECT_EQ(error.substr(0, error.find('\n')), "on line 1, memory exhausted") << row.block;
    }
}

TEST(Errors, stop_at_the_limit_of_the_stack) {
    const SourceFiles files;
    files.write("fits.m", repeated("a;", 4998));
    files.write("exceeds.m", repeated("a;", 4999));
    EXPECT_EQ(error_of("file", files.path("fits.m")).size(), 3u * 4998);
    EXPECT_EQ(error_of("file", files.path("exceeds.m")),
              "on line 1 of " + files.path("exceeds.m") + ", memory exhausted\n\n");
}

TEST(Errors, that_return_keep_what_stood_before) {
    const SourceFiles files(R"(
three => function a\nx = 1;\nend\nfunction b\nx = );\ny = (;\nend\nfunction c\nz = 3;\nend\n
calls => function a\nf(1);\nend\nx = );\n   f => function f(x)\ny = 2;\nend\n   outer => g(1))   g => y = )\n
inside => function a\nh(1);\nend\nx = (   h => function h\ny = z;)");
    const std::string a = "a := proc(  )\n;\n    x := 1;\n    end proc;\n\n";
    auto run = [](const char *mode, const std::string &source) {
        const Outcome outcome = run_leaving(ErrorExit::Return, mode, source);
        return outcome.result.value_or("null") + std::to_string(outcome.errors.size());
    };
    EXPECT_EQ(run("file", files.path("three.m")), a + "1");
    EXPECT_EQ(yynerrs, 1);
    // the functions called before the error are still found
    EXPECT_EQ(run("file", files.path("calls.m")),
              "a := proc(  )\n;\n    f(1);\n    end proc;\n\n"
              "f := proc( x )\n;\n    y := 2;\n    end proc;\n\n1");
    // an error of a called file is not counted as the caller's
    EXPECT_EQ(run("file", files.path("outer.m")), "g(1);\n2");
    EXPECT_EQ(yynerrs, 1);
    // the bracket that was open is still open for the files after
    EXPECT_EQ(run("file", files.path("inside.m")),
              "a := proc(  )\n;\n    h(1);\n    end proc;\n\n"
              "h := proc(  )\n;\n    (y := copy(z));\n    end proc;\n\n1");
    EXPECT_EQ(run("command", "x = )"), "1");
    EXPECT_EQ(run("command", "x = 1"), "x := 1;\n0");
}

TEST(Errors, in_arguments) {
    StandInHost host;
    host.leave_errors_by(ErrorExit::Return);
    ValueStore &values = host.values();
    const HostValue command = values.string("command");
    const HostValue text = values.string("x=1");
    const HostValue number = ValueStore::integer(7);
    const HostValue even = ValueStore::integer(4);
    const HostValue mixed_list[] = {values.string("dir"), number, command};
    const HostValue mixed = values.list(mixed_list);
    const HostValue other = values.equation(values.name("Foo"), values.boolean(false));
    const HostValue unnamed = values.equation(number, values.boolean(false));
    const HostValue bad = values.string("files");
    const HostValue strange = values.string("x(end-1)");
    const HostValue gap = values.string("eval x\nx = 1");
    const auto language = [&](HostValue value) {
        return values.equation(values.name("Language"), value);
    };
    const HostValue matlab = language(values.name("matlab"));
    const HostValue keep_going = values.equation(values.name("KeepGoing"), values.boolean(true));
    const HostValue misspelt = values.equation(values.name("KeepGoin"), values.boolean(true));
    const HostValue own = values.equation(values.name("mine"), values.boolean(true));
    const struct {
        std::vector<HostValue> arguments;
        const char *outcome;  // the result, and the errors after it
    } rows[] = {
        {{}, "null invalid input: at least two arguments expected"},
        {{command}, "null invalid input: at least two arguments expected"},
        {{number, text}, "null invalid input: string expected for first argument, but got 7"},
        {{command, number}, "null invalid input: string expected for second argument, but got 7"},
        {{command, text, mixed}, "x := 1;\n invalid input: path must be a list of strings"},
        {{bad, text, mixed}, "null invalid input: path must be a list of strings"},
        {{values.string("file"), bad}, "null unable to open \"files\""},
        {{values.string("Command"), text}, "null"},
        {{command, text, number, even, text, other, unnamed, 0}, "x := 1;\n"},
        {{command, strange, language(values.string("classic"))},
         " on line 1, syntax error\nx(end-1)\n      ^\n"},
        {{command, text, matlab, language(values.string("Matlab"))},
         "null invalid input: Language must be classic, matlab or octave"},
        {{command, text, language(number)},
         "null invalid input: Language must be classic, matlab or octave"},
        {{command, text, values.equation(values.name("MaxMemory"), text)},
         "null invalid input: MaxMemory must be a number of megabytes"},
        {{command, text, misspelt, matlab}, "null invalid input: unknown option KeepGoin"},
        {{command, text, matlab, own, unnamed, number}, "x := 1;\n"},
        {{command, gap, matlab, keep_going}, "# not translated (MT204 eval): eval x\nx := 1;\n"},
        {{command, gap, language(values.string("octave"))},
         "# not translated (MT204 eval): eval x\nx := 1;\n on line 1, 'eval' runs a text as a "
         "program, which is not translated\neval x\n^\n"}};
    for (const auto &row : rows) {
        const HostValue result = host.run(values.sequence(row.arguments));
        std::string outcome =
            is_a(ValueType::String, result) ? text_of(result) : to_display(result);
        for (const std::string &error : host.take_errors()) outcome += " " + error;
        EXPECT_EQ(outcome, row.outcome);
    }
}

}  // namespace

}  // namespace mtranslate
