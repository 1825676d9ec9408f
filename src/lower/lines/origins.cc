// Origins of lines.
#include "lower/lines/origins.h"

#include <assert.h>
#include <algorithm>

#include "support/allocation.h"

Origin *CurrentOrigin;
Origin *CallingOrigin;

namespace {

uint32_t LinesWritten;

bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == ',' || c == ';';
}

// The bytes without blanks, line ends and separators around them.
void trim(Origin *origin) {
    const char *text = origin->source->text;
    while (origin->begin < origin->end && is_space(text[origin->begin])) origin->begin++;
    while (origin->end > origin->begin && is_space(text[origin->end - 1])) origin->end--;
}

}  // namespace

void begin_origins() {
    CurrentOrigin = CallingOrigin = nullptr;
    LinesWritten = 0;
}

Origin *begin_origin(LineKind kind, uint32_t begin, uint32_t end) {
    assert(begin <= end && end <= CurrentFile->source->length);
    Origin *outer = CurrentOrigin;
    CurrentOrigin = nullptr;
    if (!Observing.lines || CurrentFile->is_library) return outer;
    CurrentOrigin = AllocRecord<Origin>();
    *CurrentOrigin = {kind, CurrentFile->source, begin, end, end, CallingOrigin};
    return outer;
}

Origin *begin_origin(LineKind kind, const Node *node) {
    return begin_origin(kind, node->offset, end_of(node));
}

void end_head(uint32_t after) {
    if (!CurrentOrigin) return;
    CurrentOrigin->kind = HEAD_LINES;
    CurrentOrigin->end = std::clamp(after, CurrentOrigin->begin, CurrentOrigin->end);
    trim(CurrentOrigin);
}

void begin_rest(uint32_t begin) {
    if (!CurrentOrigin) return;
    uint32_t limit = CurrentOrigin->limit;
    begin_origin(END_LINES, std::min(begin, limit), limit);
    trim(CurrentOrigin);
}

// A comment stands on the last one of its line's lines.
void tell_lines(const Origin *origin, uint32_t count) {
    assert(Observing.lines && count > 0);
    uint32_t first = LinesWritten + 1;
    LinesWritten += count;
    for (; origin; origin = origin->also) {
        bool is_comment = origin->kind == COMMENT_LINES;
        Observing.lines(Observing.context, origin, is_comment ? LinesWritten : first,
                        is_comment ? 1 : count);
    }
}
