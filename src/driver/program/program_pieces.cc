// Which lines of the host text come from which part of a source.
#include <algorithm>
#include <tuple>

#include "driver/program/program_details.h"
#include "lower/lines/origins.h"

namespace {

using Piece = mTranslateProgramPiece;

const Piece *new_piece(ProgramRun *run, const NotedLines &noted) {
    const Origin *origin = noted.origin;
    auto *piece = new_result<Piece>(memory_of(run));
    piece->kind = origin->kind;
    piece->first_line = noted.first;
    piece->last_line = noted.last;
    PlacedText in = text_of_source(origin->source);
    piece->place = ask_range(&run->places, memory_of(run), &in, origin->begin, origin->end);
    return piece;
}

}  // namespace

PlacedText text_of_source(const Source *source) {
    return {source->name, source->text, source->length};
}

void note_program_lines(ProgramRun *run, const Origin *origin, uint32_t first, uint32_t count) {
    const auto [at, is_new] = run->newest_lines.try_emplace(origin, run->lines.size());
    if (!is_new && run->lines[at->second].last + 1 >= first) {
        run->lines[at->second].last = first + count - 1;
        return;
    }
    at->second = run->lines.size();
    run->lines.push_back({origin, first, first + count - 1});
}

void finish_pieces(ProgramRun *run) {
    const auto order = [](const NotedLines &noted) {
        return std::tuple(noted.first, noted.origin->source->caller != nullptr,
                          noted.origin->begin);
    };
    std::stable_sort(run->lines.begin(), run->lines.end(),
                     [=](const NotedLines &a, const NotedLines &b) { return order(a) < order(b); });
    std::vector<const Piece *> pieces;
    for (const NotedLines &noted : run->lines) pieces.push_back(new_piece(run, noted));
    result_of(run)->pieces = list_result(memory_of(run), pieces);
    result_of(run)->piece_count = pieces.size();
}
