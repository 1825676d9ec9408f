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

/* What a command prints, on both streams, in the project's folder and with the tool in the path. */
std::string output_of(const std::string &command) {
    const fs::path tool = MTRANSLATE_TOOL_FILE;
    const std::string line = "cd " MTRANSLATE_SOURCE_DIR " && PATH=" + tool.parent_path().string() +
                             ":$PATH && { " + command + "; } 2>&1";
    FILE *pipe = popen(line.c_str(), "r");
    std::string text;
    for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe)) text += static_cast<char>(c);
    pclose(pipe);
    return text;
}

/* Checks every command of the sh blocks, a line with "$ ", against the lines behind it; answers how
 * many there were. */
int check_commands(const std::string &page) {
    std::istringstream lines(page);
    std::string command;
    std::string expected;
    bool in_block = false;
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        const bool begins = in_block && line.starts_with("$ ");
        if (!command.empty() && (begins || line == "```")) {
            EXPECT_EQ(output_of(command), expected) << command;
            command = expected = "";
        }
        if (begins) {
            command = line.substr(2);
            count++;
        } else if (!command.empty()) {
            expected.append(line).append("\n");
        }
        if (line.starts_with("```")) in_block = line == "```sh";
    }
    return count;
}

TEST(Examples, on_the_pages_are_true) {
    const fs::path root = MTRANSLATE_SOURCE_DIR;
    std::vector<fs::path> pages = files_in(root / "docs", ".md");
    pages.push_back(root / "README.md");
    int blocks = 0;
    int commands = 0;
    for (const fs::path &page : pages) {
        SCOPED_TRACE(page);
        blocks += check_blocks(read_file(page));
        commands += check_commands(read_file(page));
    }
    EXPECT_GT(blocks, 1);
    EXPECT_GT(commands, 5);
}

}  // namespace

}  // namespace mtranslate
