/* What holds for every tree, whatever is in it: made-up programs, some of them damaged, translated
 * in all the ways that ought to come to the same. */
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <vector>

#include "tests/generate.h"
#include "tests/tool.h"

namespace mtranslate {

namespace {

using Json = nlohmann::json;

constexpr unsigned PROGRAMS = 36;

/* A program of the seed; every third is damaged by a token that is left out. */
std::string source_of(unsigned seed) {
    const auto kind = static_cast<ProgramKind>(seed % 3);
    std::string text = written(make_program(kind, seed), {seed, true, true, false, true, true});
    if (seed % 3 == 1) text.erase(text.find_last_of("=(", text.size() / 2), 1);
    return text;
}

class TreeOf : public Tool {
protected:
    std::string output_of(const std::string &command) {
        run(command);
        return read(directory / "out");
    }
};

/* Folders with the programs f0.m, f1.m, ...; the programs call such functions. */
class Trees : public TreeOf {
protected:
    Trees() {
        for (unsigned seed = 0; seed < PROGRAMS; ++seed) {
            const std::string folder = seed % 4 == 0 ? "t/deep/er/" : "t/";
            const std::string name = "f" + std::to_string(seed) + ".m";
            write(directory / (folder + name), source_of(seed));
        }
    }
};

/* A message as every form can tell it. */
struct Told {
    std::string severity, code, file, text;
    std::size_t line, column;

