/* What became of one file of a batch, as its worker tells it. */
#pragma once

#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "cli/messages.h"

namespace mtranslate {

struct FileResult {
    ExitCode code = ExitCode::Done;
    /* Lines for the user: messages, and what went wrong with files. */
    std::string messages;
    /* How often each kind of message was given: errors, gaps, warnings, notes. */
    MessageCounts counts{};
    /* What would change in the output, as a unified diff. */
    std::string difference;
    /* Files that the translation depends on, the source first. */
    std::vector<std::string> files_read;
    bool is_written = false; /* the output is new or has been replaced */
};

/* One text that another process can read back. */
std::string to_text(const FileResult &result);
FileResult result_from_text(const std::string &text);

}  // namespace mtranslate
