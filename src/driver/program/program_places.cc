// From bytes to lines and columns.
#include "driver/program/program_places.h"

#include <string.h>

#include <algorithm>
#include <functional>

#include "diagnose/source.h"
#include "driver/program/program_texts.h"

namespace {

struct Walk {
    const char *text;
    uint32_t length;
    bool has_returns;  // a \r, which few texts have
    uint32_t at;
    uint32_t line;
    uint32_t start;  // of the line
    uint32_t units;  // of UTF-16 on the line, in front of at
    uint32_t characters;
};

Walk walk_of(const PlacedText *in) {
    return {in->text, in->length, memchr(in->text, '\r', in->length) != nullptr, 0, 1, 0, 0, 0};
}

bool is_continuation(char byte) { return (byte & 0xC0) == 0x80; }

// Bytes of a character by its first one.
uint32_t promised_length(unsigned char byte) {
    if (byte < 0xC2 || byte > 0xF4) return 1;
    if (byte < 0xE0) return 2;
    return byte < 0xF0 ? 3 : 4;
}

// Of three bytes or four: no overlong form, no surrogate, none beyond U+10FFFF.
bool is_in_range(const char *first) {
    unsigned char second = static_cast<unsigned char>(first[1]);
    switch (static_cast<unsigned char>(*first)) {
        case 0xE0: return second >= 0xA0;
        case 0xED: return second < 0xA0;
        case 0xF0: return second >= 0x90;
        case 0xF4: return second < 0x90;
        default: return true;
    }
}

uint32_t character_length(const Walk *walk) {
    const char *first = walk->text + walk->at;
    uint32_t length = promised_length(static_cast<unsigned char>(*first));
    if (length > walk->length - walk->at) return 1;
    bool is_whole = std::all_of(first + 1, first + length, is_continuation);
    return is_whole && (length < 3 || is_in_range(first)) ? length : 1;
}

void begin_line(Walk *walk, const char *at) {
    walk->at = walk->start = static_cast<uint32_t>(at - walk->text);
    walk->line++;
    walk->units = walk->characters = 0;
}

// To the start of the line that is wanted, in a text without \r.
void skip_feeds(Walk *walk, const char *wanted) {
    const char *start = nullptr;
    uint32_t lines = 0;
    for (const char *at = walk->text + walk->at;
         (at = static_cast<const char *>(memchr(at, '\n', static_cast<size_t>(wanted - at))));) {
        start = ++at;
        lines++;
    }
    if (lines == 0) return;
    walk->line += lines - 1;
    begin_line(walk, start);
}

// To the start of the line that the offset is in. Answers the offset, or the start of the line end
// that it is inside of.
uint32_t skip_lines(Walk *walk, uint32_t offset) {
    const char *wanted = walk->text + offset;
    if (!walk->has_returns) {
        skip_feeds(walk, wanted);
        return offset;
    }
    for (;;) {
        const char *end = line_end(walk->text + walk->at, wanted);
        if (end == wanted) return offset;
        bool is_pair = *end == '\r' && end + 1 < walk->text + walk->length && end[1] == '\n';
        const char *next = end + (is_pair ? 2 : 1);
        if (next > wanted) return offset - 1;
        begin_line(walk, next);
    }
}

// The bytes of a word that are no ASCII have their highest bits set.
bool is_ascii_word(const char *at) {
    uint64_t word;
    memcpy(&word, at, sizeof word);
    return !(word & 0x8080808080808080u);
}

void skip_ascii(Walk *walk, uint32_t offset) {
    uint32_t from = walk->at;
    while (walk->at + sizeof(uint64_t) <= offset && is_ascii_word(walk->text + walk->at))
        walk->at += sizeof(uint64_t);
    while (walk->at < offset && static_cast<unsigned char>(walk->text[walk->at]) < 0x80) walk->at++;
    walk->units += walk->at - from;
    walk->characters += walk->at - from;
}

// On the same line, to the character that has the byte.
void skip_characters(Walk *walk, uint32_t offset) {
    for (skip_ascii(walk, offset); walk->at < offset; skip_ascii(walk, offset)) {
        uint32_t length = character_length(walk);
        if (walk->at + length > offset) return;
        walk->at += length;
        walk->units += length == 4 ? 2 : 1;
        walk->characters++;
    }
}

void find(Walk *walk, const AskedPlace *asked) {
    uint32_t offset = std::min(asked->offset, walk->length);
    skip_characters(walk, skip_lines(walk, offset));
    mTranslateProgramRange *range = asked->range;
    (asked->is_end ? range->end_line : range->line) = walk->line;
    (asked->is_end ? range->end_column : range->column) = offset - walk->start + 1;
    (asked->is_end ? range->end_column_utf16 : range->column_utf16) = walk->units + 1;
    (asked->is_end ? range->end_column_characters : range->column_characters) =
        walk->characters + 1;
}

const char *keep_name(ProgramPlaces *places, ResultMemory *memory, const char *name) {
    if (name && name != places->last_name) {
        places->last_copy = keep_result(memory, shortest_path(name).c_str());
        places->last_name = name;
    }
    return name ? places->last_copy : nullptr;
}

}  // namespace

mTranslateProgramRange *ask_range(ProgramPlaces *places, ResultMemory *memory, const PlacedText *in,
                                  uint32_t begin, uint32_t end) {
    auto *range = new_result<mTranslateProgramRange>(memory);
    range->file = keep_name(places, memory, in->name);
    range->begin = begin;
    range->end = end;
    places->asked.push_back({*in, begin, false, range});
    places->asked.push_back({*in, end, true, range});
    return range;
}

void find_places(ProgramPlaces *places) {
    std::sort(places->asked.begin(), places->asked.end(),
              [](const AskedPlace &a, const AskedPlace &b) {
                  return a.in.text != b.in.text ? std::less<>()(a.in.text, b.in.text)
                                                : a.offset < b.offset;
              });
    Walk walk = {};
    for (const AskedPlace &asked : places->asked) {
        if (walk.text != asked.in.text) walk = walk_of(&asked.in);
        find(&walk, &asked);
    }
    places->asked.clear();
}