    auto operator<=>(const Told &) const = default;
};
using AllTold = std::vector<Told>;

AllTold told_in_json(const std::string &lines) {
    AllTold all;
    std::istringstream input(lines);
    for (std::string line; std::getline(input, line);) {
        const Json json = Json::parse(line);
        all.push_back({json["severity"], json["code"], json["file"], json["message"], json["line"],
                       json["column"]});
    }
    return all;
}

AllTold told_in_sarif(const std::string &log) {
    AllTold all;
    const Json document = Json::parse(log);
    for (const Json &result : document["runs"][0]["results"]) {
        const Json &place = result["locations"][0]["physicalLocation"];
        all.push_back({result["level"], result["ruleId"], place["artifactLocation"]["uri"],
                       result["message"]["text"], place["region"]["startLine"],
                       place["region"]["startColumn"]});
    }
    return all;
}

/* Of the rows of a form that has a message a line; the groups of the pattern are severity, code,
 * file, text, line and column in the given order. */
AllTold told_in_rows(const std::string &text, const std::regex &row, const std::array<int, 6> &at) {
    AllTold all;
    for (std::sregex_iterator found(text.begin(), text.end(), row), end; found != end; ++found) {
        const auto group = [&](int i) { return (*found)[at[i]].str(); };
        all.push_back(
            {group(0), group(1), group(2), group(3), std::stoul(group(4)), std::stoul(group(5))});
    }
    return all;
}

/* As forms tell it that have no word for a gap and another one for a note. */
AllTold with_levels(AllTold all, const std::string &note) {
    for (Told &told : all) {
        if (told.severity == "gap") told.severity = "error";
        if (told.severity == "note") told.severity = note;
    }
    return all;
}

}  // namespace

TEST_F(Trees, have_the_same_messages_in_every_form) {
    const AllTold all = told_in_json(output_of("mtranslate check t --format json"));
    ASSERT_GT(all.size(), 2 * PROGRAMS);
    EXPECT_EQ(told_in_sarif(output_of("mtranslate check t --format sarif")),
              with_levels(all, "note"));
    const std::regex command(
        "::(\\w+) file=(.*?),line=(\\d+),col=(\\d+),endColumn=\\d+,title="
        "(MT\\d+) [-\\w]+::(.*)\n");
    std::string annotations = output_of("mtranslate check t --format github");
    annotations = std::regex_replace(annotations, std::regex("%25"), "%");
    EXPECT_EQ(told_in_rows(annotations, command, {1, 5, 2, 6, 3, 4}), with_levels(all, "notice"));
    const std::regex line(
        "(t/\\S+?):(\\d+):(\\d+): (error|gap|warning|note): (.*) \\[(MT\\d+)\\]\n");
    const AllTold shown =
        told_in_rows(output_of("mtranslate check t 2>&1"), line, {4, 6, 1, 5, 2, 3});
    AllTold with_place;  // functions found nowhere are a list
    std::copy_if(all.begin(), all.end(), std::back_inserter(with_place),
                 [](const Told &told) { return told.code != "MT401"; });
    EXPECT_EQ(shown, with_place);
}

TEST_F(Trees, do_not_depend_on_the_number_of_workers) {
    for (const std::string options : {"", "--closure -I t", "--format json", "--strict"}) {
        SCOPED_TRACE(options);
        const std::string command = "rm -rf $o; mtranslate t -O $o --report $o.md " + options;
        run("o=o1; " + command + " -j 1");
        const std::string told = read(directory / "out") + read(directory / "err");
        run("o=o7; " + command + " -j 7");
        EXPECT_EQ(read(directory / "out") + read(directory / "err"), told);
        EXPECT_EQ(output_of("diff -r o1 o7 && diff o1.md o7.md"), "");
    }
}

TEST_F(Trees, change_only_where_a_source_has) {
    run("mtranslate t -O o");
    const std::string messages = read(directory / "err");
    run("mtranslate t -O o");
    EXPECT_NE(read(directory / "err").find("; 0 written\n"), std::string::npos);
    run("mtranslate check t");
    const std::size_t end = messages.rfind("; ");
    EXPECT_EQ(read(directory / "err"), messages.substr(0, end) + "\n");
    EXPECT_EQ(output_of("mtranslate diff t -O o"), "");
    run("echo 'x_changed = 1;' >> t/deep/er/f0.m");
    const std::string difference = output_of("mtranslate diff t -O o");
    EXPECT_NE(difference.find("x_changed := 1;\n"), std::string::npos) << difference;
    EXPECT_EQ(difference.find("--- ", 1), std::string::npos) << "only one file differs";
    run("mtranslate t -O o");
    EXPECT_NE(read(directory / "err").find("; 1 written\n"), std::string::npos);
}

/* A method is called alike by all: where each file is translated for itself, with what it calls, or
 * from within its folder. */
TEST_F(TreeOf, classes_calls_methods_alike_from_everywhere) {
    const std::pair<const char *, const char *> files[] = {
        {"main.m", "x = c(1);\ny = x + size(x);\nf(y, x); p.d(2) * c_f(3);\nother(1);\n"},
        {"@c/c.m", "function x = c(v)\nx = class(check(v), 'c');\n"},
        {"@c/plus.m", "function x = sum(x, y)\nx = c(1);\nx = minus(x, size(x));\n"},
        {"@c/minus.m",
         "function x = minus(x, y)\nx = plus(x, help1(y));\n"
         "function y = help1(y)\nend(y, 1, 1);\n"},
        {"@c/size.m", "function n = size(x)\nn = f(x, 1);\n"},
        {"@c/f.m", "function f(x, y)\nsize(x); other(x);\n"},
        {"@c/private/check.m", "function x = check(x)\nother(x);\n"},
        {"+p/@d/d.m", "function x = d(v)\nx = class(v, 'd');\ny = copy(x * 2);\n"},
        {"+p/@d/mtimes.m", "function x = mtimes(x, y)\n"},
        {"lib/c_f.m", "function x = c_f(x)\nx = c(x) + 1;\n"},
        {"lib/copy.m", "function x = other(x)\n"},
        {"lib/other.m", "function other(x)\n"}};
    for (const auto &[path, text] : files) write(directory / "t" / path, text);
    run("mtranslate t -O o; mtranslate --root t t/@c t/+p -O part; diff -r o/@c part/@c && "
        "diff -r o/+p part/+p");
    EXPECT_EQ(read(directory / "out"), "");
    EXPECT_EQ(read(directory / "o/main.txt"),
              "x := c(1);\ny := c_plus(x, c_size(x));\nc__f(y, x);\np_d_mtimes(p_d(2), "
              "c_f(3));\nother(1);\n");
    EXPECT_NE(read(directory / "o/+p/@d/d.txt").find(" m_copy(p_d_mtimes(x"), std::string::npos);
    EXPECT_TRUE(read(directory / "o/lib/copy.txt").starts_with("m_copy := proc"));
    for (const auto &[name, text] : files) {
        SCOPED_TRACE(name);
        const fs::path path = name;
        if (path == "main.m" || path == "lib/copy.m") continue;
        const std::string folder = "t/" + path.parent_path().string();
        const std::string go = "r=$PWD; cd " + folder + "; mtranslate -I $r/t -I $r/t/lib ";
        const std::string file = path.filename().string();
        const std::string within = output_of(go + file);
        EXPECT_EQ(output_of(go + "../${PWD##*/}/./" + file), within);
        EXPECT_EQ(output_of("mtranslate -I t -I t/lib t/" + path.string()), within);
        const std::string whole = read(directory / "o" / fs::path(path).replace_extension("txt"));
        EXPECT_TRUE(within.starts_with(whole)) << within << whole;
    }
}

/* What a function of another file gives is the same for all that call it, and they depend on it. */
TEST_F(TreeOf, files_knows_what_their_functions_give) {
    const std::string use = "() \nc = make; x = c(2); n = count(c); if n > 1, x = n + 1; end\n";
    for (const std::string caller : {"a", "deep/m", "z"})
        write(directory / ("t/" + caller + ".m"),
              "function x = " + caller.substr(caller.find('/') + 1) + use);
    write(directory / "t/make.m", "function c = make\nc = wrapped;\nc{end+1} = 'two';\n");
    write(directory / "t/wrapped.m", "function c = wrapped\nc = {1};\n");
    write(directory / "t/count.m", "function n = count(c)\nn = numel(c);\n");
    run("mtranslate t -O o1 -j 1 --depfile d; mtranslate t -O o3 -j 3; diff -r o1 o3; "
        "mtranslate --root t t/z.m -O part; diff o1/z.txt part/z.txt");
    EXPECT_EQ(read(directory / "out"), "");
    for (const std::string caller : {"a", "deep/m", "z"}) {
        const std::string text = read(directory / ("o1/" + caller + ".txt"));
        EXPECT_NE(text.find("x := copy(c(2..2));\n  n := count(c);\n  if n > 1 then\n"),
                  std::string::npos)
            << text;
        const std::string closure = output_of("mtranslate -I t t/" + caller + ".m");
        EXPECT_TRUE(closure.starts_with(text)) << closure;
        const std::string made =
            "o1/" + caller + ".txt: \\\n  t/" + caller + ".m \\\n  t/make.m \\\n  t/count.m\n";
        EXPECT_NE(read(directory / "d").find(made), std::string::npos) << read(directory / "d");
    }
}

/* With its closure each file of a tree is what it is alone, messages and all. */
TEST_F(Trees, are_made_of_files_that_could_be_alone) {
    run("mtranslate t -O o --closure -I t");
    for (unsigned seed = 1; seed < PROGRAMS; seed += 2) {
        const std::string name = "f" + std::to_string(seed);
        SCOPED_TRACE(name + ".m:\n" + source_of(seed));
        EXPECT_EQ(output_of("mtranslate -I t t/" + name + ".m"),
                  read(directory / ("o/" + name + ".txt")));
        const std::string alone = read(directory / "err");
        run("mtranslate check --closure -I t t/" + name + ".m");
        EXPECT_EQ(read(directory / "err").find(alone), 0U);
    }
}

/* What a called file is shows in all of it, not in its first word. */
TEST_F(TreeOf, scripts_puts_those_that_one_run_puts) {
    for (const char *source :
         {"function g\nend\nx = 1;\n", "% a\rx = 1;\r", "...\nfunction s\nx = 1;\n",
          "; function s\nx = 1;\n", "function% a\n s\nx = 1;\n", "% empty\n"}) {
        SCOPED_TRACE(source);
        write(directory / "p/s.m", source);
        write(directory / "p/main.m", "s\ny = 2;\n");
        run("mtranslate p -O o");
        const std::string text = read(directory / "o/main.txt");
        const std::string alone = output_of("mtranslate p/main.m");
        EXPECT_TRUE(alone.ends_with(text)) << text << alone;
        EXPECT_EQ(text.starts_with("s();"), alone.find("s();") != alone.npos) << text << alone;
    }
    write(directory / "p/s.m", "x = f(1);\n");
    write(directory / "p/r.m", "function x = r\nx = 1;\ns\n");
    write(directory / "p/main.m", "y = r + 1;\n");
    run("mtranslate p -O o");
    EXPECT_EQ(read(directory / "o/main.txt"), "y := r() +~ 1;\n") << "the script sets it anew";
}

}  // namespace mtranslate
