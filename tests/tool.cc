// The command-line tool, run by a shell.
#include "tests/tool.h"

#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace mtranslate {

void write(const fs::path &path, const std::string &text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string read(const fs::path &path) { return read_file(path); }

Tool::Tool() {
    for (const int ending : {SIGHUP, SIGINT}) std::signal(ending, SIG_DFL);  // as at a terminal
    std::string pattern = fs::temp_directory_path() / "tool-test-XXXXXX";
    directory = mkdtemp(pattern.data());
}

Tool::~Tool() { fs::remove_all(directory); }

int Tool::run(const std::string &command) const {
    const std::string functions = "tool='" MTRANSLATE_TOOL_FILE "'\nshim='" MTRANSLATE_TROUBLE_FILE
                                  "'\nmtranslate() { \"$tool\" " +
                                  options +
                                  " \"$@\"; }\n"
                                  // counting would leave half of its files
                                  "ulimit() { command ulimit \"$@\"; export GCOV_PREFIX=/dev/null; "
                                  "}\n"
                                  "trouble() { call=$1; shift; TROUBLE=$call LD_PRELOAD=$shim "
                                  "ASAN_OPTIONS=verify_asan_link_order=0 mtranslate \"$@\"; }\n";
    write(directory / "run", functions + setup + command + "\n");
    const std::string shell = "cd '" + directory.string() + "' && TMPDIR=. sh ./run";
    return WEXITSTATUS(std::system((shell + " > out 2> err < /dev/null").c_str()));
}

/* A build that counts complains at the end of a process that may open no file. */
static std::string without_complaints_of_counting(const std::string &errors) {
    std::istringstream lines(errors);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("profiling:") && !line.starts_with("libgcov profiling error"))
            kept += line + (lines.eof() ? "" : "\n");
    return kept;
}

void Tool::check_all(std::span<const ToolCall> rows) const {
    for (const ToolCall &row : rows) {
        SCOPED_TRACE(row.command);
        EXPECT_EQ(run(row.command), row.exit_code);
        EXPECT_EQ(read(directory / "out"), row.output);
        EXPECT_EQ(without_complaints_of_counting(read(directory / "err")), row.errors);
    }
}

testing::AssertionResult Tool::is_valid(const std::string &file, const std::string &schema) const {
    const int code = run("python3 -W ignore -m jsonschema -i " + file +
                         " '" MTRANSLATE_SOURCE_DIR "/" + schema + "'");
    if (code == 0) return testing::AssertionSuccess();
    return testing::AssertionFailure() << read(directory / "err");
}

}  // namespace mtranslate
