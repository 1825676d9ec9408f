/* The page of a report, as a browser shows it. */
#include <algorithm>
#include <regex>
#include <sstream>

#include "tests/tool.h"

namespace mtranslate {

namespace {

class Page : public Tool {
protected:
    void SetUp() override {
        if (run("command -v chromium") != 0) GTEST_SKIP() << "there is no chromium";
        fs::copy(MTRANSLATE_SOURCE_DIR "/tests/report/src", directory / "src",
                 fs::copy_options::recursive);
    }

    /* The elements of the page, when its scripts have run, at an address within it. */
    std::string elements(const std::string &address) const {
        run("HOME=. chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
            "--disable-background-networking --disable-component-update --disable-sync "
            "--virtual-time-budget=20000 --user-data-dir=./browser --enable-logging=stderr "
            "--dump-dom 'file://" +
            (directory / "r.html").string() + address + "'");
        const std::string said = read(directory / "err");
        const std::size_t uncaught = said.find("Uncaught");
        EXPECT_EQ(uncaught, said.npos) << said.substr(std::min(uncaught, said.size()), 200);
        const std::string page = read(directory / "out");
        const std::size_t begin = std::min(page.find("<main"), page.size());
        return page.substr(begin, page.find("</main>") - begin);
    }
};

int count(const std::string &text, const std::string &pattern) {
    const std::regex regex(pattern);
    return static_cast<int>(std::distance(std::sregex_iterator(text.begin(), text.end(), regex),
                                          std::sregex_iterator()));
}

std::string without_tags(const std::string &page) {
    std::string text;
    bool is_tag = false;
    for (const char c : page) {
        if (c == '<') is_tag = true;
        if (!is_tag) text += c;
        if (c == '>') is_tag = false;
    }
    return text;
}

/* The rows of the table with the id, each with its cells' texts between bars. */
std::string rows_of(const std::string &page, const std::string &id) {
    const std::size_t begin = page.find("<tbody>", page.find("id=\"" + id + "\""));
    if (begin == page.npos) return "";
    std::string rows = page.substr(begin, page.find("</tbody>", begin) - begin);
    for (const auto &[pattern, text] : {std::pair("</tr>", "\n"), {"</td>", "|"}})
        rows = std::regex_replace(rows, std::regex(pattern), text);
    return without_tags(rows);
}

}  // namespace

TEST_F(Page, shows_sums_tables_and_what_is_searched) {
    run("mtranslate src -O o --report r.html");
    const std::string overview = elements("");
    EXPECT_EQ(count(overview, "59.3 %</strong>"), 1);
    EXPECT_EQ(count(rows_of(overview, "unresolved"), "\n"), 8);
    EXPECT_EQ(rows_of(overview, "messages"),
              "MT102 unclosed-bracket|error|1|1|\nMT201 try|gap|1|1|\nMT204 eval|gap|1|1|\n"
              "MT401 unknown-function|warning|7|4|\n");
    EXPECT_EQ(count(rows_of(elements("#view=files"), "files"), "\n"), 6);
    const std::string found = elements("#search=fit_line");
    EXPECT_EQ(rows_of(found, "files"), "src/fit_line.m|✓ Translated|2|12|343|0|0|0|0|100.0 %|\n");
    EXPECT_EQ(rows_of(found, "unresolved"), "");
    EXPECT_EQ(rows_of(elements("#search=struct"), "unresolved"),
              "struct|1|1|1|src/settings.m:3|\n");
}

TEST_F(Page, shows_source_and_translation_with_messages) {
    write(directory / "src/z.m",
          "% <img src=x>\ns = '</script><b>&amp;\xE9';  % \xC3\xA9\nif s == 'abc', y = 1; end\n");
    for (const char *command : {"check src", "src -O o"}) {
        run("mtranslate " + std::string(command) + " --report r.html");
        const std::string page = elements("#file=7");
        const std::string text = without_tags(page);
        EXPECT_EQ(count(page, "<img|<b>"), 0);
        EXPECT_EQ(count(text, "1% &lt;img src=x&gt;1# &lt;img src=x&gt;2s"), 1) << text;
        EXPECT_EQ(count(text, "'&lt;/script&gt;&lt;b&gt;&amp;amp;é';  % é"), 1) << text;
        EXPECT_EQ(count(page, "if <mark class=\"warning\">s == 'abc'</mark>, y"), 1);
        EXPECT_EQ(count(text, "warning '==' compares texts character by character MT302"), 1);
    }
}

/* Source lines and what stands beside them, wherever it stands in the translation. */
TEST_F(Page, shows_each_statement_beside_its_translation) {
    write(directory / "src/z.m",
          "x = [1 ... one\n    2];  % two\n\n% three\nif x(1) == 2, y = 1; end\nsettings\n"
          "function r = f(p)\n  % four\n  p(1) = 2;\n  function inner\n  end\n  r = 1;\nend\n");
    run("mtranslate check src --report r.html");
    std::string rows = elements("#file=7");
    const std::size_t begin = rows.find("<tbody>", rows.find("class=\"source\""));
    rows = rows.substr(begin, rows.find("</tbody>", begin) - begin);
    for (const auto &[pattern, text] : {std::pair("</tr>", "\n"), {"</td>", "|"}, {"&amp;", "&"}})
        rows = std::regex_replace(rows, std::regex(pattern), text);
    EXPECT_EQ(without_tags(rows),
              "1|x = [1 ... one|13|# one|\n||14|x := Vector[row]([1, 2]); # two|\n"
              "2|    2];  % two|||\n"
              "3||15||\n"
              "4|% three|16|# three|\n"
              "5|if x(1) == 2, y = 1; end|17|if x(1) = 2 then|\n||18|  y := 1;|\n"
              "||19|end if;|\n"
              "6|settings|20|settings();|\n"
              "7|function r = f(p)|1|f := proc( qxrp_p )|\n||2|  local r, p, inner;|\n"
              "8|  % four|3|  # four|\n"
              "9|  p(1) = 2;|8|  p(1) := 2;|\n"
              "10|  function inner|4|  inner := proc(  )|\n"
              "11|  end|5|  end proc;|\n||6||\n||7|  p := copy(qxrp_p);|\n"
              "12|  r = 1;|9|  r := 1;|\n||10|  return r;|\n"
              "13|end|11|end proc;|\n||12||\n");
}

TEST_F(Page, draws_files_and_functions_and_calls) {
    write(directory / "r.toml", "[functions]\nsize = \"Size({args})\"\n");
    run("mtranslate src -O o --rules r.toml --report r.html");
    const std::string graph = elements("#view=graph");
    EXPECT_EQ(count(graph, "<a [^>]*class=\"node card-node "), 6);
    EXPECT_EQ(count(graph, "<a [^>]*class=\"node unresolved "), 8);
    EXPECT_EQ(count(graph, "<a [^>]*class=\"node answered "), 1);
    EXPECT_EQ(count(graph, "<path class=\"found\""), 4);
    EXPECT_EQ(count(graph, "<path class=\"answered\""), 2);
    const std::string around = elements("#file=5");
    EXPECT_EQ(count(around, "<title>src/(fit_line|private/count_points).m</title>"), 2);
    EXPECT_EQ(count(around, "<a [^>]*class=\"node card-node "), 2);
}

/* The calls of a large tree are shown in part, and the page says so. */
TEST_F(Page, shows_a_part_of_a_large_tree) {
    fs::remove_all(directory / "src");
    for (int i = 0; i < 300; ++i) {
        std::ostringstream source;
        source << "function y = f" << i << "(x)\ny = f" << (i + 1) % 300 << "(x) + g" << i << ";\n";
        write(directory / "src" / ('f' + std::to_string(i) + ".m"), source.str());
    }
    run("mtranslate check src --report r.html");
    const std::string files = elements("#view=files");
    EXPECT_EQ(count(rows_of(files, "files"), "\n"), 200);
    EXPECT_EQ(count(files, "100 more rows"), 1);
    const std::string graph = elements("#view=graph");
    EXPECT_EQ(count(graph, "of 300 files the 40"), 1);
    EXPECT_EQ(count(graph, "<a [^>]*class=\"node card-node "), 40);
}

/* Where a message is and what it means, who calls a function, and what a folder holds. */
TEST_F(Page, leads_to_places_and_reasons) {
    write(directory / "src/w.m", "w_one(1);\nw_two(2);\n");
    run("mtranslate src -O o --report r.html");
    const std::string message = elements("#message=MT201");
    EXPECT_EQ(count(message, "What to do: "), 1);
    EXPECT_EQ(count(message, "href=\"#file=6&amp;line=4\""), 1) << message;
    EXPECT_EQ(count(rows_of(elements("#search=unknown-function"), "places"), "\n"), 9);
    EXPECT_EQ(rows_of(elements("#function=count_points"), "callers"),
              "fit_line|src/fit_line.m:5|1|src/private/count_points.m|\n");
    EXPECT_EQ(count(elements("#file=6&line=7"), "<tr id=\"line-7\" class=\"[^\"]*target"), 1);
    const std::string files = elements("#view=files");
    EXPECT_EQ(rows_of(files, "folders"),
              "+tools/|1|1|0|0|1|100.0 %|\nprivate/|1|1|0|0|3|66.7 %|\n");
    EXPECT_EQ(count(rows_of(files, "files"), "w.m.△ Warnings"), 1);
    EXPECT_EQ(count(rows_of(elements("#view=files&folder=src/private/"), "files"), "\n"), 1);
    EXPECT_EQ(count(rows_of(elements("#view=files&state=gaps&code=MT201"), "files"), "\n"), 1);
    EXPECT_EQ(count(rows_of(elements("#view=files&state=errors&code=MT201"), "files"), "\n"), 0);
}

/* What a reader does, as a script after the page's own. */
TEST_F(Page, steps_through_messages_and_keeps_its_order_after_back) {
    run("mtranslate src -O o --report r.html");
    const std::string page = read(directory / "r.html");
    const auto after = [&](const std::string &steps) {
        write(
            directory / "r.html",
            page +
                // The browser's clock runs ahead where nothing is to be done: work takes its time.
                "<script>const rest = async () => { for (let n = 0; n < 30; n++) {"
                " for (let k = 0; k < 1e6; k++) rest.sum = Math.random();"
                " await new Promise(end => setTimeout(end, 4)); } };"
                "(async () => { await rest(); " +
                steps + " })();</script>");
    };
    const std::string next =
        "document.body.dispatchEvent(new KeyboardEvent('keydown', "
        "{ key: 'n', bubbles: true })); await rest();";
    after(next + next);
    EXPECT_EQ(count(elements("#file=4"), "<tr id=\"line-11\" class=\"[^\"]*target"), 1);
    after(next + next + next);
    EXPECT_EQ(count(elements("#file=4"), "<h2>src/private/count_points.m</h2>"), 1);
    after(
        "document.querySelectorAll('#files th button')[4].click(); location.hash = '#file=1'; "
        "await rest(); history.back(); await rest();");
    EXPECT_EQ(rows_of(elements("#view=files"), "files").substr(0, 10), "src/main.m");
}

TEST_F(Page, is_made_without_sources) {
    run("mtranslate src -O o --report r.html --report-sources=no");
    EXPECT_EQ(count(read(directory / "r.html"), "id=\"pack-"), 0);
    const std::string file = elements("#file=5");
    EXPECT_EQ(count(file, "made without sources"), 1);
    EXPECT_EQ(count(file, "MT401"), 2);
}

}  // namespace mtranslate
