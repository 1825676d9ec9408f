/* The links of the pages: to files of the project, and to headings of pages. */
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

#include "tests/translation.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* A page without its blocks of code. */
std::string prose_of(const fs::path &page) {
    std::istringstream lines(read_file(page));
    std::string prose;
    bool in_block = false;
    for (std::string line; std::getline(lines, line);) {
        const bool is_fence = line.find_first_not_of(' ') < line.size() &&
                              line.substr(line.find_first_not_of(' ')).starts_with("```");
        if (is_fence) in_block = !in_block;
        if (!is_fence && !in_block) prose += line + '\n';
    }
    return prose;
}

/* A heading in small letters, with a hyphen for a blank and without punctuation. */
std::string anchor_of(const std::string &heading) {
    std::string anchor;
    for (const char c : heading) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == ' ') anchor += '-';
        if (std::isalnum(byte) || c == '-' || c == '_' || byte >= 0x80)
            anchor += static_cast<char>(std::tolower(byte));
    }
    return anchor;
}

std::set<std::string> anchors_of(const fs::path &page) {
    static const std::regex heading("(?:^|\n)#+ ([^\n]*)");
    const std::string prose = prose_of(page);
    std::set<std::string> anchors;
    for (std::sregex_iterator at(prose.begin(), prose.end(), heading), end; at != end; ++at)
        anchors.insert(anchor_of(at->str(1)));
    return anchors;
}

/* Checks what is not the address of another site; answers how many links there were. */
int check_links(const fs::path &page) {
    static const std::regex code("(`+)[^\n]*?[^`]\\1(?!`)");
    static const std::regex link(R"(\]\((?![a-z]+:)([^)#\s]*)#?([^)\s]*)\))");
    const std::string prose = std::regex_replace(prose_of(page), code, "");
    int count = 0;
    for (std::sregex_iterator at(prose.begin(), prose.end(), link), end; at != end; ++at, ++count) {
        const fs::path to = at->length(1) ? page.parent_path() / at->str(1) : page;
        EXPECT_TRUE(fs::exists(to)) << at->str();
        if (!at->length(2) || !fs::is_regular_file(to)) continue;
        EXPECT_TRUE(anchors_of(to).contains(at->str(2))) << at->str();
    }
    return count;
}

TEST(Links, lead_to_files_and_headings) {
    int links = 0;
    for (const char *folder : {".", "cli", "docs", "host", "python", "scripts", "src", "tests",
                               "web/package", "web/server", "web/vscode"}) {
        for (const auto &entry : fs::directory_iterator(fs::path(MTRANSLATE_SOURCE_DIR) / folder)) {
            if (entry.path().extension() != ".md") continue;
            SCOPED_TRACE(entry.path());
            links += check_links(entry.path());
        }
    }
    EXPECT_GT(links, 50);
}

}  // namespace

}  // namespace mtranslate
