/* Which lines of a translation come from which part of its sources. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/messages/run_files.h"

namespace mtranslate {

/* Lines of the translation, all from 1, and the part of a source that they come from; columns in
 * characters, the last one not included. Where nothing stands in the source it is empty. */
struct MappedLines {
    std::int32_t kind = MTRANSLATE_LINES_STATEMENT; /* MTRANSLATE_LINES_... */
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

/* Of a run that is done. */
LineMap line_map_of(const mTranslateProgramResult &result, const RunFiles &files);

}  // namespace mtranslate
