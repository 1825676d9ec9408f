/* The tool among other tools: help, manual page, completions of shells. */
#include <fstream>
#include <regex>
#include <set>

#include "tests/tool.h"

namespace mtranslate {

namespace {

const std::string PAGES = MTRANSLATE_PAGES;

/* The names in the left column of a help. */
std::set<std::string> options_in(const std::string &help) {
    static const std::regex row("\n +(-[^ ,]+)(, (--[^ ]+))?");
    std::set<std::string> names;
    for (std::sregex_iterator at(help.begin(), help.end(), row), end; at != end; ++at)
        for (const int group : {1, 3})
            if ((*at)[group].matched) names.insert((*at)[group]);
    return names;
}

TEST_F(Tool, prints_a_short_and_a_whole_help) {
    ASSERT_EQ(run("mtranslate -h"), 0);
    const std::string brief = read(directory / "out");
    ASSERT_EQ(run("mtranslate --help"), 0);
    const std::string whole = read(directory / "out");
    EXPECT_EQ(options_in(brief), options_in(whole));
    EXPECT_GT(options_in(brief).size(), 20U);
    EXPECT_LT(brief.size(), whole.size());
    EXPECT_FALSE(std::regex_search(whole, std::regex("[^\n]{81}")));
    check({
        {"mtranslate -h | grep -A 1 -e '-I,'", 0,
         "  -I, --include DIR         Look for called functions in DIR; repeatable\n"
         "      --language LANGUAGE   Read the sources as matlab, octave or classic\n",
         ""},
        {"mtranslate --help | grep -A 1 -e '-I,'", 0,
         "  -I, --include DIR         Look for called functions in DIR; repeatable\n"
         "                            Tried in the order given, and instead of the\n",
         ""},
        {"mtranslate --help | grep '^[A-Z].*:$' | tail -n 5 | tr -d '\\n'", 0,
         "Commands:Called functions:What is not translated:Exit code:Examples:", ""},
        {"mtranslate diff --help", 0,
         "Usage: mtranslate diff [OPTION]... PATH...\n"
         "Show what would change in the outputs of -O.\n\n"
         "As a unified diff; the exit code is 1 where there is a difference.\n\n"
         "It takes the arguments of mtranslate, too: 'mtranslate -h'.\n",
         ""},
        {"mtranslate explain -h | grep -e CODE -e --page", 0,
         "Usage: mtranslate explain [OPTION]... [CODE]\n"
         "  CODE                      The code or the short name; without it, all codes\n"
         "      --page                Write the page of all messages in Markdown\n",
         ""},
        {"mtranslate -V; mtranslate --version", 0, "mtranslate 0.1.0\nmtranslate 0.1.0\n", ""},
    });
}

/* As fish names it. */
std::string fish_option(const std::string &name) {
    return name.starts_with("--") ? " -l " + name.substr(2) + ' ' : " -s " + name.substr(1) + ' ';
}

TEST_F(Tool, has_all_its_options_in_its_manual_and_completions) {
    run("mtranslate -h; for c in $(mtranslate -h | sed '1,/^Commands/d;/^$/,$d' | cut -c3-20); do "
        "echo $c >> commands; mtranslate $c -h; done");
    const std::string manual = read(PAGES + "/mtranslate.1");
    const std::string bash = read(PAGES + "/mtranslate.bash");
    const std::string zsh = read(PAGES + "/_mtranslate");
    const std::string fish = read(PAGES + "/mtranslate.fish");
    const auto has = [](const std::string &page, const std::string &pattern) {
        return std::regex_search(page, std::regex(pattern));
    };
    for (const std::string &name : options_in(read(directory / "out"))) {
        SCOPED_TRACE(name);
        const std::string escaped = std::regex_replace(name, std::regex("-"), "\\-");
        EXPECT_NE(manual.find("\\fB" + escaped + "\\fR"), std::string::npos);
        EXPECT_TRUE(has(bash, "[\" ]" + name + "[\" ]"));
        EXPECT_TRUE(has(zsh, "[*)]" + name + "[=+]?\\["));
        EXPECT_NE(fish.find(fish_option(name)), std::string::npos);
    }
    std::ifstream commands(directory / "commands");
    int count = 0;
    for (std::string name; commands >> name; ++count) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(has(manual, "\n.TP\n.*mtranslate " + name));
        EXPECT_TRUE(has(bash, "    " + name + ":\\*\\)"));
        EXPECT_TRUE(has(zsh, "        '" + name + ":"));
        EXPECT_TRUE(has(fish, " -a " + name + " "));
    }
    EXPECT_GE(count, 3);
    check({
        {("groff -ww -man -z -Tutf8 " + PAGES + "/mtranslate.1").c_str(), 0, "", ""},
        {("zsh -n " + PAGES + "/_mtranslate; fish -n " + PAGES + "/mtranslate.fish").c_str(), 0, "",
         ""},
    });
}

TEST_F(Tool, completes_arguments_in_shells) {
    write(directory / "src/one file.m", "x = 1\n");
    write(directory / "sum.m", "x = 1\n");
    write(directory / "bash", "source " + PAGES +
                                  "/mtranslate.bash\nCOMP_WORDS=(mtranslate \"$@\") COMP_CWORD=$#\n"
                                  "_mtranslate\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n");
    const struct {
        const char *words;
        const char *bash;
        const char *fish; /* null where the words are none of its */
    } rows[] = {
        {"--lan", "--language\n", "--language\n"},
        {"--language o", "octave\n", "octave\n"},
        {"--language = cl", "classic\n", nullptr},
        {"explain unclosed-b", "unclosed-bracket\nunclosed-block\nunclosed-block-comment\n",
         "unclosed-block\nunclosed-block-comment\nunclosed-bracket\n"},
        {"explain --p", "--page\n", "--page\n"},
        {"check --str", "--strict\n", "--strict\n"},
        {"-O s", "src\n", "src/\n"},
        {"check s", "src\nsum.m\n", "src/\nsum.m\n"},
        {"-o 'src/one f'", "src/one file.m\n", "src/one file.m\n"},
        {"ex", "explain\n", "explain\n"},
        {"-W no-unknown-f", "no-unknown-function\n", "no-unknown-function\n"},
        {"-W error = global", "global-start\n", nullptr},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.words);
        run("bash ./bash " + std::string(row.words));
        EXPECT_EQ(read(directory / "out"), row.bash);
        if (!row.fish) continue;
        write(
            directory / "fish",
            "source " + PAGES + "/mtranslate.fish\ncomplete -C \"mtranslate " + row.words + "\"\n");
        run("HOME=$PWD fish --private ./fish | cut -f 1");
        EXPECT_EQ(read(directory / "out"), row.fish);
    }
}

