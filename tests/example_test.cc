/* The programs in examples/ and classic/, and what the pages show, against their translations. */
#include <gtest/gtest.h>
#include <mtranslate_program.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <vector>

#include "diagnose/messages.h"
#include "support/observers.h"
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

std::string translate_for_tool(const std::string &path, const char *language) {
    mTranslateProgramRequest request{};
    request.size = sizeof request;
    request.file = path.c_str();
    request.language = language;
    const mTranslateProgramResult *result = mTranslateProgram(&request);
    std::string text = result->failure ? result->failure : result->text;
    mTranslateProgramRelease(result);
    return text;
}

void check_goldens(const std::string &directory, const char *language) {
    fs::current_path(MTRANSLATE_SOURCE_DIR);
    const std::vector<fs::path> goldens = files_in(directory, ".out");
    EXPECT_GE(goldens.size(), 5u);
    for (fs::path path : goldens) {
        const std::string expected = read_file(path);
        path.replace_extension(".m");
        if (!fs::exists(path)) path.replace_extension("").append("main.m");
        SCOPED_TRACE(path);
        StandInHost host;
        EXPECT_EQ(translate_in(host, language, "file", path.string()), expected);
        EXPECT_EQ(translate_for_tool(path.string(), language), expected);
    }
    for (fs::path path : files_in(directory, ".m"))
        EXPECT_TRUE(fs::exists(path.replace_extension(".out"))) << path << " is missing";
}

TEST(Examples, have_the_translations_beside_them) { check_goldens("examples", "matlab"); }

/* Files whose translations do not mean what they mean in MATLAB. */
TEST(Examples, of_a_reading_of_its_own_keep_it) { check_goldens("tests/classic", "classic"); }

/* Checks every matlab block that a text block follows; answers how many there were. The empty line
 * at the end of a translation need not stand in its block. */
int check_blocks(const std::string &page, const char *language) {
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
        std::string text = translate_in(host, language, "file", files.path("main.m"));
        if (text.ends_with("\n\n")) text.pop_back();
        EXPECT_EQ(text, page.substr(expected, at - expected));
        count++;
    }
    return count;
}

/* The code between backticks in a cell of a table. */
Texts code_in(const std::string &cell) {
    static const std::regex code("`` (.*?) ``|`(.*?)`");
    Texts texts;
    for (std::sregex_iterator at(cell.begin(), cell.end(), code), end; at != end; ++at)
        texts.push_back(at->str(1) + at->str(2));
    return texts;
}

/* The text without the procedures that the front end brings along. */
std::string without_library(const std::string &text) {
    static const std::regex procedure("qxrp_\\w+ := proc\\([^]*?\nend proc;\n\n");
    return std::regex_replace(text, procedure, "");
}

/* "MATLAB | Host text": a command and its translation, the lines joined by a blank. */
void check_translation(const Texts &row, const char *language) {
    StandInHost host;
    std::string text =
        without_library(translate_in(host, language, "command", code_in(row[0]).at(0)));
    text.erase(text.find_last_not_of('\n') + 1);
    EXPECT_EQ(std::regex_replace(text, std::regex("\n *"), " "), code_in(row[1]).at(0)) << row[0];
}

/* "Refused | Column | Instead": a command, the column of its error, commands that are accepted. */
void check_refusal(const Texts &row, const char *language) {
    EXPECT_EQ(std::to_string(error_column(code_in(row[0]).at(0), language)), row[1]) << row[0];
    for (const std::string &instead : code_in(row[2]))
        EXPECT_EQ(error_column(instead, language), 0) << instead;
}

/* "Octave | Host text": the same in octave. */
void check_octave(const Texts &row, const char *) { check_translation(row, "octave"); }

/* The codes of a command's messages, each once; names that are found nowhere are left out. */
Texts codes;

void note_code(void * /*context*/, const Message *message) {
    const char *code = MessageTable[message->id].code;
    if (message->id == UNKNOWN_FUNCTION || std::ranges::count(codes, code)) return;
    codes.push_back(code);
}

std::string codes_of(const std::string &source, const char *language) {
    codes.clear();
    Observers observers{};
    observers.message = note_code;
    observe_next_run(observers);
    StandInHost host;
    translate_in(host, language, "command", source);
    std::string text;
    for (const std::string &code : codes) text += (text.empty() ? "" : " ") + code;
    return text;
}

/* "Reported | Code | Why | Instead": a command, the codes of its messages, commands without any. */
void check_report(const Texts &row, const char *language) {
    EXPECT_EQ(codes_of(code_in(row[0]).at(0), language), row[1]) << row[0];
    for (const std::string &instead : code_in(row.at(3)))
        EXPECT_EQ(codes_of(instead, language), "") << instead;
}

/* "Promised | Tested by": names of tests, of this program where they begin with a capital. */
void check_tests(const Texts &row, const char *) {
    const auto *program = testing::UnitTest::GetInstance();
    std::set<std::string> known;
    for (int i = 0; i < program->total_test_suite_count(); ++i) {
        const testing::TestSuite *suite = program->GetTestSuite(i);
        for (int k = 0; k < suite->total_test_count(); ++k)
            known.insert(std::string(suite->name()) + '.' + suite->GetTestInfo(k)->name());
    }
    const Texts tests = code_in(row[1]);
    EXPECT_FALSE(tests.empty()) << row[0];
    for (const std::string &test : tests)
        EXPECT_TRUE(std::islower(static_cast<unsigned char>(test[0])) || known.contains(test))
            << test;
}

/* The cells of a row of a table. */
Texts row_cells(std::string line) {
    static const std::regex bar(R"( *\| *)");
    line = std::regex_replace(line, std::regex(R"(\\\|)"), "\x01");
    Texts row(std::sregex_token_iterator(line.begin() + 2, line.end(), bar, -1), {});
    for (std::string &cell : row) cell = std::regex_replace(cell, std::regex("\x01"), "|");
    return row;
}

/* Checks the rows of the tables with these heads; answers how many there were. */
int check_tables(const std::string &page, const char *language) {
    static const std::map<std::string, void (*)(const Texts &, const char *)> checks = {
        {"MATLAB", check_translation},
        {"Octave", check_octave},
        {"Promised", check_tests},
        {"Refused", check_refusal},
        {"Reported", check_report}};
    std::istringstream lines(page);
    std::string head;
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        const bool is_row = line.starts_with("| ");
        if (!is_row && !line.starts_with("|-")) head = "";
        if (!is_row) continue;
        const Texts row = row_cells(line);
        const auto check = checks.find(head);
        if (check != checks.end()) {
            check->second(row, language);
            count++;
        }
        if (head.empty()) head = row[0];
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

/* Checks every command of the sh blocks, a line with "$ ", against the lines after it; answers how
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
    int rows = 0;
    for (const fs::path &page : pages) {
        SCOPED_TRACE(page);
        const std::string text = read_file(page);
        const char *language = page.stem() == "language" ? "classic" : "matlab";
        blocks += check_blocks(text, language);
        commands += check_commands(text);
        rows += check_tables(text, language);
    }
    EXPECT_GT(blocks, 1);
    EXPECT_GT(commands, 5);
    EXPECT_GT(rows, 400);
}

}  // namespace

}  // namespace mtranslate
