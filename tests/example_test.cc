/* The programs in examples/ and the blocks in README.md and docs/ against their translations. */
#include <algorithm>

#include "tests/translation.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> files_in(const fs::path &directory, const std::string &extension) {
    std::vector<fs::path> files;
    for (const auto &entry : fs::directory_iterator(directory))
        if (entry.path().extension() == extension) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

TEST(Examples, have_the_translations_beside_them) {
    fs::current_path(MTRANSLATE_SOURCE_DIR);
    const std::vector<fs::path> goldens = files_in("examples", ".out");
    EXPECT_GE(goldens.size(), 12u);
    for (fs::path path : goldens) {
        const std::string expected = read_file(path);
        path.replace_extension(".m");
        if (!fs::exists(path)) path.replace_extension("").append("main.m");
        SCOPED_TRACE(path);
        StandInHost host;
        EXPECT_EQ(translate(host, "file", path.string()), expected);
    }
    for (fs::path path : files_in("examples", ".m"))
        EXPECT_TRUE(fs::exists(path.replace_extension(".out"))) << path << " is missing";
}

/* Checks every matlab block that a text block follows; answers how many there were. The empty line
 * at the end of a translation need not stand in its block. */
int check_blocks(const std::string &page) {
    const std::string open = "```matlab\n";
    const std::string between = "```\n```text\n";
    int count = 0;
    for (size_t at = 0; (at = page.find(open, at)) != std::string::npos;) {
        const size_t source = at + open.size();
        at = page.find("```\n", source);
        if (page.compare(at, between.size(), between) != 0) continue;
        const size_t expected = at + between.size();
        const SourceFiles files;
        files.write("main.m", page.substr(source, at - source));
        at = page.find("```\n", expected);
        StandInHost host;
        std::string text = translate(host, "file", files.path("main.m"));
        if (text.ends_with("\n\n")) text.pop_back();
        EXPECT_EQ(text, page.substr(expected, at - expected));
        count++;
    }
    return count;
}

TEST(Examples, on_the_pages_are_true) {
    const fs::path root = MTRANSLATE_SOURCE_DIR;
    EXPECT_GT(check_blocks(read_file(root / "README.md")), 0);
    int count = 0;
    for (const fs::path &page : files_in(root / "docs", ".md")) {
        SCOPED_TRACE(page);
        count += check_blocks(read_file(page));
    }
    EXPECT_GT(count, 0);
}

}  // namespace

}  // namespace mtranslate
