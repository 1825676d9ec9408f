// Sources, and places in them as lines and columns.
#include "diagnose/source.h"

#include "support/allocation.h"

namespace {

// Behind the line end at text[at], which may be \n, \r\n or \r.
uint32_t behind_line_end(const Source *source, uint32_t at) {
    return source->text[at] == '\r' && source->text[at + 1] == '\n' ? at + 2 : at + 1;
}

uint32_t find_line_end(const Source *source, uint32_t at) {
    while (at < source->length && source->text[at] != '\n' && source->text[at] != '\r') at++;
    return at;
}

uint32_t count_lines(const Source *source) {
    uint32_t count = 1;
    for (uint32_t at = find_line_end(source, 0); at < source->length; count++)
        at = find_line_end(source, behind_line_end(source, at));
    return count;
}

void find_line_starts(Source *source) {
    source->line_count = count_lines(source);
    source->line_starts = static_cast<uint32_t *>(Alloc(source->line_count * sizeof(uint32_t)));
    uint32_t start = 0;
    for (uint32_t i = 0; i < source->line_count; i++) {
        source->line_starts[i] = start;
        start = find_line_end(source, start);
        if (start < source->length) start = behind_line_end(source, start);
    }
}

// The last line that starts at offset or before, from 0.
uint32_t line_at(const Source *source, uint32_t offset) {
    uint32_t first = 0;
    uint32_t behind = source->line_count;
    while (behind - first > 1) {
        uint32_t middle = first + (behind - first) / 2;
        if (source->line_starts[middle] <= offset) {
            first = middle;
        } else {
            behind = middle;
        }
    }
    return first;
}

}  // namespace

Source *new_source(const char *name, const char *text, uint32_t length) {
    Source *source = AllocRecord<Source>();
    *source = {name, text, length, nullptr, 0, 0, nullptr, 0};
    return source;
}

Position position_of(Source *source, uint32_t offset) {
    if (!source->line_starts) find_line_starts(source);
    if (offset > source->length) offset = source->length;
    uint32_t line = line_at(source, offset);
    return {line + 1, offset - source->line_starts[line] + 1};
}

const char *line_text(Source *source, uint32_t line, uint32_t *length) {
    if (!source->line_starts) find_line_starts(source);
    uint32_t start = source->line_starts[line - 1];
    *length = find_line_end(source, start) - start;
    return source->text + start;
}
