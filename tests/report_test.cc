/* Reports on a tree: what they count, their forms, and what becomes of several. */
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "tests/tool.h"

namespace mtranslate {

namespace {

using Json = nlohmann::json;

class Reports : public Tool {
protected:
    /* The report on the tree t, checked in a run with these arguments. */
    Json report(const std::string &arguments = "t") const {
        run("mtranslate check " + arguments + " --report r.json");
        return Json::parse(read(directory / "r.json"));
    }

    /* Whether the file is the golden one; says where not. */
    testing::AssertionResult is_golden(const std::string &file, const std::string &golden) const {
        if (read(directory / file) == read(TREE / golden)) return testing::AssertionSuccess();
        fs::copy_file(directory / file, directory / "made", fs::copy_options::overwrite_existing);
        run("diff '" + (TREE / golden).string() + "' made | head -n 20");
        return testing::AssertionFailure() << read(directory / "out");
    }

    void copy_tree() const {
        fs::copy(TREE / "src", directory / "src", fs::copy_options::recursive);
    }

    const fs::path TREE = MTRANSLATE_SOURCE_DIR "/tests/report";
};

/* "f: name end count line:column target, ..." of the calls of a file, f the calling function. */
std::string calls_in(const Json &file) {
    std::string text;
    for (const Json &call : file["calls"]) {
        if (!text.empty()) text += ", ";
        if (call.contains("in"))
            text += file["functions"][call["in"].get<int>()]["name"].get<std::string>() + ": ";
        text += call["name"].get<std::string>() + " " + call["end"].get<std::string>() + " " +
                call["count"].dump() + " " + call["line"].dump() + ":" + call["column"].dump();
        if (call.contains("target")) text += " " + call["target"].get<std::string>();
    }
    return text;
}

}  // namespace

/* Which lines come from what: "kind line:column-line:column first-last", each on a line, those of
 * another file with its name. */
std::string map_text(const Json &map) {
    std::ostringstream text;
    for (const Json &lines : map)
        text << (lines.contains("file") ? lines["file"].get<std::string>() + ' ' : "")
             << lines["kind"].get<std::string>() << ' ' << lines["line"] << ':' << lines["column"]
             << '-' << lines["endLine"] << ':' << lines["endColumn"] << ' ' << lines["first"] << '-'
             << lines["last"] << '\n';
    return text.str();
}

/* The golden files are made by scripts/goldens. */
TEST_F(Reports, are_the_same_however_they_are_made) {
    copy_tree();
    const struct {
        const char *command, *output, *golden;
    } rows[] = {
        {"mtranslate check src --report r.json -j 1", "r.json", "report.json"},
        {"mtranslate check src --report r.json -j 8", "r.json", "report.json"},
        {"mtranslate check src/settings.m src/+tools src --report r.json", "r.json", "report.json"},
        {"mtranslate report r.json -o again.json", "again.json", "report.json"},
        {"mtranslate check src --report r.md", "r.md", "report.md"},
        {"mtranslate report r.json", "out", "report.md"},
        {"mtranslate check src --graph g.dot", "g.dot", "graph.dot"},
        {"mtranslate report r.json --graph again.dot", "again.dot", "graph.dot"},
        {"mtranslate assess src", "out", "assess.txt"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.command);
        run(row.command);
        EXPECT_TRUE(is_golden(row.output, row.golden));
    }
    EXPECT_TRUE(is_valid("r.json", "docs/report.schema.json"));
}

TEST_F(Reports, count_statements_and_comments) {
    const struct {
        const char *source;
        int lines, statements, without_message;
        const char *waiting;
        int comments, kept;
    } rows[] = {
        {"", 0, 0, 0, "[]", 0, 0},
        {"x = 1", 1, 1, 1, "[]", 0, 0},
        {"x = 1;\ny = x;\n\n", 3, 2, 2, "[]", 0, 0},
        {"x = 1;\ry = 2;\r", 2, 2, 2, "[]", 0, 0},
        {"x = f(1) + f(2); y = f(x);\n", 1, 2, 0, R"([{"names":["f"],"statements":2}])", 0, 0},
        {"x = f(g);\nx = f(1);\n", 2, 2, 0,
         R"([{"names":["f"],"statements":1},{"names":["f","g"],"statements":1}])", 0, 0},
        {"if f(1)\n    y = 2;\nelse\n    y = g;\nend\n", 5, 3, 1,
         R"([{"names":["f"],"statements":1},{"names":["g"],"statements":1}])", 0, 0},
        {"if 1\n    eval('(');\nend\n", 3, 2, 1, "[]", 0, 0},
        {"classdef c < handle % a\nproperties\n    p = [1 2\n 3 4]; q = x';\nend\nmethods "
         "(Static)\n"
         "function f(x)\nif x, y = 'a;b'; else, y = 2; end % b\n%{\nz = 1;\n%}\nz = [x' ...\n"
         "', y = 1'];\nend\nend\nend\n",
         16, 6, 0, "[]", 3, 3},
        {"if x(\n    y = 1; z = 2;\nend\n", 3, 3, 0, "[]", 0, 0},
        {"function f(x)\nx = (1;\nend\nfunction g\nend\n", 5, 1, 0, "[]", 0, 0},
        {"function y = f(x)\n    function z = h\n        z = x;\n    end\ny = h;\nend\n", 6, 2, 2,
         "[]", 0, 0},
        {"% a\nx = 1; % b\n%{\nc\n%}\nx = [1 ... d\n 2];\n", 7, 2, 2, "[]", 4, 4},
        {"eval('('); % a\nif 1 % b\n    y = eval(1); % c\nend % d\n", 4, 3, 1, "[]", 4, 4},
        {"try\n    x = 1; % a\ncatch\n    x = 2; % b\nend\n", 5, 3, 2, "[]", 2, 2},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.source);
        write(directory / "t/s.m", row.source);
        const Json file = report()["files"][0];
        EXPECT_EQ(file["lines"], row.lines);
        EXPECT_EQ(file["statements"]["all"], row.statements);
        EXPECT_EQ(file["statements"]["withoutMessage"], row.without_message);
        EXPECT_EQ(file["waiting"].dump(), row.waiting);
        EXPECT_EQ(file["comments"]["all"], row.comments);
        EXPECT_EQ(file["comments"]["kept"], row.kept);
    }
}

