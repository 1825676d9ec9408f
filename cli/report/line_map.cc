/* From origins, which the library tells, to places. */
#include "cli/report/line_map.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "cli/report/places.h"

namespace mtranslate {

namespace {

/* The bytes whose places are asked for, by sources and in their order. */
using Offsets = std::map<::Source *, std::map<std::uint32_t, Place>>;

void find_places(Offsets &offsets) {
    for (auto &[source, of_source] : offsets) {
        Places places(*source);
        for (auto &[offset, place] : of_source) place = places.at(offset);
    }
}

}  // namespace

void LineNotes::note(const Origin *origin, std::size_t first, std::size_t count) {
    const auto [at, is_new] = newest_.try_emplace(origin, lines_.size());
    if (!is_new && lines_[at->second].last + 1 >= first) {
        lines_[at->second].last = first + count - 1;
        return;
    }
    at->second = lines_.size();
    lines_.push_back({origin, first, first + count - 1});
}

LineMap LineNotes::map() const {
    Offsets offsets;
    for (const NotedLines &noted : lines_) {
        auto &of_source = offsets[const_cast<::Source *>(noted.origin->source)];
        of_source[noted.origin->begin];
        of_source[noted.origin->end];
    }
    find_places(offsets);
    LineMap map;
    map.reserve(lines_.size());
    for (const auto &[origin, first, last] : lines_) {
        const auto &places = offsets[const_cast<::Source *>(origin->source)];
        const Place begin = places.at(origin->begin);
        const Place end = places.at(origin->end);
        const bool is_called = origin->source->caller != nullptr;
        map.push_back({origin->kind, is_called ? origin->source->name : "", begin.line,
                       begin.column, end.line, end.column, first, last});
    }
    std::ranges::stable_sort(map, {}, [](const MappedLines &lines) {
        return std::tie(lines.first, lines.file, lines.line, lines.column);
    });
    return map;
}

}  // namespace mtranslate
