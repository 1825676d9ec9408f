/* From origins, which the library tells, to places. */
#include "cli/line_map.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>

#include "cli/places.h"

namespace mtranslate {

namespace {

/* An origin with its lines. Its record lives until the run ends. */
struct NotedLines {
    const Origin *origin;
    std::size_t first;
    std::size_t last;
};

/* What is noted in the run that is going on. */
struct Notes {
    std::vector<NotedLines> lines;
    std::unordered_map<const Origin *, std::size_t> newest; /* of the lines of an origin */
};
Notes notes;

void note(const Origin *origin, std::uint32_t first, std::uint32_t count) {
    const auto [at, is_new] = notes.newest.try_emplace(origin, notes.lines.size());
    if (!is_new && notes.lines[at->second].last + 1 >= first) {
        notes.lines[at->second].last = first + count - 1;
        return;
    }
    at->second = notes.lines.size();
    notes.lines.push_back({origin, first, first + count - 1});
}

/* The bytes whose places are asked for, by sources and in their order. */
using Offsets = std::map<::Source *, std::map<std::uint32_t, Place>>;

Offsets places_of(const std::vector<NotedLines> &lines) {
    Offsets offsets;
    for (const NotedLines &noted : lines) {
        auto &of_source = offsets[const_cast<::Source *>(noted.origin->source)];
        of_source[noted.origin->begin];
        of_source[noted.origin->end];
    }
    for (auto &[source, of_source] : offsets) {
        Places places(*source);
        for (auto &[offset, place] : of_source) place = places.at(offset);
    }
    return offsets;
}

}  // namespace

LineMapWatch::LineMapWatch() {
    notes = {};
    OnLines = note;
}

LineMapWatch::~LineMapWatch() {
    OnLines = nullptr;
    notes = {};
}

LineMap LineMapWatch::map() const {
    Offsets offsets = places_of(notes.lines);
    LineMap map;
    map.reserve(notes.lines.size());
    for (const auto &[origin, first, last] : notes.lines) {
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
