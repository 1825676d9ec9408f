/* Errors that the library raised, shown in the form of a compiler.
 *
 * The host's text says "on line N of FILE, MESSAGE" and shows an excerpt, where N may lie after
 * the place of the error, as it counts the line ends already read. The tool takes the record of the
 * error instead, and finds the place by the offset of the token that the parser refused. */
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "cli/files/source.h"
#include "cli/messages/diagnostic.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

/* An error as it was raised. */
struct RaisedError {
    /* Alone, without place and excerpt. */
    std::string message;
    /* The file being read; none in a command, or when no file was being read. */
    std::optional<std::string> file;
    /* Its line as the host's text counts, from 1; 0 for an error that has no place. */
    std::size_t line = 0;
    /* Offset in the source being read, in bytes from 0, of the token scanned last. */
    std::size_t offset = 0;
    /* Whether a file could not be read. */
    bool is_unread = false;
};

/* The error for the user with its place, and a note where its message alone does not say what to
 * do. source is the one that the run was started with. */
Diagnostics diagnostics_of(const RaisedError &error, const Source &source);

/* Whether the source is wrong, or the machine could not read or hold it. */
ExitCode exit_code_of(const RaisedError &error);

}  // namespace mtranslate
