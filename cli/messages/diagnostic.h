/* What the tool has to tell about a source, as data: one for each message of the library, for an
 * error that it raised, and for a file that could not be read or written. */
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "cli/messages/message_table.h"

namespace mtranslate {

/* Texts hold bytes as they are, control characters and all; who shows them makes them printable. */
struct Diagnostic {
    std::string
        code; /* "MT201"; empty for what is not the library's message about a matlab source */
    MessageSeverity severity = SEVERITY_ERROR;
    std::string text;                  /* one line */
    std::vector<std::string> operands; /* of the library's message: the names in its text, mostly */
    std::string file; /* as the user named it, or as it was found; empty: the tool itself */
    /* Lines from 1, 0 for no place; columns from 1, 0 for no column, in characters, those of
     * classic's errors in bytes. The range is what of it is on its first line; end_column is after
     * it. */
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t end_column = 0;
    std::size_t offset = 0; /* in the file, in bytes */
    std::size_t length = 0; /* of the whole range, in bytes */
    /* The place that calls the file, where it is not the run's own. */
    std::string calling_file;
    std::size_t calling_line = 0;
    /* The line and its marks, printable; empty without a place, and where is_listed. */
    std::string excerpt;
};

/* That the file could not be worked on. */
Diagnostic trouble_with(const std::string &file, const std::string &why);

using Diagnostics = std::vector<Diagnostic>;

/* How many there are of each severity. */
using SeverityCounts = std::array<std::size_t, 4>;

SeverityCounts count_severities(const Diagnostics &diagnostics);

/* Whether the text for people only lists it: functions found nowhere are the host's business in the
 * end, and would drown the rest. */
bool is_listed(const Diagnostic &diagnostic);

/* Whether something is left untranslated. */
inline bool has_failure(const SeverityCounts &counts) {
    return counts[SEVERITY_ERROR] + counts[SEVERITY_GAP] > 0;
}

/* Whether a function that is_listed, or would be, is one of classes alone. */
bool is_class_only(const Diagnostic &unknown);
/* Has it told so. */
void tell_class_only(Diagnostic &unknown);

}  // namespace mtranslate
