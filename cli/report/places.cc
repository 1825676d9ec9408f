#include "cli/report/places.h"

#include <string_view>

namespace mtranslate {

Place Places::at(std::uint32_t offset) {
    constexpr std::string_view MARK = "\xEF\xBB\xBF";
    const Position place = position_of(&source_, offset);
    std::string_view before(source_.text + offset - (place.column - 1), place.column - 1);
    if (place.line == 1 && before.starts_with(MARK)) before.remove_prefix(MARK.size());
    return {place.line, columns_.column(place.line, before)};
}

}  // namespace mtranslate
