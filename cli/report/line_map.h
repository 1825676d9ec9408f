/* Which lines of a translation come from which part of its sources. */
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/support/library.h"

namespace mtranslate {

/* Lines of the translation, all from 1, and the part of a source that they come from; columns in
 * characters, the last one not included. Where nothing stands in the source it is empty. */
struct MappedLines {
    LineKind kind = STATEMENT_LINES;
    std::string file; /* that the run has called; empty for its own source */
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t end_line = 0;
    std::size_t end_column = 0;
    std::size_t first = 0;
    std::size_t last = 0;
};

/* By the first lines, then by the places. */
using LineMap = std::vector<MappedLines>;

/* Where the lines of the run that is going on come from. */
class LineNotes {
public:
    /* As the library tells it. */
    void note(const Origin *origin, std::size_t first, std::size_t count);
    /* When all lines are written, and the run has not ended. */
    LineMap map() const;

private:
    /* An origin with its lines. Its record lives until the run ends. */
    struct NotedLines {
        const Origin *origin;
        std::size_t first;
        std::size_t last;
    };

    std::vector<NotedLines> lines_;
    std::unordered_map<const Origin *, std::size_t> newest_; /* of the lines of an origin */
};

}  // namespace mtranslate
