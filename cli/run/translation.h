/* One run of the library for the tool. */
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cli/files/source.h"
#include "cli/messages/diagnostic.h"
#include "cli/report/facts/file_result.h"
#include "cli/report/facts/line_map.h"
#include "cli/report/facts/statistics.h"
#include "cli/request/options.h"
#include "cli/rules/rules_host.h"
#include "cli/run/known_results.h"
#include "cli/support/exit_code.h"

namespace mtranslate {

class FileIndex;

struct Translation {
    ExitCode code;
    /* The translation; none where the run was left by an error. text_owner keeps it. */
    std::optional<std::string_view> text;
    std::shared_ptr<const void> text_owner{};
    /* What went wrong, and what else is worth a look. */
    Diagnostics diagnostics;
    std::size_t ignored = 0; /* messages that the user left out */
    /* Every file that the translation depends on, its source first. */
    FilesRead files_read;
    /* How often each rule has answered, by its title (rules.h). */
    std::map<std::string, std::size_t> rules_used{};
    /* The calls that no rule has answered, by the functions' names. */
    std::map<std::string, UnansweredCalls> unanswered{};
    bool calls_library = false; /* which stands apart (Options::is_library_apart) */
    FileFacts facts{};          /* where the options ask for statistics */
    LineMap map{};              /* where they ask for it */
};

/* Translates the source, as the options say, in a host that answers by their rules. With an index
 * no called function is looked for, and scripts are found in the index; known: null for none, gets
 * what the run finds out. Throws FileError where a called file can be no source, std::bad_alloc
 * where the memory is exhausted. */
Translation translate(const Source &source, const Options &options,
                      const FileIndex *index = nullptr, KnownResults *known = nullptr);

/* What the translation tells, which it no longer has then but for its text, the files and the code;
 * where its text goes is left open, unless the report shows it. */
FileResult take_result(Translation &translation, bool report_shows_text);

/* All functions that the translator brings along, in the host's language: the same for all sources.
 * Throws std::bad_alloc. */
std::string library_text();

}  // namespace mtranslate