TEST_F(Reports, tell_how_calls_end) {
    write(directory / "t/used.m", "function y = used(x)\ny = x;\n");
    write(directory / "t/setup.m", "a = 1;\n");
    write(directory / "t/@c/c.m", "function y = c(x)\ny = x;\n");
    write(directory / "t/@c/area.m", "function y = area(x)\ny = half(x) + used(x, 1);\n");
    write(directory / "t/@c/used.m", "function y = used(x)\ny = area(x);\n");
    write(directory / "t/@c/private/half.m", "function y = half(x)\ny = x;\n");
    write(directory / "t/+p/@d/d.m", "function y = d(x)\ny = x;\n");
    const struct {
        const char *source, *calls;
    } rows[] = {
        {"x = used(1); y = x(1);", "used found 1 1:5 t/used.m"},
        {"setup; b = a + used(1);", "setup found 1 1:1 t/setup.m, used found 1 1:16 t/used.m"},
        {"\xC3\xA9 = 1;", ""},
        {"x = area(c(1)) + p.d(@area);",
         "area found 1 1:5 t/@c/area.m, c found 1 1:10 t/@c/c.m, p.d found 1 1:18 t/+p/@d/d.m, "
         "area classOnly 1 1:22"},
        {"x = half(d(1));", "half unresolved 1 1:5, d unresolved 1 1:10"},
        {"x = '\xC3\xA9'; y = g(1);", "g unresolved 1 1:14"},
        {"\xEF\xBB\xBFg(1)", "g unresolved 1 1:1"},
        {"y = g(g(1)) + g;\nhold on", "g unresolved 3 1:5, hold unresolved 1 2:1"},
        {"p = @used; q = @(x) used(x) + i;", "used found 2 1:5 t/used.m, i builtIn 1 1:31"},
        {"function s\nh(1); h(2);\n    function h(x)\n    g(x);\n    end\nend",
         "s: h found 2 2:1 t/s.m, h: g unresolved 1 4:5"},
        {"function s\nh(1);\nfunction h(x)\nx(1); s;",
         "s: h found 1 2:1 t/s.m, h: s found 1 4:7 t/s.m"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.source);
        write(directory / "t/s.m", row.source);
        EXPECT_EQ(calls_in(report()["files"].at(5)), row.calls);
    }
    write(directory / "t/s.m", "x = area(1) + area(g);\n");
    const Json made = report();
    EXPECT_TRUE(is_valid("r.json", "docs/report.schema.json"));
    EXPECT_EQ(calls_in(made["files"][1]),
              "area: half found 1 2:5 t/@c/private/half.m, area: used found 1 2:15 t/@c/used.m");
    EXPECT_EQ(made["totals"]["calls"].dump(),
              R"({"answered":0,"builtIn":0,"classOnly":2,"found":3,"unresolved":1})");
    EXPECT_EQ(made["totals"]["statements"].dump(), R"({"all":8,"waiting":0,"withoutMessage":7})");
    EXPECT_EQ(made["unresolved"][0]["classOnly"], true);
    check({
        {"mtranslate report r.json | grep area.*s.m; mtranslate assess t | grep classes", 0,
         "| area (in classes) | 2 | 1 | 0 | t/s.m:1:5 |\n"
         "  calls found in classes only                      2 of 6           33.3 %\n"
         "          +0         2         1  area (in classes)\n",
         ""},
        {"mtranslate check t/s.m t/@c --report c.json 2>&1 | grep MT401; for i in s.m @c; do "
         "mtranslate check t/$i --root t --report $i.json 2> o; done; "
         "mtranslate report s.m.json @c.json -o d.json; mtranslate report c.json -o c.json; cmp "
         "c.json d.json",
         0,
         "t/s.m: warning: 2 functions are found nowhere and left to the host: area (in classes), g "
         "[MT401]\n",
         ""},
        {"mtranslate rules --template t | grep =", 0,
         "area = \"\" # 2 calls in 1 file, with 1 argument; t/s.m:1; classes have it\n"
         "g = \"\" # 1 call in 1 file, with 0 arguments; t/s.m:1\n",
         ""},
        {"mtranslate check t --graph /dev/stdout 2> o | grep 'area.*cyan' | cut -c 5-22", 0,
         "n0 [label=\"area\", \n", ""},
    });
}

