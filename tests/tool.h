/* The command-line tool, run as a user runs it: by a shell, in a directory of its own. */
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <span>
#include <string>

#include "tests/texts.h"

namespace mtranslate {

namespace fs = std::filesystem;

/* Makes the folders of the file, too. */
void write(const fs::path &path, const std::string &text);

std::string read(const fs::path &path);

struct ToolCall {
    std::string command; /* "mtranslate" in it is the tool, "trouble CALL" the tool in trouble */
    int exit_code;
    std::string output;
    std::string errors;
};

class Tool : public testing::Test {
protected:
    Tool();
    ~Tool() override;

    /* The exit code of a command; what it prints is in the files out and err. */
    int run(const std::string &command) const;

    template <std::size_t N>
    void check(const ToolCall (&rows)[N]) const {
        check_all(rows);
    }
    void check_all(std::span<const ToolCall> rows) const;

    /* Whether the JSON text in the file is what the schema describes; says what is not. */
    testing::AssertionResult is_valid(const std::string &file, const std::string &schema) const;

    fs::path directory;
    std::string options; /* before those of a row */
    std::string setup;   /* commands before that of a row */
};

class ClassicTool : public Tool {
protected:
    ClassicTool() { options = "--language classic"; }
};

}  // namespace mtranslate
