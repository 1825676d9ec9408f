/* What the tests of whole translations share: source files on disk, runs that errors leave in every
 * way there is, and tables of sources with the host texts that they become. */
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/stand_in_host.h"
#include "tests/texts.h"

namespace mtranslate {

using Texts = std::vector<std::string>;

/* A table of cases/, without its comments: lines that begin with "# ". */
std::string table(const std::string &name);

struct Row {
    std::string source;
    std::string expected;
};

/* In tables \3[ab\] stands for ababab, and a backslash and n, r, f or t for a control character. */
std::string unescaped(std::string text);

/* The cells of a table: three blanks or more, or a line end, stand between them. */
Texts cells(const std::string &table);

/* Cells "source => expected". */
std::vector<Row> short_rows(const std::string &table);

/* Rows of several lines, the source left and the expected text right of a bar, an empty line
 * between rows. Where the source is shorter, its lines stand in front of no text. */
std::vector<Row> side_by_side(const std::string &table);

/* Source files in a directory of their own, which goes with this object. */
class SourceFiles {
public:
    /* Cells "name => text", the names without ".m". */
    explicit SourceFiles(const std::string &table = "");
    ~SourceFiles();
    SourceFiles(const SourceFiles &) = delete;
    SourceFiles &operator=(const SourceFiles &) = delete;

    std::string path(const std::string &name) const { return directory_ + "/" + name; }
    void write(const std::string &name, const std::string &text) const;

private:
    std::string directory_;
};

constexpr ErrorExit EVERY_EXIT[] = {ErrorExit::Throw, ErrorExit::Return, ErrorExit::Jump};

struct Outcome {
    std::optional<std::string> result; /* no value for null */
    Texts errors;
};

/* A run on a host that answers nothing, its errors leaving by exit. */
Outcome run_leaving(ErrorExit exit, const char *mode, const std::string &source,
                    const char *language = "classic");

/* A run that ends in the middle of everything: brackets and a string open, a global recorded, or
 * a procedure half written. Each call leaves in another way, some in matlab. */
void leave_broken_run();

/* The translation, or the error that takes its place; switch variables start with 0. */
std::string translate(StandInHost &host, std::string_view mode, std::string_view source,
                      std::span<const HostValue> options = {});

/* The same in one of the languages. */
std::string translate_in(StandInHost &host, const char *language, std::string_view mode,
                         std::string_view source);

/* The column of the error that ends a command, from 1; 0 where there is none. */
long error_column(const std::string &source, const char *language = "classic");

/* Checks a translation, and that it stays the same after a run that went wrong. */
void expect_translation(std::string_view mode, const std::string &source,
                        const std::string &expected);

void expect_file_translation(const std::string &source, const std::string &expected);

/* What a command's translation is for the same text in a file: members of packages without their
 * prefixes, which a script makes up for by loading the packages. */
std::string as_file_text(const std::string &text);

/* Checks every row, its text as a command gives it, as a command and as a file. before stands in
 * front of each source and its text, end after each text. */
void expect_translations(const std::vector<Row> &rows, const Row &before = {"", ""},
                         const char *end = "");

}  // namespace mtranslate
