/* The tool's arguments. */
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/exit_code.h"

namespace mtranslate {

struct Options {
    /* Exactly one of the two is set. The file "-" is standard input. */
    std::optional<std::string> command;
    std::optional<std::string> file;
    /* Where called functions are looked for, first tried first; empty: the file's own directory. */
    std::vector<std::string> directories;
    /* The file for the translation; none, or "-": standard output. */
    std::optional<std::string> output;
    bool without_translator = false;
    /* The language of the sources: matlab, octave or classic. */
    std::string language = "matlab";
    /* Whether a source with an error or a gap gets no translation at all. */
    bool is_strict = false;
    /* Whether the tree of the source is written instead of its translation. */
    bool dumps_tree = false;
};

/* Reads the arguments. Where nothing is to be translated (help, version, wrong usage) the text for
 * the user has been written and the answer is the exit code. */
std::variant<Options, ExitCode> read_options(int argc, const char *const *argv);

}  // namespace mtranslate
