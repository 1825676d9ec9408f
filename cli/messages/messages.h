/* The library's messages of a run, made to the tool's diagnostics while it is going on. */
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/files/source.h"
#include "cli/messages/diagnostic.h"
#include "cli/messages/message_policy.h"
#include "cli/support/library.h"

namespace mtranslate {

/* Columns in characters, counted on from the place before where that is on the same line: a line
 * may be the whole file. */
class ColumnCounter {
public:
    /* The column, from 1, of the byte after the text before it on the line. */
    std::size_t column(std::size_t line, std::string_view before);

private:
    std::size_t line_ = 0;
    std::size_t bytes_ = 0;
    std::size_t characters_ = 0;
};

class MessageCollection {
public:
    /* Of a run that is started with the source. Both live as long as this. */
    MessageCollection(const Source &source, const MessagePolicy &policy)
        : source_(source), policy_(policy) {}
    /* Takes a message of the library, unless the policy or a comment leaves it out. */
    void add(const Message &message);
    /* How many have been left out. */
    std::size_t ignored() const { return ignored_; }
    /* All so far: those of the run's source first, then of the files that it calls, each by place.
     */
    Diagnostics diagnostics() const;

private:
    /* Those about one file. */
    struct FileDiagnostics {
        bool is_called; /* by another */
        bool has_ignore_comments;
        Diagnostics diagnostics;
        ColumnCounter columns;
    };

    std::string shown_name(const char *file) const;
    FileDiagnostics &file_of(const Message &message);
    Diagnostic diagnostic_of(const Message &message, MessageSeverity severity,
                             ColumnCounter &columns) const;

    const Source &source_;
    const MessagePolicy &policy_;
    std::vector<FileDiagnostics> files_;
    std::map<const ::Source *, std::size_t> places_; /* in files_ */
    std::size_t ignored_ = 0;
};

}  // namespace mtranslate