TEST_F(Reports, map_lines_to_what_they_come_from) {
    write(directory / "t/setup.m", "% set\na = 1;\n");
    const struct {
        const char *source, *map;
    } rows[] = {
        {"", ""},
        {"y = 1; z = ...\n  2; % c\n",
         "statement 1:1-1:6 1-1\n"
         "statement 1:8-2:4 2-2\n"
         "comment 2:6-2:9 2-2\n"},
        {"s = '\xC3\xA9'; setup; % c\n",
         "statement 1:1-1:8 1-1\n"
         "statement 1:10-1:15 2-3\n"
         "t/setup.m comment 1:1-1:6 2-2\n"
         "comment 1:17-1:20 3-3\n"
         "t/setup.m statement 2:1-2:6 3-3\n"},
        {"if x, y = 1;\nelseif f(y) && z % c\nelse\n  eval('(')\nend\n",
         "head 1:1-1:5 1-1\n"
         "statement 1:7-1:12 2-2\n"
         "head 2:1-2:17 3-4\n"
         "comment 2:18-2:21 4-4\n"
         "head 3:1-3:5 5-5\n"
         "gap 4:3-4:12 6-6\n"
         "end 5:1-5:4 7-8\n"
         "gap 4:3-4:12 9-9\n"
         "end 5:1-5:4 10-10\n"},
        {"function [a, b] = f(c, varargin)\n% help\nglobal b\n[a, c(1)] = h(2);\nreturn\nend\n",
         "function 1:1-1:33 1-3\n"
         "comment 2:1-2:7 5-5\n"
         "prelude 1:20-1:33 6-7\n"
         "statement 4:1-4:17 8-8\n"
         "statement 5:1-5:7 9-13\n"
         "end 6:1-6:4 14-14\n"},
        {"function f\nx = 1;\nfunction g\nx = (1;\n",
         "function 1:1-1:11 1-2\n"
         "statement 2:1-2:6 3-3\n"
         "end 2:7-2:7 4-4\n"
         "function 3:1-3:11 6-6\n"
         "gap 4:1-4:8 7-7\n"
         "end 4:8-4:8 8-8\n"},
        {"do\n  x = 1;\nuntil x\nfor k = 1:2, x = k; end, while 1, end\n",
         "head 1:1-1:3 1-1\n"
         "statement 2:3-2:8 2-2\n"
         "end 3:1-3:8 3-6\n"
         "head 4:1-4:12 7-7\n"
         "statement 4:14-4:19 8-8\n"
         "end 4:21-4:24 9-9\n"
         "head 4:26-4:33 10-10\n"
         "end 4:35-4:38 11-11\n"},
        {"switch x % c\n  case 1\n    y = 2;\n  otherwise\nend\n",
         "head 1:1-1:9 1-1\n"
         "comment 1:10-1:13 1-1\n"
         "head 2:3-2:9 2-2\n"
         "statement 3:5-3:10 3-3\n"
         "end 5:1-5:4 4-4\n"},
        {"s = g(1);\ntry\n  x = 1;\ncatch e\n  y = 2; % c\nend\ntry\n  t = s.a;\ncatch\n  t = "
         "1;\nend\n",
         "statement 1:1-1:9 1-1\n"
         "gap 2:1-2:4 2-2\n"
         "statement 3:3-3:8 3-3\n"
         "head 4:1-4:8 4-4\n"
         "statement 5:3-5:8 5-5\n"
         "comment 5:10-5:13 5-5\n"
         "head 7:1-7:4 6-6\n"
         "statement 8:3-8:10 7-7\n"
         "head 9:1-9:6 8-8\n"
         "statement 10:3-10:8 9-9\n"
         "end 11:1-11:4 10-10\n"},
        {"x = @(t) t && f(t);\n", "statement 1:1-1:19 1-8\n"},
        {"k = 3;\nif k > 2\n  a = 1; return\nend\nb = 2; % c\n"
         "for j = 1:3\n  if j == 2, return, end\n  c = j;\nend\nd = 4;\n",
         "statement 1:1-1:6 1-1\n"
         "head 2:1-2:9 2-2\n"
         "statement 3:3-3:8 3-3\n"
         "end 4:1-4:4 4-4\n"
         "statement 5:1-5:6 5-5\n"
         "comment 5:8-5:11 5-5\n"
         "head 6:1-6:12 6-7\n"
         "head 7:3-7:12 8-8\n"
         "statement 7:14-7:20 9-10\n"
         "end 7:22-7:25 11-11\n"
         "statement 8:3-8:8 12-12\n"
         "end 9:1-9:4 13-14\n"
         "statement 10:1-10:6 15-15\n"
         "end 9:1-9:4 16-16\n"
         "end 4:1-4:4 17-17\n"},
        {"x = isrow(f(1));\n", "statement 1:1-1:16 1-1\n"},
        {"z(end+1) = 1;\nfunction r = f(a)\npersistent n\nr = a;\nend\n",
         "statement 3:1-3:13 1-1\n"
         "function 2:1-2:18 2-4\n"
         "statement 4:1-4:6 6-6\n"
         "results 2:10-2:11 7-7\n"
         "end 5:1-5:4 8-8\n"
         "statement 1:1-1:13 10-11\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.source);
        write(directory / "t/s.m", row.source);
        EXPECT_EQ(map_text(report("t/s.m t/setup.m")["files"][0]["map"]), row.map);
        run("mtranslate t/s.m t/setup.m -O o --map m.json");
        EXPECT_TRUE(is_valid("m.json", "docs/map.schema.json"));
        EXPECT_EQ(map_text(Json::parse(read(directory / "m.json"))["files"][0]["map"]), row.map);
    }
    check({
        {"mtranslate -c 'x = 1' --map m.json; cat m.json", 0,
         "x := 1;\n"
         R"({"format": "mtranslate map", "version": 1, "files": [)"
         "\n"
         R"({"path": "<command>", "map": [)"
         "\n"
         R"({"kind":"statement","line":1,"column":1,"endLine":1,"endColumn":6,"first":1,"last":1}]}]})"
         "\n",
         ""},
        {"mtranslate t -O o --map none/m.json 2>&1 | tail -n 1", 0,
         "mtranslate: error: cannot write 'none/m.json': No such file or directory\n", ""},
    });
}

TEST_F(Reports, hold_what_became_of_each_file) {
    write(directory / "t/a.m", "x = 1;\n");
    write(directory / "t/b.m", "x = (1;\n");
    write(directory / "t/c.m", "x = 1;\n");
    run("mkdir -p o/c.txt; mtranslate t -O o --report r.json");
    const Json made = Json::parse(read(directory / "r.json"));
    EXPECT_TRUE(is_valid("r.json", "docs/report.schema.json"));
    std::string text;
    for (const Json &file : made["files"])
        text += file["path"].get<std::string>() + " " + file["state"].get<std::string>() + " " +
                file.value("output", "-") + "\n";
    EXPECT_EQ(text, "t/a.m translated o/a.txt\nt/b.m errors o/b.txt\nt/c.m failed -\n");
    EXPECT_EQ(made["totals"]["states"].dump(),
              R"({"errors":1,"failed":1,"gaps":0,"translated":1})");
    check({
        {"mtranslate t/a.m -o one --report one.json; grep -c path one.json", 0, "1\n", ""},
        {"mtranslate -c 'x = 1' --report one.md; tail -n 1 one.md", 0,
         "x := 1;\n| \\<command\\> | translated | 0 | 1 | 5 | 1 | 100.0 % | 0 | 0 | 0 | 0 |\n", ""},
    });
}

/* A worker waits for a pipe to be opened. */
TEST_F(Reports, are_written_when_the_run_is_interrupted) {
    write(directory / "t/a.m", "x = 1;\n");
    run("mkfifo t/b.m; $tool t/a.m t/b.m -O o -j 1 --report r.json & for i in $(seq 500); do "
        "[ -f o/a.txt ] && break; sleep 0.01; done; sleep 0.1; kill $!; wait $!");
    const Json made = Json::parse(read(directory / "r.json"));
    EXPECT_EQ(made["interrupted"], true);
    EXPECT_EQ(made["totals"]["files"], 1);
}

TEST_F(Reports, of_shards_become_the_report_of_all) {
    copy_tree();
    run("mtranslate check src/main.m src/settings.m src/private src/+tools --report a.json;"
        "mtranslate check src --exclude main.m --exclude settings.m --exclude private "
        "--exclude +tools --report b.json");
    run("mtranslate report a.json b.json -o all.json");
    EXPECT_TRUE(is_golden("all.json", "report.json"));
    run("mtranslate report b.json a.json b.json -o all.json");
    EXPECT_TRUE(is_golden("all.json", "report.json"));
}

/* A text of many megabytes does not make the page large. */
TEST_F(Reports, of_very_large_sources_pack_their_texts) {
    write(directory / "t/a.m", "x = 1;\n");
    write(directory / "t/b.m", "x = 2;\n");
    run("mtranslate check t --report r.json");
    write(directory / "t/a.m", repeated("<", (64 << 20) / 6));
    check({
        {"mtranslate report r.json -o r.html; grep -o 'id=\"pack-.\"' r.html; "
         "test $(stat -c %s r.html) -lt 1000000",
         0, "id=\"pack-0\"\nid=\"pack-1\"\n", ""},
        {"mtranslate report r.json -o r.html --report-sources=no; grep -c 'id=\"pack-' r.html", 1,
         "0\n", ""},
    });
}

TEST_F(Reports, are_refused_where_there_can_be_none) {
    write(directory / "s.m", "x = 1;\n");
    write(directory / "no.json", "{\"format\": 1}");
    write(directory / "cut.json", read(TREE / "report.json").substr(0, 4000));
    run("sed s/operands/names/ '" + (TREE / "report.json").string() + "' > other.json");
    const std::string help = "\nTry 'mtranslate --help'.\n";
    check({
        {"mtranslate check s.m --report r.txt", 2, "",
         "mtranslate: error: --report: 'r.txt' is no .html, .md or .json" + help},
        {"mtranslate report no.json -o r", 2, "",
         "mtranslate: error: -o: 'r' is no .html, .md or .json" + help},
        {"mtranslate check s.m --language classic --report r.md", 2, "",
         "mtranslate: error: classic makes no tree, which reports, graphs, maps and assessments "
         "need" +
             help},
        {"mtranslate report s.json", 3, "",
         "mtranslate: error: cannot read 's.json': No such file or directory\n"},
        {"mtranslate report no.json", 3, "",
         "mtranslate: error: 'no.json' is no report of mtranslate: it is another format\n"},
        {"mtranslate report cut.json 2>&1 | cut -c 1-61", 0,
         "mtranslate: error: 'cut.json' is no report of mtranslate: [js\n", ""},
        {"mtranslate report other.json", 3, "",
         "mtranslate: error: 'other.json' is no report of mtranslate: a message of MT102 has other "
         "operands\n"},
        {"mtranslate check s.m --report none/r.md 2>&1 | tail -n 1", 0,
         "mtranslate: error: cannot write 'none/r.md': No such file or directory\n", ""},
    });
}

TEST_F(Reports, tell_which_rules_are_used) {
    write(directory / "r.toml",
          "[names]\nbig = \"infinity\"\n[functions]\nf.1 = \"F({1})\"\n"
          "g = \"G\"\n");
    write(directory / "t/s.m", "x = f(1) + f(2) + f(1, 2) + big;\n");
    const Json made = report("t --rules r.toml");
    EXPECT_EQ(calls_in(made["files"][0]),
              "f answered 2 1:5, f unresolved 1 1:19, big answered 1 1:29");
    EXPECT_EQ(made["rules"].dump(),
              R"([{"count":2,"title":"r.toml:4: functions.f.1 = \"F({1})\""},)"
              R"({"count":1,"title":"r.toml:2: names.big = \"infinity\""},)"
              R"({"count":0,"title":"r.toml:5: functions.g = \"G\""}])");
    EXPECT_TRUE(is_valid("r.json", "docs/report.schema.json"));
}

