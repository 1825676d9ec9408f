/* Which messages the tool gives, in which form and where. */
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/tool.h"

namespace mtranslate {

namespace {

using Json = nlohmann::json;

class Messages : public Tool {};

/* About a.m, "x = 3 $ 4;". */
const std::string plain = "a.m:1:7: error: invalid character '$' [MT112]\nx = 3 $ 4;\n      ^\n";
const std::string coloured =
    "\x1b[1ma.m:1:7: \x1b[1;31merror: \x1b[minvalid character '$' [MT112]\nx = 3 $ 4;\n"
    "\x1b[1;32m      ^\n\x1b[m";

/* "line:column-end text-of-the-range" of every message, as a reader of JSON finds it. */
std::string ranges(const std::string &lines, const std::string &source) {
    std::istringstream input(lines);
    std::string found;
    for (std::string line; std::getline(input, line);) {
        const Json json = Json::parse(line);
        found += std::to_string(json["line"].get<int>()) + ':' +
                 std::to_string(json["column"].get<int>()) + '-' +
                 std::to_string(json["endColumn"].get<int>()) + ' ' +
                 source.substr(json["offset"], json["length"]) + '\n';
    }
    return found;
}

}  // namespace

TEST_F(Messages, count_lines_and_characters) {
    const std::string euro = "\xE2\x82\xAC";
    const struct {
        std::string source;
        const char *ranges;
    } rows[] = {
        {"a = 1;\nx = 3 $ 4;\n", "2:7-8 $\n"},
        {"\xEF\xBB\xBFx = 3 $ 4;\n", "1:7-8 $\n"},
        {"\xEF\xBB\xBF% c\r\nx = 3 $ 4;\r\n", "2:7-8 $\n"},
        {"a = 1;\rx = 3 $ 4;\rb = 5 $ 6;\r", "2:7-8 $\n3:7-8 $\n"},
        {"\tx = 3 $ 4;", "1:8-9 $\n"},
        {"a = '" + euro + euro + "'; \te = eval(a); f = eval(a);\n",
         "1:16-20 eval\n1:29-33 eval\n"},
        {"a = '\xFF\xFE'; e = eval(a);\n", "1:15-19 eval\n"},
        {"x = f(1, ...\n  2 3);\n", "2:5-6 3\n"},
        {"x = (1;\ny = 2;\nz = {1;\n", "1:7-8 ;\n3:8-8 \n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.source);
        write(directory / "s.m", row.source);
        run("mtranslate check -W no-MT401 --format json s.m");
        EXPECT_EQ(ranges(read(directory / "out"), row.source), row.ranges);
    }
}

TEST_F(Messages, are_left_out_or_made_errors_by_patterns) {
    write(directory / "w.m",
          "x = eval('(');\nif x == 'abc'  % mtranslate: ignore text-comparison\n    y = 2;\nend\n"
          "if x == 'abd'\n    y = 3;\nend\n");
    write(directory / "head.m",
          "\n%% Notes\n  #mtranslate: ignore MT999; MT302 MT204\n\nx = eval('(');\nif x == 'abc', "
          "y = 1; end\n");
    write(directory / "two.m", "if eval('(') == 'abc'  % mtranslate: ignore MT302\nend\n");
    write(directory / "late.m", "x = 1;  % mtranslate: ignore MT204\nx = eval('(');\n");
    write(directory / "error.m", "% mtranslate: ignore MT112\nx = 3 $ 4;\n");
    const std::string gap =
        "w.m:1:5: gap: 'eval' runs a text as a program, which is not translated [MT204]\n"
        "x = eval('(');\n    ^~~~\n";
    const auto compared = [](const char *severity) {
        return std::string("w.m:5:4: ") + severity +
               ": '==' compares texts character by character [MT302]\nif x == 'abd'\n   "
               "^~~~~~~~~~\n";
    };
    const auto ended = [](const char *how, const char *left_out) {
        return std::string("mtranslate: 1 of 1 file: ") + how + ", 0 failed" + left_out + "\n";
    };
    const std::string good = "1 without errors or gaps, 0 with gaps, 0 with errors";
    const std::string gaps = "0 without errors or gaps, 1 with gaps, 0 with errors";
    const std::string errors = "0 without errors or gaps, 0 with gaps, 1 with errors";
    check({
        {"mtranslate check w.m", 1, "",
         gap + compared("warning") + ended(gaps.c_str(), "; 1 message left out")},
        {"mtranslate check two.m", 1, "",
         "two.m:1:4: gap: 'eval' runs a text as a program, which is not translated [MT204]\n"
         "if eval('(') == 'abc'  % mtranslate: ignore MT302\n   ^~~~\n" +
             ended(gaps.c_str(), "; 1 message left out")},
        {"mtranslate check -W no-MT204 -W no-text-comparison w.m", 0, "",
         ended(good.c_str(), "; 3 messages left out")},
        {"mtranslate check -W no-eval -W error=mt302 w.m", 1, "",
         compared("error") + ended(errors.c_str(), "; 2 messages left out")},
        {"mtranslate check -W error -W no-eval -W MT302 w.m", 0, "",
         compared("warning") + ended(good.c_str(), "; 2 messages left out")},
        {"mtranslate check -W error -W no-eval w.m > /dev/null 2>&1", 1, "", ""},
        {"mtranslate check head.m", 0, "", ended(good.c_str(), "; 2 messages left out")},
        {"mtranslate check late.m | tail -n 1", 0, "",
         "late.m:2:5" + gap.substr(7) + ended(gaps.c_str(), "")},
        {"mtranslate check error.m 2>&1 | head -n 1", 0,
         "error.m:2:7: error: invalid character '$' [MT112]\n", ""},
        {"mtranslate check -W no-MT101 w.m", 2, "",
         "mtranslate: error: -W: MT101 is an error: it cannot be left out\n"
         "'mtranslate explain' lists all codes.\n"},
        {"mtranslate check -W no-txt-comparison w.m", 2, "",
         "mtranslate: error: -W: no message has the code or name 'txt-comparison'; did you mean "
         "'text-comparison'?\n'mtranslate explain' lists all codes.\n"},
    });
}

TEST_F(Messages, that_are_known_are_left_out) {
    write(directory / "t/a.m", "x = eval('(');\nif x == 'abc', y = 1; end\nx = 3 $ 4;\n");
    write(directory / "t/b.m", "z = 1;\n");
    const std::string ended = " without errors or gaps, 0 with gaps, ";
    check({
        {"mtranslate check t --format json > known 2> err1", 1, "", ""},
        {"mtranslate check t --baseline known", 0, "",
         "mtranslate: 2 of 2 files: 2" + ended + "0 with errors, 0 failed; 3 messages left out\n"},
        // as often as they were known, on other lines
        {"echo 'p = 1;' | cat - t/a.m > c; echo 'q = 5 $ 6;' >> c; mv c t/a.m; "
         "mtranslate check t --baseline known",
         1, "",
         "t/a.m:5:7: error: invalid character '$' [MT112]\nq = 5 $ 6;\n      ^\n"
         "mtranslate: 2 of 2 files: 1" +
             ended + "1 with errors, 0 failed; 3 messages left out\n"},
        {"mtranslate t/a.m --baseline known", 2, "",
         "mtranslate: error: --baseline goes with -O, check and diff\nTry 'mtranslate --help'.\n"},
        {"sed '$s/[{]//' known > bad; mtranslate check t --baseline bad", 3, "",
         "mtranslate: error: bad:3: this is no message of --format json\n"},
    });
}

TEST_F(Messages, end_at_the_most_errors_wished) {
    write(directory / "a.m", "x = 3 $ 4;\nif x == 'abc', y = 1; end\nx = eval('(');\n");
    write(directory / "b.m", "z = );\n");
    const std::string first =
        "a.m:1:7: error: invalid character '$' [MT112]\nx = 3 $ 4;\n      ^\n";
    const std::string summary =
        "mtranslate: 2 of 2 files: 0 without errors or gaps, 0 with gaps, 2 with errors, 0 "
        "failed\n";
    check({
        {"mtranslate check --max-errors 1 a.m b.m", 1, "",
         first + "mtranslate: 2 errors are not shown (--max-errors 1)\n" + summary},
        {"mtranslate check --max-errors 2 a.m b.m 2>&1 | grep -c 'error:\\|gap:\\|warning:'", 0,
         "3\n", ""},
        {"mtranslate check --max-errors 2 a.m b.m 2>&1 | grep 'not shown'", 0,
         "mtranslate: 1 error is not shown (--max-errors 2)\n", ""},
        {"mtranslate check --max-errors 3 a.m b.m 2>&1 | grep -c 'not shown'", 1, "0\n", ""},
    });
}

TEST_F(Messages, have_colours_where_they_are_seen) {
    write(directory / "a.m", "x = 3 $ 4;\n");
    const std::string plain =
        "a.m:1:7: error: invalid character '$' [MT112]\nx = 3 $ 4;\n      ^\n";
    const std::string coloured =
        "\x1b[1ma.m:1:7: \x1b[1;31merror: \x1b[minvalid character '$' [MT112]\nx = 3 $ 4;\n"
        "\x1b[1;32m      ^\n\x1b[m";
    check({
        {"mtranslate -o o a.m", 1, "", plain},
        {"mtranslate -o o --color always a.m", 1, "", coloured},
        {"CLICOLOR_FORCE=1 mtranslate -o o a.m", 1, "", coloured},
        {"CLICOLOR_FORCE=0 mtranslate -o o a.m", 1, "", plain},
        {"NO_COLOR=1 CLICOLOR_FORCE=1 mtranslate -o o a.m", 1, "", plain},
        {"CLICOLOR_FORCE=1 mtranslate -o o --color never a.m", 1, "", plain},
        {"mtranslate --color never --format yaml a.m 2>&1 | head -n 1", 0,
         "mtranslate: error: --format: 'yaml' is none of github,json,sarif,text\n", ""},
    });
}

TEST_F(Messages, show_people_at_a_terminal_colours_and_progress) {
    if (run("script -qec true /dev/null") != 0) GTEST_SKIP() << "there are no pseudo-terminals";
    write(directory / "a.m", "x = 3 $ 4;\n");
    write(directory / "b.m", "x = 1;\n");
    check({
        {"TERM=xterm script -qec \"$tool -o o a.m\" /dev/null | tr -d '\\r'", 0, coloured, ""},
        {"TERM=dumb script -qec \"$tool -o o a.m\" /dev/null | tr -d '\\r'", 0, plain, ""},
        {"TERM=xterm script -qec \"$tool check a.m b.m\" /dev/null > o; tr '\\r' '\\n' < o | grep "
         "-ac "
         "'^.*\\[[12]/2\\] [0-9.]* MB/s, 1 with errors$'",
         0, "2\n", ""},
        {"tr '\\r' '\\n' < o | grep -a mtranslate:", 0,
         "\x1b[Kmtranslate: 2 of 2 files: 1 without errors or gaps, 0 with gaps, 1 with errors, 0 "
         "failed\n",
         ""},
        {"mtranslate check a.m b.m 2>&1 | grep -c MB/s", 1, "0\n", ""},
    });
}

TEST_F(Messages, speak_to_programs) {
    write(directory / "a,b:%.m", "x = 3 $ 4;  % 100%\ny = f(1);\n");
    write(directory / "main.m", "y = g(1);\n");
    write(directory / "g.m", "function y = g(x)\ny = x + ;\n");
    const std::string annotations =
        "::error file=a%2Cb%3A%25.m,line=1,col=7,endColumn=8,title=MT112 "
        "invalid-character::invalid character '$'\n"
        "::warning file=a%2Cb%3A%25.m,line=2,col=5,endColumn=6,title=MT401 "
        "unknown-function::the function 'f' is found nowhere\n";
    const std::string called =
        "{\"severity\":\"error\",\"code\":\"MT101\",\"name\":\"unexpected-token\",\"message\":"
        "\"expected a value after '+', found ';'\",\"operands\":[\"a value after "
        "'+'\",\"';'\"],\"file\":\"./g.m\",\"line\":2,\"column\":9,"
        "\"endColumn\":10,\"offset\":26,\"length\":1,\"calledFrom\":{\"file\":\"main.m\",\"line\":"
        "1}}\n";
    check({
        {"mtranslate check --format github a*.m 2> /dev/null", 1, annotations, ""},
        {"mtranslate --format github a*.m > o; grep -c translated o", 0, "1\n", annotations},
        {"mtranslate --format json -o o main.m", 1, called, ""},
        {"mtranslate --format json main.m > o", 1, "", called},
        {"mtranslate check --format json a*.m 2> o | grep -o 'operands.*\\],'", 0,
         "operands\":[\"'$'\"],\noperands\":[\"f\",\"nowhere\"],\n", ""},
        {"mtranslate check --format json none.m", 3,
         "{\"severity\":\"error\",\"message\":\"cannot read 'none.m': No such file or "
         "directory\"}\n",
         ""},
        {"mtranslate check --format json main.m > /dev/full", 3, "",
         "mtranslate: error: cannot write standard output: No space left on device\n"},
        {"mtranslate --format json diff main.m -O o2 2>&1 | grep -c '^{\\|^[-+]'", 0, "4\n", ""},
    });
}

TEST_F(Messages, in_json_are_what_their_schema_says) {
    write(directory / "main.m", "x = 3 $ 4;\ny = g(1);\nz = eval('(');\n");
    write(directory / "g.m", "function y = g(x)\ny = x + ;\n");
    write(directory / "old.m", "x = ");
    ASSERT_EQ(run("(mtranslate --format json -o o main.m; mtranslate --format json --language "
                  "classic old.m) 2> /dev/null"),
              1);
    std::istringstream lines(read(directory / "out") + read(directory / "err"));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        write(directory / "message", line);
        EXPECT_TRUE(is_valid("message", "docs/messages.schema.json")) << line;
    }
    EXPECT_EQ(count, 3);
}

TEST_F(Messages, in_sarif_name_their_rules) {
    write(directory / "main file.m", "x = 3 $ 4;\ny = g(1);\nz = eval('(');\nh(2);\n");
    write(directory / "g.m", "function y = g(x)\ny = x + ;\n");
    run("mtranslate check --closure --format sarif 'main file.m' > log");
    ASSERT_TRUE(is_valid("log", "tests/cases/sarif.schema.json"));
    const Json log = Json::parse(read(directory / "log"));
    const Json &rules = log["runs"][0]["tool"]["driver"]["rules"];
    const Json &results = log["runs"][0]["results"];
    std::string found;
    for (const Json &result : results) {
        const Json &place = result["locations"][0]["physicalLocation"];
        EXPECT_EQ(rules[result["ruleIndex"].get<std::size_t>()]["id"], result["ruleId"]);
        found += result["level"].get<std::string>() + ' ' + result["ruleId"].get<std::string>() +
                 ' ' + place["artifactLocation"]["uri"].get<std::string>() + ' ' +
                 std::to_string(place["region"]["startLine"].get<int>()) + '\n';
    }
    EXPECT_EQ(found,
              "error MT112 main%20file.m 1\nerror MT204 main%20file.m 3\n"
              "warning MT401 main%20file.m 4\nerror MT101 ./g.m 2\n");
    run("mtranslate check --format sarif '" MTRANSLATE_SOURCE_DIR "/examples/survey' > log");
    EXPECT_TRUE(is_valid("log", "tests/cases/sarif.schema.json")) << "without messages";
}

/* Also where nothing can be begun, and where what has been translated cannot be written. */
TEST_F(Messages, of_what_fails_are_in_the_format_of_the_others) {
    write(directory / "a.m", "x = 3 $ 4;\n");
    const struct {
        const char *arguments;
        std::size_t results;
        const char *failure;
    } rows[] = {
        {"check none", 0, "cannot read 'none': No such file or directory"},
        {"check empty", 0, "no file *.m is found in what was given"},
        {"none.m", 0, "cannot read 'none.m': No such file or directory"},
        {"none.m --max-time 9", 0, "cannot read 'none.m': No such file or directory"},
        {"a.m -o /dev/full", 1, "cannot write '/dev/full': No space left on device"},
        {"a.m -o /dev/full --untrusted", 1, "cannot write '/dev/full': No space left on device"},
    };
    run("mkdir empty");
    for (const auto &row : rows) {
        SCOPED_TRACE(row.arguments);
        EXPECT_EQ(run(std::string("mtranslate --format sarif > log 2>&1 ") + row.arguments), 3);
        ASSERT_TRUE(is_valid("log", "tests/cases/sarif.schema.json"));
        const Json sarif = Json::parse(read(directory / "log"))["runs"][0];
        EXPECT_EQ(sarif["results"].size(), row.results);
        EXPECT_EQ(sarif["invocations"][0]["toolExecutionNotifications"],
                  Json::parse(R"([{"level": "error", "message": {"text": ")" +
                              std::string(row.failure) + "\"}}]"));
    }
}

}  // namespace mtranslate
