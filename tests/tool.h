/* The command-line tool, run as a user runs it: by a shell, in a directory of its own. */
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/texts.h"

namespace mtranslate {

namespace fs = std::filesystem;

inline void write(const fs::path &path, const std::string &text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string read(const fs::path &path) { return read_file(path); }

struct ToolCall {
    std::string command; /* "mtranslate" in it is the tool, "trouble CALL" the tool in trouble */
    int exit_code;
    std::string output;
    std::string errors;
};

class Tool : public testing::Test {
protected:
    Tool() {
        for (const int ending : {SIGHUP, SIGINT}) std::signal(ending, SIG_DFL);  // as at a terminal
        std::string pattern = fs::temp_directory_path() / "tool-test-XXXXXX";
        directory = mkdtemp(pattern.data());
    }
    ~Tool() override { fs::remove_all(directory); }

    int run(const std::string &command) const {
        const std::string functions =
            "tool='" MTRANSLATE_TOOL_FILE "'\nshim='" MTRANSLATE_TROUBLE_FILE
            "'\nmtranslate() { \"$tool\" " +
            options +
            " \"$@\"; }\n"
            "trouble() { call=$1; shift; TROUBLE=$call LD_PRELOAD=$shim "
            "ASAN_OPTIONS=verify_asan_link_order=0 mtranslate \"$@\"; }\n";
        write(directory / "run", functions + setup + command + "\n");
        const std::string shell = "cd '" + directory.string() + "' && TMPDIR=. sh ./run";
        return WEXITSTATUS(std::system((shell + " > out 2> err < /dev/null").c_str()));
    }

    template <std::size_t N>
    void check(const ToolCall (&rows)[N]) const {
        for (const ToolCall &row : rows) {
            SCOPED_TRACE(row.command);
            EXPECT_EQ(run(row.command), row.exit_code);
            EXPECT_EQ(read(directory / "out"), row.output);
            EXPECT_EQ(read(directory / "err"), row.errors);
        }
    }

    /* Whether the JSON text in the file is what the schema describes; says what is not. */
    testing::AssertionResult is_valid(const std::string &file, const std::string &schema) const {
        const int code = run("python3 -W ignore -m jsonschema -i " + file +
                             " '" MTRANSLATE_SOURCE_DIR "/" + schema + "'");
        if (code == 0) return testing::AssertionSuccess();
        return testing::AssertionFailure() << read(directory / "err");
    }

    fs::path directory;
    std::string options; /* before those of a row */
    std::string setup;   /* commands before that of a row */
};

class ClassicTool : public Tool {
protected:
    ClassicTool() { options = "--language classic"; }
};

}  // namespace mtranslate