/* Whatever characters names have, a graph is nodes that are declared and edges between them. */
TEST_F(Reports, show_a_graph_that_is_well_formed) {
    copy_tree();
    write(directory / "src/a\"b\\.m", "x = odd(1);\nhold on\n");
    run("mtranslate check src --graph g.dot");
    static const std::regex node(
        R"re( +(\w+) \[label=("([^"\\]|\\.)*")[^"]*("[^"\\]*"[^"]*)*\];)re");
    static const std::regex edge(R"( +(\w+) -> (\w+)( \[label="\d+"\])?;)");
    static const std::regex other(
        R"re(digraph calls \{| +subgraph cluster_\d+ \{| *\}| +(rankdir|style)=\w+;| +node \[.*\];| +label="([^"\\]|\\.)*";)re");
    std::set<std::string> nodes;
    int edges = 0;
    std::istringstream lines(read(directory / "g.dot"));
    for (std::string line; std::getline(lines, line);) {
        std::smatch parts;
        if (std::regex_match(line, parts, node)) {
            EXPECT_TRUE(nodes.insert(parts[1]).second || parts[1] == "node") << line;
        } else if (std::regex_match(line, parts, edge)) {
            EXPECT_TRUE(nodes.contains(parts[1]) && nodes.contains(parts[2])) << line;
            ++edges;
        } else {
            EXPECT_TRUE(std::regex_match(line, other)) << line;
        }
    }
    EXPECT_EQ(edges, 14);
}

}  // namespace mtranslate