TEST_F(Tool, gives_a_file_up_that_takes_too_long) {
    write(directory / "t/a.m", "x = 1;\n");
    write(directory / "t/c.m", "x = 2;\n");
    run("mkfifo t/b.m");
    check({
        // time enough for the others on a busy machine
        {"mtranslate t/?.m -O o -j 1 --max-time 3; echo $?; ls o", 0, "3\na.txt\nc.txt\n",
         "t/b.m: error: it took longer than 3 seconds\nmtranslate: 3 of 3 files: 2 without errors "
         "or gaps, 0 with gaps, 0 with errors, 1 failed; 2 written\n"},
        {"mtranslate t/b.m --max-time 0.2", 3, "",
         "t/b.m: error: it took longer than 0.2 seconds\n"},
        {"(sleep 1; echo x) | mtranslate - --max-time .1", 3, "",
         "<stdin>: error: it took longer than 0.1 seconds\n"},
        // within the limits everything is as ever
        {"mtranslate --max-time 60 t/a.m -o x; cat x", 0, "x := 1;\n", ""},
        {"mtranslate --max-time 60 -c 'try, x = 1; end'", 1,
         "# not translated: errors in the lines below are not caught\nx := 1;\n",
         "<command>:1:1: gap: errors are not caught in the host's language [MT201]\n"
         "try, x = 1; end\n^~~\n"},
        {"mtranslate --max-time 60 none.m", 3, "",
         "mtranslate: error: cannot read 'none.m': No such file or directory\n"},
        {"mtranslate --max-time -1 -c x 2>&1 | head -n 1", 0,
         "mtranslate: error: --max-time: Value -1 not in range 0.001000 to 1000000.000000\n", ""},
    });
}

TEST_F(Tool, gives_a_file_up_that_needs_too_much_memory) {
    if (MTRANSLATE_SANITIZED) GTEST_SKIP() << "the sanitizers' own memory cannot be limited";
    write(directory / "t/a.m", repeated("x = 1;\n", 200000));
    write(directory / "t/b.m", "x = 1;\n");
    const std::string large = "t/a.m: error: it needed more than 8 MB of memory\n";
    check({
        {"mtranslate t -O o -j 1 --max-memory 8; echo $?; ls o", 0, "3\nb.txt\n",
         large +
             "mtranslate: 2 of 2 files: 1 without errors or gaps, 0 with gaps, 0 with errors, 1 "
             "failed; 1 written\n"},
        {"mtranslate t/a.m --max-memory 8", 3, "", large},
        {"mtranslate t/a.m --max-memory 1000 | tail -n 1", 0, "x := 1;\n", ""},
        {"(ulimit -v 30000; mtranslate t/a.m)", 3, "",
         "mtranslate: error: system memory exhausted\n"},
    });
}

}  // namespace

}  // namespace mtranslate
