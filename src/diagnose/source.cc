// Sources, and places in them as lines and columns.
#include "diagnose/source.h"

#include <string.h>

#include <algorithm>

#include "support/allocation.h"

namespace {

// After the line end at text[at], which may be \n, \r\n or \r.
uint32_t after_line_end(const Source *source, uint32_t at) {
    return source->text[at] == '\r' && source->text[at + 1] == '\n' ? at + 2 : at + 1;
}

uint32_t find_line_end(const Source *source, uint32_t at) {
    const char *end = line_end(source->text + at, source->text + source->length);
    return static_cast<uint32_t>(end - source->text);
}

// The same in a text without \r, as most are.
uint32_t find_line_feed(const Source *source, uint32_t at) {
    const char *start = source->text + at;
    const void *end = memchr(start, '\n', source->length - at);
    return end ? at + static_cast<uint32_t>(static_cast<const char *>(end) - start)
               : source->length;
}

void append_start(Source *source, uint32_t *capacity, uint32_t start) {
    if (source->line_count == *capacity) {
        *capacity *= 2;
        source->line_starts =
            static_cast<uint32_t *>(Realloc(source->line_starts, *capacity * sizeof(uint32_t)));
    }
    source->line_starts[source->line_count++] = start;
}

void find_line_starts(Source *source) {
    bool has_returns = memchr(source->text, '\r', source->length);
    auto *find = has_returns ? find_line_end : find_line_feed;
    uint32_t capacity = 64;
    source->line_starts = static_cast<uint32_t *>(Alloc(capacity * sizeof(uint32_t)));
    append_start(source, &capacity, 0);
    for (uint32_t at = find(source, 0); at < source->length;) {
        at = after_line_end(source, at);
        append_start(source, &capacity, at);
        at = find(source, at);
    }
}

// The last line that starts at offset or before, from 0.
uint32_t line_at(const Source *source, uint32_t offset) {
    uint32_t first = 0;
    uint32_t after = source->line_count;
    while (after - first > 1) {
        uint32_t middle = first + (after - first) / 2;
        if (source->line_starts[middle] <= offset) {
            first = middle;
        } else {
            after = middle;
        }
    }
    return first;
}

// Where the text of a line, from 1, ends. Long lines are not walked: they may have many messages.
uint32_t end_of_line(const Source *source, uint32_t line) {
    if (line == source->line_count) return source->length;
    uint32_t next = source->line_starts[line];
    bool is_pair = next > 1 && after_line_end(source, next - 2) == next;
    return next - (is_pair ? 2 : 1);
}

}  // namespace

// In pieces: where every line ends in \r, no \n is looked for up to the end of the text.
const char *line_end(const char *at, const char *end) {
    constexpr size_t PIECE = 128;
    while (at < end) {
        size_t length = std::min(PIECE, static_cast<size_t>(end - at));
        const void *feed = memchr(at, '\n', length);
        if (feed) length = static_cast<size_t>(static_cast<const char *>(feed) - at);
        const void *carriage = memchr(at, '\r', length);
        if (carriage || feed) return static_cast<const char *>(carriage ? carriage : feed);
        at += length;
    }
    return at;
}

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
    *length = end_of_line(source, line) - start;
    return source->text + start;
}
