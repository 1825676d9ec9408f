/* The command-line tool: what it writes, says and answers. */
#include "tests/tool.h"

#include "cli/messages/excerpt.h"
#include "diagnose/message_table.h"

namespace mtranslate {

namespace {

TEST_F(ClassicTool, translates) {
    write(directory / "s/main.m", "x = f(1)\n");
    write(directory / "s/f.m", "y = 2\n");
    write(directory / "t/f.m", "z = 3\n");
    write(directory / "f.m", "w = 4\n");
    fs::create_directory(directory / "u");
    write(directory / "-x.m", "x = 1\n");
    check({
        {"mtranslate -c 'x = a*b'", 0, "x := a . b;\n", ""},
        {"mtranslate -c '-x'", 0, "-x;\n", ""},
        {"mtranslate -c ''", 0, "", ""},
        {"mtranslate s/main.m", 0, "y := 2;\nx := f(1);\n", ""},
        {"mtranslate -I t -I s s/main.m", 0, "z := 3;\nx := f(1);\n", ""},
        {"mtranslate s/main.m -I u -Is", 0, "y := 2;\nx := f(1);\n", ""},
        {"mtranslate --no-translator s/main.m", 0, "x := f(1);\n", ""},
        {"mtranslate - < s/main.m", 0, "w := 4;\nx := f(1);\n", ""},
        {"mkfifo p; cat s/main.m > p & mtranslate p", 0, "w := 4;\nx := f(1);\n", ""},
        {"mtranslate -- -x.m", 0, "x := 1;\n", ""},
        {"mtranslate -o out.txt -- -x.m && cat out.txt", 0, "x := 1;\n", ""},
        {"mtranslate --version", 0, "mtranslate 0.1.0\n", ""},
    });
}

TEST_F(Tool, says_what_it_leaves_untranslated) {
    write(directory / "gap.m", "% head\ntry\n\tx = 1;\ncatch\nend\ny = [s.f] + (2;\n");
    write(directory / "main.m", "x = g(1) + g(2);\ny = sin(cos(x));\n");
    write(directory / "g.m", "function y = g(x)\ny = x +;\nend\n");
    write(directory / "mark.m", "x = \"\xC3\xA4\" == 'abc';\r\n\ty = 'ab' == x;\n");
    write(directory / "script.m", "y = 2;\n");
    write(directory / "behind.m", "function g\nend\nx = 1;\n");
    const std::string gap =
        "# head\n# not translated: errors in the lines below are not caught\n"
        "x := 1;\n"
        "# not translated (MT102 unclosed-bracket): y = [s.f] + (2;\n";
    const std::string messages =
        "gap.m:2:1: gap: errors are not caught in the host's language [MT201]\ntry\n^~~\n"
        "gap.m:6:15: error: expected ')' to close '(' of line 6, found ';' [MT102]\n"
        "y = [s.f] + (2;\n              ^\n";
    const std::string called =
        "main.m:1: note: './g.m' is called here\n"
        "./g.m:2:8: error: expected a value after '+', found ';' [MT101]\ny = x +;\n       ^\n"
        "main.m: warning: 2 functions are found nowhere and left to the host: sin, cos [MT401]\n";
    check({
        {"mtranslate gap.m", 1, gap, messages},
        {"mtranslate --strict gap.m", 1, "", messages},
        {"mtranslate --strict -o o.txt gap.m; ls o.txt 2> /dev/null", 2, "", messages},
        {"mtranslate --strict -c 'x = 1;'", 0, "x := 1;\n", ""},
        {"mtranslate main.m | tail -n 2", 0, "x := g(1) +~ g(2);\ny := sin(cos(x));\n", called},
        {"mtranslate mark.m > /dev/null", 0, "",
         "mark.m:1:5: warning: '==' compares texts character by character [MT302]\n"
         "x = \"\xC3\xA4\" == 'abc';\n    ^~~~~~~~~~~~\n"
         "mark.m:2:6: warning: '==' compares texts character by character [MT302]\n"
         "\ty = 'ab' == x;\n\t    ^~~~~~~~~\n"},
        {"mtranslate -I . -c 'x = script(1);'", 0, "x := script(1);\n",
         "<command>:1:5: warning: the file of 'script' is a script: it takes no arguments and "
         "gives "
         "no value [MT406]\nx = script(1);\n    ^~~~~~\n"},
        {"mtranslate --language octave -I . -c behind", 1,
         "behind := proc(  )\nend proc;\n\n# not translated (MT207 outside-statement): x = 1\n"
         "behind();\n",
         "<command>:1: note: './behind.m' is called here\n"
         "./behind.m:1:1: note: the function 'g' is called by the name of its file, 'behind' "
         "[MT405]\nfunction g\n^~~~~~~~~~\n"
         "./behind.m:3:1: gap: a file whose function is called does not run its statements outside "
         "of functions [MT207]\nx = 1;\n^~~~~\n"},
        {"printf '%% a \\t\\n%%  \\nx = 1; %% b \\n%%{ \\n c \\n%%}\\nx = (...  \\n \\n 2;\\n' > "
         "blanks.m; "
         "mtranslate blanks.m 2> /dev/null",
         1,
         "# a\n#\nx := 1; # b\n# c\n# not translated (MT102 unclosed-bracket): x = (...\n#\n#  "
         "2;\n",
         ""},
        {"mtranslate --language octave -c 'x = y = 1;'", 0, "y := 1;\nx := y;\n", ""},
    });
}

TEST_F(Tool, takes_files_of_a_tree_for_what_they_begin_with) {
    write(directory / "t/main.m", "f;\ns;\nx = pk.g(1);\n");
    write(directory / "t/f.m", "%{\nx = 1;\n%{\n%}\ny = 1;\n%}\nfunction f\nend\n");
    write(directory / "t/s.m", "%{\nfunction s\n%}\ny = 1;\n");
    write(directory / "t/+pk/g.m", "function y = g(x)\ny = x;\nend\n");
    check({
        {"mtranslate t -O o 2> /dev/null; cat o/main.txt", 0,
         "f();\n# function s\ny := 1;\nx := g(1);\n", ""},
        {"mtranslate t -O o --no-translator 2> /dev/null; cat o/main.txt", 0,
         "f();\ns();\nx := pk:-g(1);\n", ""},
    });
}

TEST_F(Tool, shows_the_tree_with_what_cannot_be_read) {
    write(directory / "main.m", "x = f(1) + ans;\ny = (2;\n");
    write(directory / "f.m", "y = x +;\n");
    const std::string tree = "(file\n  (= x (f(1) + ans));\n  (bad))\n";
    const std::string error =
        "main.m:2:7: error: expected ')' to close '(' of line 2, found ';' [MT102]\n"
        "y = (2;\n      ^\n";
    check({
        {"mtranslate --dump-tree -c 'x = a + b(1)*2; y'", 0,
         "(file\n  (= x (a + (b(1) * 2)));\n  y)\n", ""},
        {"mtranslate --dump-tree main.m", 1, tree, error},
        {"mtranslate --dump-tree --strict main.m", 1, "", error},
        {"mtranslate --dump-tree -o tree main.m; cat tree", 0, tree, error},
    });
}

/* The files of a run under their names for the user, and places that a line makes hard. */
TEST_F(Tool, shows_where_a_message_belongs) {
    write(directory / "g.m", "function y = g(x)\ny = x +;\nz = ans + cos(x) + sin(x);\nend\n");
    write(directory / "mark.m", "\xEF\xBB\xBFx = (1;\r\r\n\tz = (");
    write(directory / "bytes.m", "x = '\xB0\xE2\x80\xA8\xC3\xA4' + (1; y = {2;");
    const std::string called =
        ":1: note: './g.m' is called here\n"
        "./g.m:2:8: error: expected a value after '+', found ';' [MT101]\ny = x +;\n       ^\n"
        "./g.m:3:5: warning: 'ans' is not set by the translated statements [MT303]\n"
        "z = ans + cos(x) + sin(x);\n    ^~~\n";
    const std::string sine =
        "<stdin>: warning: 1 function is found nowhere and left to the host: sin [MT401]\n";
    const std::string cosine =
        "./g.m: warning: 1 function is found nowhere and left to the host: cos [MT401]\n";
    check({
        {"echo 'x = sin(1) + g(2);' | mtranslate - > /dev/null", 1, "",
         "<stdin>" + called + sine + cosine},
        {"mtranslate -I . -c 'x = g(2);' | true", 0, "",
         "<command>" + called +
             "./g.m: warning: 2 functions are found nowhere and left to the host: cos, sin "
             "[MT401]\n"},
        {"mtranslate mark.m > /dev/null", 1, "",
         "mark.m:1:7: error: expected ')' to close '(' of line 1, found ';' [MT102]\n"
         "x = (1;\n      ^\n"
         "mark.m:3:7: error: expected a value after '(', found end of file [MT101]\n"
         "\tz = (\n\t     ^\n"},
        {"printf 'x = 1;\\r%% c\\ry = (;\\rz = 2;' | mtranslate - > /dev/null", 1, "",
         "<stdin>:3:6: error: expected a value after '(', found ';' [MT101]\ny = (;\n     ^\n"},
        {"mtranslate bytes.m > /dev/null", 1, "",
         "bytes.m:1:15: error: expected ')' to close '(' of line 1, found ';' [MT102]\n"
         R"(x = '\xb0\xe2\x80\xa8)"
         "\xC3\xA4' + (1; y = {2;\n" +
             repeated(" ", 28) + "^\n"},
    });
}

TEST_F(Tool, translates_trees) {
    const std::pair<const char *, const char *> files[] = {
        {"t/main.m", "% all\nsettings\nx = f(1) + pk.g(2) + none(3);\n"},
        {"t/settings.m", "a = 1;\n"},
        {"t/f.m", "function y = f(x)\ny = r(x);\nend\n"},
        {"t/private/r.m", "function y = r(x)\ny = x;\nend\n"},
        {"t/+pk/g.m", "function y = g(x)\ny = x;\nend\n"},
        {"t/bad.m", "x = (1;\n"},
        {"t/gap.m", "try, x = 1; catch, end\n"},
        {"t/.hidden/h.m", "h = 1;\n"},
        {"t/notes.txt", "no source\n"},
        {"u/f.m", "y = r(2);\n"}};
    for (const auto &[path, text] : files) write(directory / path, text);
    run("ln -s ../t t/private/loop");
    const std::string messages =
        "t/bad.m:1:7: error: expected ')' to close '(' of line 1, found ';' [MT102]\n"
        "x = (1;\n      ^\n"
        "t/gap.m:1:1: gap: errors are not caught in the host's language [MT201]\n"
        "try, x = 1; catch, end\n^~~\n"
        "t/main.m: warning: 1 function is found nowhere and left to the host: none [MT401]\n";
    const std::string counts =
        "mtranslate: 7 of 7 files: 5 without errors or gaps, 1 with gaps, 1 "
        "with errors, 0 failed";
    const std::string u =
        "u/f.m: warning: 1 function is found nowhere and left to the host: r "
        "[MT401]\n";
    const auto good = [](const char *all, const char *written) {
        return std::string("mtranslate: ") + all + " without errors or gaps, 0 with gaps, 0 with " +
               "errors, 0 failed" + written + "\n";
    };
    check({
        {"mtranslate t -O o -j 3", 1, "", messages + counts + "; 7 written\n"},
        {"cd o; find . -type f | sort; cat main.txt f.txt", 0,
         "./+pk/g.txt\n./bad.txt\n./f.txt\n./gap.txt\n./main.txt\n./private/r.txt\n"
         "./settings.txt\n# all\na := 1;\nx := f(1) +~ g(2) +~ none(3);\n"
         "f := proc( x )\n  local y;\n  y := r(x);\n  return y;\nend proc;\n\n",
         ""},
        {"mtranslate t -O o -j 1", 1, "", messages + counts + "; 0 written\n"},
        {"mtranslate check t", 1, "", messages + counts + "\n"},
        {"mtranslate check --language classic t/bad.m 2>&1 | tail -n 1", 0,
         "mtranslate: 1 of 1 file: 0 without errors or gaps, 0 with gaps, 1 with errors, 0 "
         "failed\n",
         ""},
        {"mtranslate u/f.m t/f.m -O o2", 3, "",
         u + "t/f.m: error: its output 'o2/f.txt' is that of 'u/f.m'\nmtranslate: 2 of 2 files: 1 "
             "without errors or gaps, 0 with gaps, 0 with errors, 1 failed; 1 written\n"},
        {"mtranslate t -O o3 --exclude 'private/*' --exclude '[bgm]*.m' --suffix .x; find o3 -type "
         "f",
         0, "o3/f.x\no3/settings.x\n",
         "t/f.m: warning: 1 function is found nowhere and left to the host: r [MT401]\n" +
             good("2 of 2 files: 2", "; 2 written")},
        {"mtranslate t/f.m -O o4 --closure; grep -c proc o4/f.txt", 0, "4\n",
         good("1 of 1 file: 1", "; 1 written")},
        {"echo 'b = 2;' >> t/settings.m; mtranslate diff t/settings.m t/f.m -O o", 1,
         "--- o/settings.txt\n+++ o/settings.txt\n@@ -1 +1,2 @@\n a := 1;\n+b := 2;\n",
         "t/f.m: warning: 1 function is found nowhere and left to the host: r [MT401]\n" +
             good("2 of 2 files: 2", "; 1 would change, 0 would be new")},
        {"mtranslate diff t/settings.m -O o --color=always 2> /dev/null | tr '\\033' '^'", 0,
         "^[1m--- o/settings.txt^[m\n^[1m+++ o/settings.txt^[m\n^[36m@@ -1 +1,2 @@^[m\n a := 1;\n"
         "^[32m+b := 2;^[m\n",
         ""},
        {"chmod a-w o4; rm -f o4/f.txt; mkdir o4/f.txt; mtranslate t/f.m t/settings.m -O o4", 3, "",
         "t/f.m: error: cannot write 'o4/f.txt': Is a directory\n"
         "t/f.m: warning: 1 function is found nowhere and left to the host: r [MT401]\nmtranslate: "
         "2 of 2 files: 1 "
         "without errors or gaps, 0 with gaps, 0 with errors, 1 failed; 1 written\n"},
    });
}

/* All that it calls is in it, and a tree has one for all of its files. */
TEST_F(Tool, writes_its_own_functions_apart) {
    write(directory / "t/a.m", "x = max(1, f(2));\n");
    write(directory / "t/f.m", "function y = f(x)\ny = max(x, 3);\n");
    write(directory / "u/b.m", "x = 1;\n");
    write(directory / "v/qxrp_library.m", "x = max(1, 2);\n");
    for (const std::string name : {"other", "larger"})
        write(directory / "w" / (name + ".m"),
              "function y = " + name + "(x)\ny = ones(x);\nfunction y = ones(x)\ny = x;\n");
    write(directory / "w/d.m", "x = other(1) + larger(2) + max([], 3);\n");
    const std::string names = "grep -o 'qxrp_[a-z_0-9]*[a-z0-9]";
    check({
        {"mtranslate library > l; " + names + "(' l | sort -u | tr -d '(' > calls; " + names +
             " := proc' l | cut -d ' ' -f 1 | sort > procs; uniq -d procs; comm -23 calls procs",
         0, "", ""},
        {"mtranslate t -O o 2>&1 | tail -c 12; grep -c proc o/[af].txt; cmp o/qxrp_library.txt l",
         0, "; 3 written\no/a.txt:0\no/f.txt:2\n", ""},
        {"echo >> o/qxrp_library.txt; mtranslate diff t -O o 2> /dev/null | head -n 1", 0,
         "--- o/qxrp_library.txt\n", ""},
        {"mtranslate u -O p 2> /dev/null; mtranslate t -O q --closure 2> /dev/null; ls p q; "
         "grep -c proc q/f.txt",
         0, "p:\nb.txt\n\nq:\na.txt\nf.txt\n10\n", ""},
        {"mtranslate t/f.m --no-library", 0,
         "f := proc( x )\n  local y;\n  y := qxrp_larger_ones(x, 3);\n  return y;\nend "
         "proc;\n\n",
         ""},
        {"mtranslate w/d.m --no-library | grep ' := proc(' | tail -n 2", 0,
         "qxrp_larger_ones := proc( x )\nqxrp_larger_ones_2 := proc( a, b )\n", ""},
        {"mtranslate v -O o 2>&1 | head -n 1", 0,
         "v/qxrp_library.m: error: its output 'o/qxrp_library.txt' is that of the library\n", ""},
        {"rm o/*; mkdir o/qxrp_library.txt; mtranslate t -O o", 3, "",
         "o/qxrp_library.txt: error: cannot write 'o/qxrp_library.txt': Is a directory\n"
         "mtranslate: 2 of 2 files: 2 without errors or gaps, 0 with gaps, 0 with errors, 0 "
         "failed; "
         "2 written\n"},
        {"mtranslate library -o m; cmp l m; mtranslate -o n library; cmp l n", 0, "", ""},
        {"mtranslate library --format json", 2, "",
         "mtranslate: error: The following arguments were not expected: json --format, which "
         "library does not take\nTry 'mtranslate --help'.\n"},
        {"mtranslate t library", 2, "",
         "mtranslate: error: library and a source exclude each other\nTry 'mtranslate --help'.\n"},
    });
}

TEST_F(Tool, knows_the_folders_of_a_tree) {
    write(directory / "t/@shape/shape.m", "function s = shape(x)\ns.x = x;\n");
    write(directory / "t/@shape/area.m", "function a = area(s)\na = half(side(s));\n");
    write(directory / "t/@shape/private/half.m", "function y = half(x)\ny = x/2;\n");
    write(directory / "t/@shape/side.m", "function y = side(s)\ny = s.x;\n");
    write(directory / "t/+geo/+flat/turn.m", "function y = turn(x)\ny = x;\n");
    write(directory / "t/sub/main.m", "a = area(shape(3)); b = geo.flat.turn(a); c = half(b);\n");
    write(directory / "t/.hidden/x.m", "x = nowhere(1);\n");
    std::filesystem::create_directory_symlink("..", directory / "t/sub/loop");
    const std::string counts =
        "mtranslate: 6 of 6 files: 6 without errors or gaps, 0 with gaps, 0 with errors, 0 failed";
    const std::string unknown =
        "t/sub/main.m: warning: 1 function is found nowhere and left to the host: half [MT401]\n";
    check({
        {"mtranslate check t", 0, "", unknown + counts + "\n"},
        {"mtranslate t -O o -j 8 2> /dev/null; find o -type f | LC_ALL=C sort", 0,
         "o/+geo/+flat/turn.txt\no/@shape/area.txt\no/@shape/private/half.txt\n"
         "o/@shape/shape.txt\no/@shape/side.txt\no/sub/main.txt\n",
         ""},
    });
}

TEST_F(Tool, explains_its_messages) {
    EXPECT_EQ(run("mtranslate explain --page"), 0);
    EXPECT_EQ(read(directory / "out"), read(MTRANSLATE_SOURCE_DIR "/docs/messages.md"));
    check({
        {"mtranslate explain mt203", 0,
         "MT203, deletion (gap)\na deletion with more than one index that is no colon\n\n"
         "x(a, b) = [] deletes rows or columns only where every other index takes all of\n"
         "its dimension. The translator cannot see that it does.\n\n"
         "Example:\n    x = [1 2; 3 4];\n    x(1, 1:2) = [];\n\n"
         "What to do: Write a colon for the dimensions that stay whole: x(1, :) = [].\n",
         ""},
        {"mtranslate explain Deletion | head -n 1", 0, "MT203, deletion (gap)\n", ""},
        {"mtranslate explain | grep -c MT", 0, std::to_string(MESSAGE_COUNT) + "\n", ""},
        {"mtranslate explain deltion", 2, "",
         "mtranslate: error: no message has the code 'deltion'; did you mean 'deletion'?\n"
         "'mtranslate explain' lists all codes.\n"},
        {"mtranslate explain whatever 2>&1 | head -n 1", 0,
         "mtranslate: error: no message has the code 'whatever'\n", ""},
        {"mtranslate explain MT314 | sed -n 2p", 0,
         "nothing assigns '...': '...' is taken for a member of a package or class\n", ""},
        {"mtranslate explain > /dev/full", 3, "",
         "mtranslate: error: cannot write standard output: No space left on device\n"},
    });
}

/* Each example says what its explanation promises. */
TEST_F(Tool, raises_each_message_by_its_example) {
    for (const MessageRow &row : MessageTable) {
        if (!row.example) continue;
        SCOPED_TRACE(row.code);
        write(directory / "example.m", row.example);
        EXPECT_EQ(run("mtranslate example.m"), is_failure(row.id) ? 1 : 0);
        const std::string errors = read(directory / "err");
        EXPECT_NE(errors.find(std::string("[") + row.code + "]"), std::string::npos) << errors;
        for (const MessageRow &other : MessageTable)
            if (other.id != row.id && other.id != UNKNOWN_FUNCTION) {
                EXPECT_EQ(errors.find(std::string("[") + other.code + "]"), std::string::npos)
                    << errors;
            }
    }
}

/* The files of a work tree that git would add are those that are found. */
TEST_F(Tool, leaves_out_what_gitignore_does) {
    const char *const files[] = {"a.m",        "b.m",        "out/a.m",      "x/out/b.m",
                                 "x/a.m",      "x/y/a.m",    "x/y/z/c.m",    "x/y/z/a.m",
                                 "lib/old1.m", "lib/old2.m", "lib/x/old3.m", "deep/p/q/r/s.m",
                                 "#one.m",     "!two.m",     "blank .m",     "x/y/out.m"};
    const char *const ignore_files[] = {"out\n",
                                        "out/\n!x/out/\n",
                                        "/a.m\n",
                                        "a.m\n!/x/a.m\n",
                                        "x/y\n",
                                        "x/**/a.m\n",
                                        "**/z\n",
                                        "x/**\n!x/a.m\n",
                                        "deep/**/s.m\n*.m \n!*.m\nb.m\\ \n",
                                        "lib/old[12].m\r\n\r\n# c.m\n",
                                        "lib/*.m\n",
                                        "old?.m\n!old2.m\n",
                                        "\\#one.m\n\\!two.m\n",
                                        "#one.m\n!two.m\n",
                                        "blank\\ .m\n",
                                        "deep/*/r\n",
                                        "deep/**/r/\n",
                                        "/**\n!/a.m\n!/x/\n",
                                        "x/*\n!x/y\nx/y/*\n!x/y/z/\n",
                                        "/**/a.m\n"};
    for (const char *file : files) write(directory / "t" / file, "x = 1;\n");
    write(directory / "t/x/.gitignore", "!b.m\ny/z/a.m\n");
    run("git init -q t");
    for (const char *text : ignore_files) {
        SCOPED_TRACE(text);
        write(directory / "t/.gitignore", text);
        for (const std::string folder : {"t", "t/x"}) {
            run("cd " + folder +
                " && git -c core.excludesFile= ls-files -oz --exclude-standard . | "
                "tr '\\0' '\\n' | sed -n 's/[.]m$//p' | sort");
            const std::string expected = read(directory / "out");
            run("rm -rf o; mtranslate " + folder +
                " -O o --suffix '' 2> /dev/null; "
                "cd o && find * -type f ! -name qxrp_library | sort");
            EXPECT_EQ(read(directory / "out"), expected);
        }
    }
    write(directory / "t/.gitignore", "lib\na.m\n");
    run("mkfifo t/lib/.gitignore");
    EXPECT_EQ(run("mtranslate check t/lib t/x --no-gitignore"), 0);
    EXPECT_EQ(run("mtranslate check t"), 0);
    EXPECT_TRUE(read(directory / "err").ends_with("; 6 left out by .gitignore\n"))
        << read(directory / "err");
}

TEST_F(Tool, names_the_command_that_was_meant) {
    write(directory / "diff", "x = 1;\n");
    check({
        {"mtranslate chek src", 2, "",
         "mtranslate: error: there is no file or command 'chek'; did you mean 'check'?\n"
         "Try 'mtranslate --help'.\n"},
        {"mtranslate nothing-near.m", 3, "",
         "mtranslate: error: cannot read 'nothing-near.m': No such file or directory\n"},
        {"mv diff dif; mtranslate dif", 0, "x := 1;\n", ""},
        {"mtranslate dif dif -O dif/out", 3, "",
         "mtranslate: error: cannot make the folder 'dif/out': Not a directory\n"},
    });
}

TEST_F(ClassicTool, shows_the_place_of_an_error) {
    write(directory / "bad.m", "a = 1\n\tx = '\xC3\xA4' = 2\nb = 3\n");
    write(directory / "eol.m", "a = 1 % one\r\nx = \r\ny = 2\r\n");
    write(directory / "eof.m", "% first\nif x\ny = 1\n\n\n");
    write(directory / "ff.m", "a = 1;\fb = ;\f");
    write(directory / "lex.m", "'abc\n");
    write(directory / "deep.m", repeated("(", 6000));
    write(directory / "caller.m", "x = bad(1)\n");
    const std::string bad = ":2:11: error: syntax error\n\tx = '\xC3\xA4' = 2\n\t        ^\n";
    const std::string detour = repeated("./", 1100);  // longer than the library's own texts may be
    check({
        {"mtranslate $(printf './%.0s' $(seq 1100))bad.m", 1, "", detour + "bad.m" + bad},
        {"mtranslate -c 'x = = 2'", 1, "", "<command>:1:5: error: syntax error\nx = = 2\n    ^\n"},
        {"mtranslate -c 'if x'", 1, "", "<command>:1:5: error: syntax error\nif x\n    ^\n"},
        {"mtranslate bad.m", 1, "", "bad.m" + bad},
        {"mtranslate - < bad.m", 1, "", "<stdin>" + bad},
        {"mtranslate caller.m", 1, "", "./bad.m" + bad},
        {"mtranslate -I . -c 'bad(1)'", 1, "", "./bad.m" + bad},
        {"mtranslate eol.m", 1, "", "eol.m:2:5: error: syntax error\nx = \n    ^\n"},
        {"mtranslate eof.m", 1, "", "eof.m:3:6: error: syntax error\ny = 1\n     ^\n"},
        {"mtranslate ff.m", 1, "", "ff.m:2:5: error: syntax error\nb = ;\n    ^\n"},
        {"mtranslate lex.m", 1, "",
         "lex.m:1:1: error: lexical error.\n'abc\n^\n"
         "lex.m:1:1: note: no token begins here; is a string not closed?\n"},
        {"mtranslate deep.m", 1, "",
         "deep.m:1:4999: error: memory exhausted\n..." + repeated("(", 114) + "...\n" +
             repeated(" ", 60) +
             "^\ndeep.m:1:4999: note: the source is nested too deeply here, or "
             "has too many statements in a row\n"},
        {"mkfifo g.m; echo 'x = = 2' > g.m & mtranslate -I. -c 'g(1)'", 1, "",
         "./g.m:1: error: syntax error\n"},
        {"mtranslate -o out.txt bad.m; ls out.txt 2> /dev/null", 2, "", "bad.m" + bad},
    });
}

TEST_F(ClassicTool, shows_of_a_line_what_fits_and_does_no_harm) {
    const std::string error = ": error: syntax error\n";
    const auto letters = [](int count) { return repeated("a", count); };
    const auto blanks = [](int count) { return repeated(" ", count); };
    const struct {
        std::string source;
        std::string column;
        std::string shown;
    } rows[] = {
        {letters(111) + " = = 1\n", "115", letters(111) + " = = 1\n" + blanks(114) + "^\n"},
        {letters(115) + " = =", "119", letters(115) + " = =\n" + blanks(118) + "^\n"},
        {letters(117) + " = =", "121", "..." + letters(113) + " = =\n" + blanks(119) + "^\n"},
        {letters(200) + " = = 1\n", "204", "..." + letters(111) + " = = 1\n" + blanks(117) + "^\n"},
        {"x = = " + letters(114), "5", "x = = " + letters(114) + "\n    ^\n"},
        {"x = = " + letters(115), "5", "x = = " + letters(111) + "...\n    ^\n"},
        {letters(99) + " = = " + letters(99), "103",
         "..." + letters(54) + " = = " + letters(55) + "...\n" + blanks(60) + "^\n"},
        {repeated("\t", 20) + "x = = 1", "25",
         "..." + repeated("\t", 13) + "x = = 1\n   " + repeated("\t", 13) + "    ^\n"},
        {"x = '" + repeated("\xC3\xA4", 200) + "' = 1", "408",
         "..." + repeated("\xC3\xA4", 112) + "' = 1\n" + blanks(117) + "^\n"},
        {"'\x1B[2J\x7F\xC2\x9B\xE2\x80\xA8\xE4\xED\xA0\x80' \xE2\x82\xAC = = 1", "18",
         R"('\x1b[2J\x7f\xc2\x9b\xe2\x80\xa8\xe4\xed\xa0\x80' )"
         "\xE2\x82\xAC = = 1\n" +
             blanks(50) + "^\n"},
        {std::string("x = \0 = 1", 9), "5", "x = \\x00 = 1\n    ^\n"},
    };
    for (const auto &row : rows) {
        write(directory / "long.m", row.source);
        check({{"mtranslate long.m", 1, "", "long.m:1:" + row.column + error + row.shown}});
    }
}

TEST(Excerpt, marks_a_range) {
    const struct {
        std::string line;
        std::size_t begin, end;
        std::string expected;
    } rows[] = {
        {"x = [1, 2", 4, 9, "x = [1, 2\n    ^~~~~\n"},
        {"a\tb\x01"
         "c",
         1, 4, "a\tb\\x01c\n ^~~~~~~~~~~~\n"},
        {"\xC3\xA4\xC3\xB6 = 1", 0, 4, "\xC3\xA4\xC3\xB6 = 1\n^~\n"},
        {"x = 1", 5, 5, "x = 1\n     ^\n"},
        {"", 0, 0, "\n^\n"},
        {"x" + repeated("y", 200), 0, 201,
         "x" + repeated("y", 116) + "...\n^" + repeated("~", 116) + "\n"},
    };
    for (const auto &row : rows) EXPECT_EQ(excerpt(row.line, row.begin, row.end), row.expected);
}

TEST_F(Tool, tells_apart_wrong_usage_and_file_trouble) {
    write(directory / "a.m", "x = 1\n");
    const std::string hint = "\nTry 'mtranslate --help'.\n";
    const std::string cannot = "mtranslate: error: cannot ";
    const std::string several = "mtranslate: error: give -O DIR to translate several files" + hint;
    check({
        {"mtranslate", 2, "",
         "mtranslate: error: nothing to translate: give PATH or -c TEXT" + hint},
        {"mtranslate -c x a.m", 2, "", "mtranslate: error: PATH and -c exclude each other" + hint},
        {"mtranslate --whatsoever a.m", 2, "",
         "mtranslate: error: The following argument was not expected: --whatsoever" + hint},
        {"mtranslate --dmup-tree a.m", 2, "",
         "mtranslate: error: The following argument was not expected: --dmup-tree; did you mean "
         "'--dump-tree'?" +
             hint},
        {"mtranslate explain a b", 2, "",
         "mtranslate: error: The following argument was not expected: b" + hint},
        {"mtranslate a.m explain", 2, "",
         "mtranslate: error: explain and a source exclude each other" + hint},
        {"mtranslate --dump-tree --language classic a.m", 2, "",
         "mtranslate: error: --dump-tree, --dump-values: classic makes no tree" + hint},
        {"mtranslate --language basic -c x 2>&1 | head -c 40", 0,
         "mtranslate: error: --language: basic not", ""},
        {"mtranslate --help > /dev/full", 3, "",
         cannot + "write standard output: No space left on device\n"},
        {"mtranslate none.m", 3, "", cannot + "read 'none.m': No such file or directory\n"},
        {"mtranslate \"$(printf '\\033[m')\"", 3, "",
         cannot + "read '\\x1b[m': No such file or directory\n"},
        {"mtranslate .", 2, "", several},
        {"mtranslate a.m a.m", 2, "", several},
        {"mtranslate a.m -O d --suffix .m", 2, "",
         "mtranslate: error: --suffix: outputs are no MATLAB files" + hint},
        {"mtranslate s -O o --suffix /../x", 2, "",
         "mtranslate: error: --suffix: the ending of a file's name has no '/'" + hint},
        {"mtranslate a.m -O d -o e", 2, "",
         "mtranslate: error: -o and -O exclude each other" + hint},
        {"mtranslate check a.m -o e", 2, "",
         "mtranslate: error: check and assess write no translations: leave -o out" + hint},
        {"mtranslate rules a.m --watch", 2, "",
         "mtranslate: error: --watch goes with -O, check and diff" + hint},
        {"mtranslate diff a.m", 2, "",
         "mtranslate: error: give -O DIR, the outputs to compare" + hint},
        {"mtranslate none -O d", 3, "", cannot + "read 'none': No such file or directory\n"},
        {"mkdir u; mtranslate u -O d", 3, "",
         "mtranslate: error: no file *.m is found in what was given\n"},
        {"mtranslate - < .", 3, "", cannot + "read standard input: Is a directory\n"},
        {"mtranslate - <&-", 3, "", cannot + "read standard input: Bad file descriptor\n"},
        {"mtranslate /dev/zero", 3, "", cannot + "read '/dev/zero': larger than 256 MiB\n"},
        {"truncate -s 300M f.m; mtranslate -c 'f(1)' -I.", 3, "",
         cannot + "read './f.m': larger than 256 MiB\n"},
        {"ln -s /dev/zero z.m; mtranslate -c 'z(1)' -I.", 3, "",
         cannot + "read './z.m': a device\n"},
        {"trouble open -c 'a(1)' -I.", 3, "",
         "mtranslate: error: unable to open ./a.m: Too many open files\n"},
        {"mtranslate -I none a.m", 3, "", cannot + "search 'none': No such file or directory\n"},
        {"mtranslate -I a.m a.m", 3, "", cannot + "search 'a.m': Not a directory\n"},
        {"mtranslate a.m > /dev/full", 3, "",
         cannot + "write standard output: No space left on device\n"},
        {"mtranslate a.m >&-", 3, "", cannot + "write standard output: Bad file descriptor\n"},
        {"{ mtranslate a.m; echo $? >&2; } | true", 0, "", "0\n"},
    });
}

TEST_F(ClassicTool, writes_over_no_source) {
    write(directory / "p/main.m", "x = f(1)\n");
    write(directory / "p/f.m", "y = 2\n");
    run("ln -s p/f.m link; ln p/f.m same; cp p/main.m copy");
    const std::string output = "mtranslate: error: the output ";
    check({
        {"mtranslate -o p/f.m p/main.m", 3, "", output + "'p/f.m' is an existing MATLAB file\n"},
        {"mtranslate -o link -c x", 3, "", output + "'link' is an existing MATLAB file\n"},
        {"mtranslate -o same p/main.m", 3, "", output + "'same' is the source 'p/f.m' itself\n"},
        {"mtranslate p/main.m >> same", 3, "",
         "mtranslate: error: standard output is the source 'p/f.m' itself\n"},
        {"mtranslate -o p/main.m - < p/main.m", 3, "",
         output + "'p/main.m' is the source '<stdin>' itself\n"},
        {"mtranslate -o copy - < copy", 3, "", output + "'copy' is the source '<stdin>' itself\n"},
        {"cat p/main.m p/f.m copy", 0, "x = f(1)\ny = 2\nx = f(1)\n", ""},
        {"mtranslate -o new.m -c x && cat new.m", 0, "x;\n", ""},
    });
}

/* Nor does what is asked for beside the translations, whatever it is called. */
TEST_F(Tool, writes_over_no_source_by_anything_else) {
    write(directory / "a.m", "x = 1;\n");
    run("cp a.m named; cp a.m before; ln -s a.m l; ln -s a.m l.html; ln -s named n.json; mkdir o");
    const std::string output = "mtranslate: error: the output ";
    const auto is_source = [&](const std::string &name) {
        return output + "'" + name + "' is the source 'a.m' itself\n";
    };
    const auto is_matlab = [&](const std::string &name) {
        return output + "'" + name + "' is an existing MATLAB file\n";
    };
    check({
        {"mtranslate check a.m --map a.m", 3, "", is_source("a.m")},
        {"mtranslate check a.m --graph l", 3, "", is_source("l")},
        {"mtranslate check named --report l.html", 3, "", is_matlab("l.html")},
        {"mtranslate check named --report n.json", 3, "",
         output + "'n.json' is the source 'named' itself\n"},
        {"mtranslate named -O o --depfile named", 3, "",
         output + "'named' is the source 'named' itself\n"},
        {"mtranslate - -o o/x --depfile named < named", 3, "",
         output + "'named' is the source '<stdin>' itself\n"},
        {"mtranslate a.m -o o/x --map l; ls o", 0, "", is_source("l")},
        {"mtranslate library -o l", 3, "", is_matlab("l")},
        {"mtranslate rules a.m -o a.m", 3, "",
         "mtranslate: no rules are in force\n" + is_matlab("a.m")},
        {"mtranslate rules --template a.m -o l", 3, "", is_matlab("l")},
        {"mtranslate check named --report r.json 2> e; mtranslate report r.json -o l.html", 3, "",
         is_matlab("l.html")},
        {"cmp a.m before; cmp named before", 0, "", ""},
    });
}

TEST_F(ClassicTool, replaces_an_output_by_a_whole_one_or_not_at_all) {
    write(directory / "large.m", repeated("x = 1\n", 1000));
    write(directory / "d/o", "old\n");
    const std::string cannot = "mtranslate: error: cannot write ";
    const std::string too_large = cannot + "'d/o': File too large\n";
    check({
        {"chmod 604 d/o; ln -s o d/l; mtranslate -o d/l -c x=1; cat d/o; stat -c '%a %F' d/?", 0,
         "x := 1;\n777 symbolic link\n604 regular file\n", ""},
        {"ln -s n d/m; mtranslate -o d/m -c x=1; cat d/n; stat -c %F d/m", 0,
         "x := 1;\nsymbolic link\n", ""},
        {"umask 027; mtranslate -o d/p -c x; stat -c %a d/p", 0, "640\n", ""},
        {"ulimit -f 1; mtranslate -o d/o large.m", 3, "", too_large},
        {"ulimit -f 1; trouble fchown -o d/o large.m", 3, "", too_large},
        {"ulimit -f 1; mtranslate -o d/q large.m", 3, "", cannot + "'d/q': File too large\n"},
        {"trouble fsync -o d/o -c x=2", 3, "", cannot + "'d/o': Input/output error\n"},
        {"mtranslate -o no/o -c x", 3, "", cannot + "'no/o': No such file or directory\n"},
        {"ln -s k d/k; mtranslate -o d/k -c x", 3, "",
         cannot + "'d/k': Too many levels of symbolic links\n"},
        {"for s in 1 2 15; do SIGNAL=$s trouble - -o d/o -c x=2; echo $?; done 2> err2", 0,
         "129\n130\n143\n", ""},
        // on a disk where files have names from the beginning
        {"for s in 1 2 15; do SIGNAL=$s trouble unnamed -o d/o -c x=2; echo $?; done 2> err2", 0,
         "129\n130\n143\n", ""},
        {"trouble unnamed -o d/s -c s; cat d/s; rm d/s", 0, "s;\n", ""},
        {"shm=$(mktemp -d /dev/shm/tool-test-XXXXXX); "
         "(SIGNAL=9 trouble - -o $shm/o -c x; echo $?) 2> err2; rmdir $shm",
         0, "137\n", ""},
        {"trap '' HUP; SIGNAL=1 trouble - -o d/r -c x=3; cat d/r", 0, "x := 3;\n", ""},
        {"cat d/o; ls -A d", 0, "x := 1;\nk\nl\nm\nn\no\np\nr\n", ""},
        {"ls -i d/o > i; trouble fchown -o d/o -c a; cat d/o; ls -i d/o | diff - i", 0, "a;\n", ""},
        {"trouble rename -o d/o -c bb; cat d/o; ls -i d/o | diff - i; ls -A d | wc -l", 0,
         "bb;\n7\n", ""},
    });
}

TEST_F(ClassicTool, writes_pipes_and_open_files_as_they_come) {
    const std::string cannot = "mtranslate: error: cannot write ";
    check({
        {"mkfifo p; cat p & mtranslate -o p -c x && wait", 0, "x;\n", ""},
        {"{ echo a; mtranslate -o /dev/stdout -c x; mtranslate -o - -c y; } > out2; cat out2", 0,
         "a\nx;\ny;\n", ""},
        {"mtranslate -o /dev/fd/4 -c x 4>> out2; cat out2", 0, "a\nx;\ny;\nx;\n", ""},
        {"mtranslate -o /dev/null -c x", 0, "", ""},
        {"mtranslate -o /dev/full -c x", 3, "", cannot + "'/dev/full': No space left on device\n"},
        {"mtranslate -o . -c x", 3, "", cannot + "'.': Is a directory\n"},
    });
}

}  // namespace

}  // namespace mtranslate
