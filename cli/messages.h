/* What the library says about the sources of a run, in the form of a compiler. */
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/source.h"
#include "diagnose/messages.h"

namespace mtranslate {

/* Columns in characters, counted on from the place before where that is on the same line: a line
 * may be the whole file. */
class ColumnCounter {
public:
    /* The column, from 1, of the byte behind the text before it on the line. */
    std::size_t column(std::size_t line, std::string_view before);

private:
    std::size_t line_ = 0;
    std::size_t bytes_ = 0;
    std::size_t characters_ = 0;
};

/* A message as it is shown. */
struct ShownMessage {
    std::size_t offset; /* of its place in the file, in bytes */
    std::string text;   /* all its lines */
};

/* The messages about one file. */
struct FileMessages {
    std::string file;        /* as it is shown; printable */
    std::string called_from; /* "FILE:LINE" of the call; empty for the source of the run */
    std::vector<ShownMessage> messages;
    /* Functions that were found nowhere, in the order of their first calls, each once a run. */
    std::vector<std::string> unknown_functions;
    ColumnCounter columns;
};

/* How many there are of each severity. */
using MessageCounts = std::array<std::size_t, 4>;

/* The messages of a run, collected while it is going on. */
class MessageCollection {
public:
    /* Of a run that is started with the source, which lives as long as this. */
    explicit MessageCollection(const Source &source);
    /* Takes a message of the library. */
    void add(const Message &message);
    /* Whether something is left untranslated. */
    bool has_failure() const { return counts_[SEVERITY_ERROR] + counts_[SEVERITY_GAP] > 0; }
    const MessageCounts &counts() const { return counts_; }
    /* All lines for the user: the source first, then the files that it calls, each by place.
     * Functions found nowhere are the host's business in the end: they come last, and together, as
     * they would drown the rest. */
    std::string text() const;

private:
    std::string shown_name(const char *file) const;
    FileMessages &messages_of(const Message &message);

    const Source &source_;
    std::vector<FileMessages> files_;
    std::map<std::string, std::size_t> places_; /* of files in files_ */
    MessageCounts counts_{};
};

}  // namespace mtranslate
