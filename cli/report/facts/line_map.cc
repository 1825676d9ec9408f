/* From the library's pieces to places in the user's files. */
#include "cli/report/facts/line_map.h"

#include <algorithm>
#include <tuple>

namespace mtranslate {

LineMap line_map_of(const mTranslateProgramResult &result, const RunFiles &files) {
    LineMap map;
    map.reserve(result.piece_count);
    for (std::size_t i = 0; i < result.piece_count; ++i) {
        const mTranslateProgramPiece &piece = *result.pieces[i];
        const mTranslateProgramRange &place = *piece.place;
        map.push_back({piece.kind, files.is_own(place.file) ? "" : files.path(place.file),
                       place.line, files.column(place), place.end_line, files.end_column(place),
                       piece.first_line, piece.last_line});
    }
    std::stable_sort(map.begin(), map.end(), [](const MappedLines &a, const MappedLines &b) {
        return std::tie(a.first, a.file, a.line, a.column) <
               std::tie(b.first, b.file, b.line, b.column);
    });
    return map;
}

}  // namespace mtranslate
