/* What the library says about the sources of a run, in the form of a compiler. */
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "diagnose/messages.h"

namespace mtranslate {

/* A message of the library, with all that is shown of it. */
struct SourceMessage {
    const MessageRow *row;
    std::string text;
    std::size_t line;      /* from 1 */
    std::size_t column;    /* in bytes, from 1 */
    std::size_t offset;    /* in the file, in bytes from 0 */
    std::size_t length;    /* of the marked range, in bytes; may be 0, or reach over line ends */
    std::string line_text; /* without its line end */
};

/* The messages about one file. */
struct FileMessages {
    std::string file;        /* as it is shown; printable */
    std::string called_from; /* "FILE:LINE" of the call, or empty */
    std::vector<SourceMessage> messages;
    /* Functions that were found nowhere, in the order of their first calls. */
    std::vector<std::string> unknown_functions;
    std::set<std::string> unknown_names; /* the same */
};

/* How many there are of each severity. */
using MessageCounts = std::array<std::size_t, 4>;

/* The messages of a run, collected while it is going on. */
class MessageCollection {
public:
    /* Takes a message of the library; shown_file is what its file is called. */
    void add(const Message &message, const std::string &shown_file);
    /* Whether something is left untranslated. */
    bool has_failure() const { return counts_[SEVERITY_ERROR] + counts_[SEVERITY_GAP] > 0; }
    const MessageCounts &counts() const { return counts_; }
    /* All lines for the user: file by file in the order of the run, in each by place. Functions
     * found nowhere are the host's business in the end: they come last, in one line a file. */
    std::string text() const;

private:
    FileMessages &messages_of(const Message &message, const std::string &shown_file);

    std::vector<FileMessages> files_;
    std::map<std::string, std::size_t> places_; /* of files in files_ */
    MessageCounts counts_{};
};

/* The column of a byte (both from 1) of a line, counted in characters. */
std::size_t column_in_characters(std::string_view line, std::size_t column);

}  // namespace mtranslate
