// Tables of sources and texts, source files on disk, and runs.
#include "tests/translation.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "emit/switch_writer.h"
#include "run/last_error.h"

namespace mtranslate {

std::string table(const std::string &name) {
    std::istringstream lines(read_file(MTRANSLATE_SOURCE_DIR "/tests/cases/" + name + ".txt"));
    std::string text;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("# ")) text += line + "\n";
    EXPECT_NE(text, "") << name;
    return text;
}

std::string unescaped(std::string text) {
    static const std::regex repetition(R"(\\(\d+)\[(.*?)\\\])");
    for (std::smatch found; std::regex_search(text, found, repetition);)
        text =
            found.prefix().str() + repeated(found[2], std::stoi(found[1])) + found.suffix().str();
    for (size_t at = 0; (at = text.find('\\', at)) != std::string::npos; at++) {
        static const std::string letters = "nrft";
        const size_t which = at + 1 < text.size() ? letters.find(text[at + 1]) : std::string::npos;
        if (which != std::string::npos) text.replace(at, 2, 1, "\n\r\f\t"[which]);
    }
    return text;
}

Texts cells(const std::string &table) {
    static const std::regex gap(" {3,}|\n");
    Texts texts;
    for (std::sregex_token_iterator at(table.begin(), table.end(), gap, -1), end; at != end; ++at)
        if (at->length() > 0) texts.push_back(*at);
    return texts;
}

std::vector<Row> short_rows(const std::string &table) {
    std::vector<Row> rows;
    for (const std::string &cell : cells(table)) {
        const size_t arrow = cell.find(" => ");
        const bool is_empty = arrow + 4 > cell.size();
        rows.push_back(
            {unescaped(cell.substr(0, arrow)), is_empty ? "" : unescaped(cell.substr(arrow + 4))});
    }
    return rows;
}

/* The place of the bar between source and text: the first that is not doubled. */
static size_t bar_of(const std::string &line) {
    size_t bar = line.find('|');
    while (bar != std::string::npos && line.compare(bar, 2, "||") == 0)
        bar = line.find('|', bar + 2);
    return bar;
}

std::vector<Row> side_by_side(const std::string &table) {
    std::vector<Row> rows(1);
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) {
            rows.emplace_back();
            continue;
        }
        const size_t bar = bar_of(line);
        const std::string left = line.substr(0, bar);
        const size_t length = left.find_last_not_of(' ') + 1;
        std::string &source = rows.back().source;
        if (length > 0) source += (source.empty() ? "" : "\n") + unescaped(left.substr(0, length));
        if (bar == std::string::npos) continue;
        const bool is_empty = bar + 1 == line.size();
        rows.back().expected += (is_empty ? "" : unescaped(line.substr(bar + 2))) + "\n";
    }
    return rows;
}

SourceFiles::SourceFiles(const std::string &table) {
    std::string form = testing::TempDir() + "/mtranslate.XXXXXX";
    directory_ = mkdtemp(form.data());
    for (const Row &file : short_rows(table)) write(file.source + ".m", file.expected);
}

SourceFiles::~SourceFiles() { std::filesystem::remove_all(directory_); }

void SourceFiles::write(const std::string &name, const std::string &text) const {
    std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
    std::ofstream(path(name), std::ios::binary) << text;
}

Outcome run_leaving(ErrorExit exit, const char *mode, const std::string &source,
                    const char *language) {
    static StandInHost host;
    ValueStore &values = host.values();
    values.clear();
    const HostValue option[] = {values.equation(values.name("Language"), values.string(language))};
    host.leave_errors_by(exit);
    SwitchCounter = 0;
    try {
        std::optional<std::string> result = host.translate(mode, source, option);
        return {std::move(result), host.take_errors()};
    } catch (const HostError &error) {
        return {std::nullopt, {error.what()}};
    }
}

void leave_broken_run() {
    static int turn = 0;
    static const char *const sources[] = {"global stale\nx = {1, f(3 'open\nstale = 1",
                                          "function stale = f\nfor k = 1:end, end"};
    const Outcome outcome = run_leaving(EVERY_EXIT[turn / 2 % 3], "command", sources[turn % 2],
                                        turn % 4 < 2 ? "classic" : "matlab");
    turn++;
    ASSERT_EQ(outcome.errors.size(), 1u);
}

std::string translate(StandInHost &host, std::string_view mode, std::string_view source,
                      std::span<const HostValue> options) {
    SwitchCounter = 0;
    try {
        return host.translate(mode, source, options).value_or("null");
    } catch (const HostError &error) {
        return std::string("error: ") + error.what();
    }
}

std::string translate_in(StandInHost &host, const char *language, std::string_view mode,
                         std::string_view source) {
    ValueStore &values = host.values();
    const HostValue option[] = {values.equation(values.name("Language"), values.string(language))};
    return translate(host, mode, source, option);
}

long error_column(const std::string &source, const char *language) {
    StandInHost host;
    translate_in(host, language, "command", source);
    return LastError.message ? LastError.offset + 1 : 0;
}

void expect_translation(std::string_view mode, const std::string &source,
                        const std::string &expected) {
    StandInHost host;
    host.translate_name("pi", "my_pi");
    host.translate_function("size", "ArrayTools:-Size(A)");
    host.translate_function("inv", "LinearAlgebra:-Inv(A)");
    host.translate_function("sin", "map(sin, A)");
    EXPECT_EQ(translate(host, mode, source), expected);
    leave_broken_run();
    EXPECT_EQ(translate(host, mode, source), expected) << "after an error";
}

void expect_file_translation(const std::string &source, const std::string &expected) {
    const SourceFiles files;
    files.write("main.m", source);
    expect_translation("file", files.path("main.m"), expected);
}

std::string as_file_text(const std::string &text) {
    const std::string without_arrays =
        std::regex_replace(text, std::regex("ArrayTools:-(?!Size\\(qxrp_A)"), "");
    const std::string bare = std::regex_replace(without_arrays, std::regex("LinearAlgebra:-"), "");
    const bool is_script = text.find(" := proc( ") == std::string::npos;
    const std::string arrays = without_arrays != text ? "with(ArrayTools):\n" : "";
    const std::string algebra = bare != without_arrays ? "with(LinearAlgebra):\n" : "";
    return is_script ? arrays + algebra + bare : bare;
}

void expect_translations(const std::vector<Row> &rows, const Row &before, const char *end) {
    for (const Row &row : rows) {
        SCOPED_TRACE(row.source);
        const std::string expected = before.expected + row.expected + end;
        expect_translation("command", before.source + row.source, expected);
        expect_file_translation(before.source + row.source, as_file_text(expected));
    }
}

}  // namespace mtranslate
