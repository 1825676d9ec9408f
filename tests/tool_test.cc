/* The command-line tool, run as a user runs it: by a shell, in a directory of its own. */
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

void write(const fs::path &path, const std::string &text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string read(const fs::path &path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

struct Row {
    const char *command; /* "mtranslate" in it is the tool */
    int exit_code;
    std::string output;
    std::string errors;
};

class Tool : public testing::Test {
protected:
    Tool() {
        std::string pattern = fs::temp_directory_path() / "tool-test-XXXXXX";
        directory = mkdtemp(pattern.data());
    }
    ~Tool() override { fs::remove_all(directory); }

    int run(const std::string &command) const {
        const std::string function = "mtranslate() { \"" MTRANSLATE_TOOL_FILE "\" \"$@\"; }; ";
        write(directory / "run", function + command + "\n");
        const std::string shell = "cd '" + directory.string() + "' && TMPDIR=. sh ./run";
        return WEXITSTATUS(std::system((shell + " > out 2> err < /dev/null").c_str()));
    }

    template <std::size_t N>
    void check(const Row (&rows)[N]) const {
        for (const Row &row : rows) {
            SCOPED_TRACE(row.command);
            EXPECT_EQ(run(row.command), row.exit_code);
            EXPECT_EQ(read(directory / "out"), row.output);
            EXPECT_EQ(read(directory / "err"), row.errors);
        }
    }

    fs::path directory;
};

TEST_F(Tool, translates) {
    write(directory / "s/main.m", "x = f(1)\n");
    write(directory / "s/f.m", "y = 2\n");
    write(directory / "t/f.m", "z = 3\n");
    write(directory / "f.m", "w = 4\n");
    write(directory / "-x.m", "x = 1\n");
    check({
        {"mtranslate -c 'x = a*b'", 0, "x := a . b;\n", ""},
        {"mtranslate -c '-x'", 0, "-x;\n", ""},
        {"mtranslate -c ''", 0, "", ""},
        {"mtranslate s/main.m", 0, "y := 2;\nx := f(1);\n", ""},
        {"mtranslate -I t -I s s/main.m", 0, "z := 3;\nx := f(1);\n", ""},
        {"mtranslate s/main.m -I none -Is", 0, "y := 2;\nx := f(1);\n", ""},
        {"mtranslate --no-translator s/main.m", 0, "x := f(1);\n", ""},
        {"mtranslate - < s/main.m && ls mtranslate-* 2> /dev/null", 2, "w := 4;\nx := f(1);\n", ""},
        {"mkfifo p; cat s/main.m > p & mtranslate p", 0, "w := 4;\nx := f(1);\n", ""},
        {"mtranslate -- -x.m", 0, "x := 1;\n", ""},
        {"mtranslate -o out.txt -- -x.m && cat out.txt", 0, "x := 1;\n", ""},
        {"mtranslate --version", 0, "mtranslate 0.1.0\n", ""},
    });
}

TEST_F(Tool, shows_the_place_of_an_error) {
    write(directory / "bad.m", "a = 1\n\tx = '\xC3\xA4' = 2\nb = 3\n");
    write(directory / "eol.m", "a = 1 % one\r\nx = \r\ny = 2\r\n");
    write(directory / "eof.m", "% first\nif x\ny = 1\n\n\n");
    write(directory / "ff.m", "a = 1;\fb = ;\f");
    write(directory / "lex.m", "'abc\n");
    write(directory / "caller.m", "x = bad(1)\n");
    const std::string bad = ":2:11: error: syntax error\n\tx = '\xC3\xA4' = 2\n\t        ^\n";
    std::string detour;  // longer than the library's own texts may be
    for (int i = 0; i < 1100; ++i) detour += "./";
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
        {"mtranslate lex.m", 1, "", "lex.m:1:1: error: lexical error.\n'abc\n^\n"},
        {"mtranslate -o out.txt bad.m; ls out.txt 2> /dev/null", 2, "", "bad.m" + bad},
    });
}

TEST_F(Tool, tells_apart_wrong_usage_and_file_trouble) {
    write(directory / "a.m", "x = 1\n");
    const std::string hint = "\nTry 'mtranslate --help'.\n";
    const std::string cannot = "mtranslate: error: cannot ";
    check({
        {"mtranslate", 2, "",
         "mtranslate: error: nothing to translate: give FILE or -c TEXT" + hint},
        {"mtranslate -c x a.m", 2, "", "mtranslate: error: FILE and -c exclude each other" + hint},
        {"mtranslate --wrong a.m", 2, "",
         "mtranslate: error: The following argument was not expected: --wrong" + hint},
        {"mtranslate none.m", 2, "", cannot + "read 'none.m': No such file or directory\n"},
        {"mtranslate .", 2, "", cannot + "read '.': Is a directory\n"},
        {"mtranslate a.m -o no/out", 2, "", cannot + "write 'no/out': No such file or directory\n"},
        {"mtranslate a.m -o ./a.m; code=$?; cat a.m; exit $code", 2, "x = 1\n",
         "mtranslate: error: the output './a.m' is the source itself\n"},
        {"mtranslate a.m > /dev/full", 2, "",
         cannot + "write standard output: No space left on device\n"},
        {"{ mtranslate a.m; echo $? >&2; } | true", 0, "", "0\n"},
    });
}

}  // namespace
