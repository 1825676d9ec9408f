/* The tool driven by build tools: what docs/scale.md shows, run on a tree. */
#include <sstream>

#include "tests/tool.h"

namespace mtranslate {

namespace {

class Scale : public Tool {
protected:
    Scale() {
        const std::pair<const char *, const char *> files[] = {
            {"main.m", "settings\nx = f(1) + pk.g(2);\ny = c(x) + 1;\n"},
            {"settings.m", "a = 1;\n"},
            {"lib/f.m", "function y = f(x)\ny = r(x);\nend\n"},
            {"lib/private/r.m", "function y = r(x)\ny = x;\nend\n"},
            {"+pk/g.m", "function y = g(x)\ny = x;\nend\n"},
            {"@c/c.m", "function y = c(x)\ny = class(x, 'c');\nend\n"},
            {"@c/plus.m", "function y = plus(x, z)\ny = c(x) - 1;\nend\n"},
            {"gap.m", "try, x = 1; catch, end\n"},
            {"alone.m", "x = 2;\n"}};
        for (const auto &[path, text] : files) write(directory / "w/src" / path, text);
        setup = "cd w; PATH=$(dirname $tool):$PATH; ";
        run("mtranslate src -O expected");
    }

    /* Writes the blocks of the page in that language, one after the other, into the file. */
    void extract(const std::string &language, const char *file) const {
        std::istringstream page(read(MTRANSLATE_SOURCE_DIR "/docs/scale.md"));
        std::string blocks;
        bool is_in = false;
        for (std::string line; std::getline(page, line);) {
            if (line.starts_with("```"))
                is_in = line == "```" + language;
            else if (is_in)
                blocks += line + '\n';
        }
        EXPECT_NE(blocks, "") << language;
        write(directory / "w" / file, blocks);
    }
};

const std::string SAME = "diff -r -x '*.d' expected out && echo same";

TEST_F(Scale, has_depfiles_for_awkward_names) {
    write(directory / "w/t/a b#c$d:e.m", "settings;\n");
    write(directory / "w/t/settings.m", "x = 1;\n");
    check({
        {"mtranslate t -O o --depfile d 2> /dev/null; cat d", 0,
         "o/a\\ b\\#c$$d\\:e.txt: \\\n  t/a\\ b\\#c$$d\\:e.m \\\n  t/settings.m\n"
         "o/settings.txt: \\\n  t/settings.m\n\nt/a\\ b\\#c$$d\\:e.m:\n\nt/settings.m:\n",
         ""},
        {"mtranslate -o o.txt --depfile d 't/a b#c$d:e.m'; cat d; printf 'all: o.txt\n"
         "o.txt:\n\ttouch o.txt\ninclude d\n' > m; make -f m",
         0,
         "o.txt: \\\n  t/a\\ b\\#c$$d\\:e.m \\\n  t/settings.m\n\nt/a\\ b\\#c$$d\\:e.m:\n\n"
         "t/settings.m:\nmake: Nothing to be done for 'all'.\n",
         ""},
        {"sleep 0.01; touch 't/a b#c$d:e.m'; make -f m; rm t/settings.m; make -f m", 0,
         "touch o.txt\ntouch o.txt\n", ""},
        {"printf '[options]\\nstrict = false\\n' > src/mtranslate.toml; mtranslate -o o.txt "
         "--depfile d "
         "src/alone.m; "
         "head -n 3 d",
         0, "o.txt: \\\n  src/alone.m \\\n  src/mtranslate.toml\n", ""},
        {"mtranslate -o o.txt --depfile d - < src/settings.m; cat d", 0, "o.txt:\n", ""},
        {"mkdir n; echo > 'n/a\nb.m'; mtranslate n -O n --depfile d 2>&1 | tail -n 1", 0,
         "mtranslate: error: a depfile cannot name 'n/a\\x0ab.txt', which has a line end\n", ""},
        {"mtranslate -c 1 -o o.txt --depfile src/main.m", 3, "",
         "mtranslate: error: the output 'src/main.m' is an existing MATLAB file\n"},
        {"mtranslate src/main.m --depfile d 2>&1 | head -n 1", 0,
         "mtranslate: error: --depfile is about the outputs of -o and -O\n", ""},
    });
}

TEST_F(Scale, translates_a_part_as_the_whole) {
    check({
        {"mtranslate --root ./src src/main.m src/gap.m src/lib -O out > /dev/null 2>&1; "
         "mtranslate --root src/ src/+pk src/settings.m src/alone.m src/@c -O out 2>&1 | tail -n 1",
         0,
         "mtranslate: 5 of 5 files: 5 without errors or gaps, 0 with gaps, 0 with errors, 0 "
         "failed; 5 written\n",
         ""},
        {SAME, 0, "same\n", ""},
        {"mtranslate --root src/lib src/main.m -O out", 3, "",
         "mtranslate: error: 'src/main.m' is not in the folder 'src/lib'\n"},
        {"mtranslate check --root src src/main.m 2>&1 | wc -l", 0, "1\n", ""},
    });
}

TEST_F(Scale, works_with_ninja) {
    extract("ninja", "build.ninja");
    extract("bash", "blocks");
    run("sed '/^ninja$/q' blocks > list");
    const std::string ninja = "sh ./list > log; sed -n 's/^\\[.*\\] //p' log | sort; ";
    check({
        {"sh ./list > log; " + SAME, 0, "same\n", ""},
        {ninja + "grep -c 'no work' log", 0, "1\n", ""},
        {"sleep 0.01; echo 'b = 2;' >> src/settings.m; " + ninja, 0,
         "translate src/main.m\ntranslate src/settings.m\n", ""},
        {"mtranslate src -O expected 2> /dev/null; " + SAME, 0, "same\n", ""},
    });
}

TEST_F(Scale, works_with_make) {
    extract("make", "Makefile");
    const std::string make = "make 2> /dev/null | grep -o 'src/[^ ]*m ' | sort; ";
    check({
        {make + SAME, 0,
         "src/+pk/g.m \nsrc/@c/c.m \nsrc/@c/plus.m \nsrc/alone.m \nsrc/gap.m \nsrc/lib/f.m "
         "\nsrc/lib/private/r.m \nsrc/main.m "
         "\nsrc/settings.m \nsame\n",
         ""},
        {"make", 0, "make: Nothing to be done for 'all'.\n", ""},
        {"sleep 0.01; echo 'b = 2;' >> src/settings.m; " + make, 0,
         "src/main.m \nsrc/settings.m \n", ""},
        {"mtranslate src -O expected 2> /dev/null; " + SAME, 0, "same\n", ""},
    });
}

TEST_F(Scale, works_in_shards) {
    extract("bash", "blocks");
    run("awk '/^find/ { n++ } n == 2' blocks | sed '/^#!/,$d' > parallel; sed '1,/^#!/d; "
        "/^mtranslate/d' blocks > task; "
        "tail -n 1 blocks > merge");
    check({
        {"sh ./parallel 2> /dev/null && " + SAME, 0, "same\n", ""},
        {"rm -r out; "
         "for task in $(seq 0 9); do SLURM_ARRAY_TASK_ID=$task sh ./task 2> /dev/null || exit; "
         "done; " +
             SAME,
         0, "same\n", ""},
        {"sh ./merge && grep -c '<html' report.html; mtranslate src -O out --report whole.json 2> "
         "/dev/null; mtranslate report part-*.json -o parts.json; cmp parts.json whole.json",
         0, "1\n", ""},
    });
}

}  // namespace

}  // namespace mtranslate
