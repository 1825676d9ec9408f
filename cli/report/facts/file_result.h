/* What became of one file of a batch, as its worker tells it. */
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "cli/messages/diagnostic.h"
#include "cli/report/facts/statistics.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

struct FileResult {
    ExitCode code = ExitCode::Done;
    /* What went wrong, with the source or with files, and what else is worth a look. */
    Diagnostics diagnostics;
    std::size_t ignored = 0; /* messages that the user left out */
    /* What would change in the output, as a unified diff. */
    std::string difference;
    /* Files that the translation depends on, the source first. */
    std::vector<std::string> files_read;
    bool has_output = false; /* the translation is in the output */
    bool is_written = false; /* which is new or has been replaced */
    bool calls_library = false;
    /* How often each rule has answered, by its title (rules.h). */
    std::map<std::string, std::size_t> rules_used;
    /* For a report. */
    FileFacts facts;
    std::string details; /* packed (details.h) */
};

/* One text that another process can read back. */
std::string to_text(const FileResult &result);
FileResult result_from_text(const std::string &text);

}  // namespace mtranslate
