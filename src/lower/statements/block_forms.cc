// Answers of the host with the lines of blocks in them.
#include "lower/statements/block_forms.h"

#include <assert.h>
#include <string.h>

#include <string_view>

#include "lower/lines/long_lines.h"
#include "lower/program/context.h"
#include "lower/statements/statements.h"
#include "support/allocation.h"

Lines lower_block_apart(const Node *block, int level) {
    assert(block->kind == NODE_BLOCK);
    Lines lines = {};
    Lines *outer = Lowering.lines;
    Lowering.lines = &lines;
    lower_block_at(block, level);
    Lowering.lines = outer;
    return lines;
}

const char *block_word(const BlockPlace *place) {
    return place->block->first_child ? place->word : "";
}

namespace {

// A word of a text, or the text's end.
struct FoundWord {
    const char *at;
    const BlockPlace *place;  // null at the end
};

FoundWord first_word(const char *text, const char *end, std::initializer_list<BlockPlace> places) {
    std::string_view line(text, static_cast<size_t>(end - text));
    FoundWord first = {end, nullptr};
    for (const BlockPlace &place : places) {
        size_t at = line.find(place.word);
        if (at != line.npos && text + at < first.at) first = {text + at, &place};
    }
    return first;
}

bool has_word_twice(const char *answer, std::initializer_list<BlockPlace> places) {
    for (const BlockPlace &place : places) {
        const char *at = strstr(answer, place.word);
        if (at && strstr(at + 1, place.word)) return true;
    }
    return false;
}

int level_of(const char *line) {
    return static_cast<int>((strspn(line, " ") + INDENT - 1) / INDENT);
}

// Puts a part of a line, if there is more to it than blanks.
void put_part(const char *start, const char *end, int level) {
    start += strspn(start, " ");
    while (end > start && end[-1] == ' ') end--;
    if (end <= start) return;
    add_line(Lowering.lines, Lowering.level + level,
             KeepText(start, static_cast<size_t>(end - start)));
}

void put_form_line(const char *line, const char *end, std::initializer_list<BlockPlace> places) {
    int level = level_of(line);
    FoundWord word = first_word(line, end, places);
    if (!word.place) return put_line("%s", {KeepText(line, static_cast<size_t>(end - line))});
    for (; word.place; word = first_word(line, end, places)) {
        put_part(line, word.at, level);
        bool is_alone = line + strspn(line, " ") == word.at;
        Lines lines =
            lower_block_apart(word.place->block, Lowering.level + level + (is_alone ? 0 : 1));
        append_lines(Lowering.lines, &lines);
        line = word.at + strlen(word.place->word);
    }
    put_part(line, end, level);
}

}  // namespace

bool put_block_form(const char *answer, std::initializer_list<BlockPlace> places) {
    if (has_word_twice(answer, places)) return false;
    for (;;) {
        const char *end = answer + strcspn(answer, "\n");
        put_form_line(answer, end, places);
        if (!*end) return true;
        answer = end + 1;
    }
}
