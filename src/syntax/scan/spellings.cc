// The table of spellings: open addressing, by a hash of the first and last bytes.
#include "syntax/scan/spellings.h"

#include <string.h>

#include "support/allocation.h"
#include "support/row_index.h"
#include "syntax/tree/arena.h"

namespace {

// A power of two. Most files have fewer than half as many names.
constexpr uint32_t FIRST_SIZE = 256;
Spelling **Table;
uint32_t TableSize;
uint32_t SpellingCount;

struct Keyword {
    const char *name;
    TokenKind token;
    SoftKeyword soft;
};

constexpr Keyword Keywords[] = {{"arguments", TOKEN_NAME, SOFT_ARGUMENTS},
                                {"break", TOKEN_BREAK, NOT_SOFT},
                                {"case", TOKEN_CASE, NOT_SOFT},
                                {"catch", TOKEN_CATCH, NOT_SOFT},
                                {"classdef", TOKEN_CLASSDEF, NOT_SOFT},
                                {"continue", TOKEN_CONTINUE, NOT_SOFT},
                                {"do", TOKEN_NAME, SOFT_DO},
                                {"else", TOKEN_ELSE, NOT_SOFT},
                                {"elseif", TOKEN_ELSEIF, NOT_SOFT},
                                {"end", TOKEN_END, NOT_SOFT},
                                {"end_try_catch", TOKEN_END_TRY, NOT_SOFT},
                                {"end_unwind_protect", TOKEN_END_UNWIND, NOT_SOFT},
                                {"endfor", TOKEN_END_FOR, NOT_SOFT},
                                {"endfunction", TOKEN_END_FUNCTION, NOT_SOFT},
                                {"endif", TOKEN_END_IF, NOT_SOFT},
                                {"endparfor", TOKEN_END_PARFOR, NOT_SOFT},
                                {"endswitch", TOKEN_END_SWITCH, NOT_SOFT},
                                {"endwhile", TOKEN_END_WHILE, NOT_SOFT},
                                {"eval", TOKEN_NAME, SOFT_EVAL},
                                {"for", TOKEN_FOR, NOT_SOFT},
                                {"function", TOKEN_FUNCTION, NOT_SOFT},
                                {"global", TOKEN_GLOBAL, NOT_SOFT},
                                {"if", TOKEN_IF, NOT_SOFT},
                                {"otherwise", TOKEN_OTHERWISE, NOT_SOFT},
                                {"parfor", TOKEN_PARFOR, NOT_SOFT},
                                {"persistent", TOKEN_PERSISTENT, NOT_SOFT},
                                {"return", TOKEN_RETURN, NOT_SOFT},
                                {"spmd", TOKEN_SPMD, NOT_SOFT},
                                {"switch", TOKEN_SWITCH, NOT_SOFT},
                                {"try", TOKEN_TRY, NOT_SOFT},
                                {"until", TOKEN_NAME, SOFT_UNTIL},
                                {"unwind_protect", TOKEN_UNWIND, NOT_SOFT},
                                {"unwind_protect_cleanup", TOKEN_CLEANUP, NOT_SOFT},
                                {"while", TOKEN_WHILE, NOT_SOFT}};
constexpr auto KeywordIndex = index_rows(Keywords);

template <typename Word>
uint64_t load(const char *from) {
    Word word;
    memcpy(&word, from, sizeof word);
    return word;
}

// The first and last 8 bytes of a text, overlapping where it is short; those of 1 to 3 bytes in
// one word.
struct Ends {
    uint64_t head;
    uint64_t tail;
};

Ends ends_of(const char *text, uint32_t length) {
    if (length >= 8) return {load<uint64_t>(text), load<uint64_t>(text + length - 8)};
    if (length >= 4) return {load<uint32_t>(text), load<uint32_t>(text + length - 4)};
    if (length == 0) return {0, 0};
    uint64_t middle = static_cast<unsigned char>(text[length / 2]);
    uint64_t last = static_cast<unsigned char>(text[length - 1]);
    return {static_cast<unsigned char>(text[0]) | middle << 8 | last << 16, 0};
}

uint32_t hash_of(Ends ends, uint32_t length) {
    uint64_t mixed = (ends.head ^ (ends.tail << 23 | ends.tail >> 41) ^ length);
    mixed *= 0x9e3779b97f4a7c15u;
    return static_cast<uint32_t>(mixed >> 32);
}

void set_keyword(Spelling *spelling, RowName name) {
    const Keyword *keyword = find_row(Keywords, KeywordIndex, name);
    if (!keyword) return;
    spelling->keyword = keyword->token;
    spelling->soft = keyword->soft;
}

Spelling *new_spelling(const char *text, uint32_t length, Ends ends) {
    Spelling *spelling = static_cast<Spelling *>(take_bytes(sizeof(Spelling) + length + 1));
    *spelling = {ends.head, ends.tail, length, 0, TOKEN_NAME, NOT_SOFT, 0, 0, nullptr, nullptr};
    char *copy = reinterpret_cast<char *>(spelling + 1);
    memcpy(copy, text, length);
    copy[length] = '\0';
    RowName name = copy;
    spelling->chain = static_cast<uint16_t>(name.chain);
    set_keyword(spelling, name);
    spelling->library = library_function(name);
    if (spelling->library) spelling->traits = spelling->library->traits;
    return spelling;
}

Spelling **free_slot(uint32_t hash) {
    uint32_t i = hash & (TableSize - 1);
    while (Table[i]) i = (i + 1) & (TableSize - 1);
    return &Table[i];
}

void resize_table(uint32_t size) {
    Spelling **old = Table;
    uint32_t old_size = TableSize;
    Table = static_cast<Spelling **>(AllocKept(size * sizeof(void *)));
    memset(Table, 0, size * sizeof(void *));
    TableSize = size;
    for (uint32_t i = 0; i < old_size; i++) {
        if (!old[i]) continue;
        Ends ends = {old[i]->head, old[i]->tail};
        *free_slot(hash_of(ends, old[i]->length)) = old[i];
    }
    if (old) FreeKept(old);
}

Spelling *enter_spelling(const char *text, uint32_t length, Ends ends) {
    if (++SpellingCount > TableSize / 2) resize_table(TableSize * 2);
    Spelling *spelling = new_spelling(text, length, ends);
    *free_slot(hash_of(ends, length)) = spelling;
    return spelling;
}

// The spelling of the bytes with those ends, or null.
inline Spelling *find(const char *text, uint32_t length, Ends ends) {
    uint32_t i = hash_of(ends, length) & (TableSize - 1);
    for (; Spelling *spelling = Table[i]; i = (i + 1) & (TableSize - 1)) {
        if (spelling->head != ends.head || spelling->tail != ends.tail) continue;
        if (spelling->length != length) continue;
        if (length <= sizeof ends || memcmp(text_of(spelling), text, length) == 0) return spelling;
    }
    return nullptr;
}

[[gnu::noinline]] Spelling *find_or_enter(const char *text, uint32_t length, Ends ends) {
    Spelling *known = find(text, length, ends);
    return known ? known : enter_spelling(text, length, ends);
}

}  // namespace

void begin_spellings() {
    Table = nullptr;
    TableSize = 0;
    SpellingCount = 0;
    resize_table(FIRST_SIZE);
}

// Most names are short, have been spelled before and are found at once.
Spelling *spelling_of_bytes(const char *text, uint32_t length) {
    Ends ends = ends_of(text, length);
    Spelling *first = Table[hash_of(ends, length) & (TableSize - 1)];
    bool is_same = first && first->head == ends.head && first->tail == ends.tail &&
                   first->length == length && length <= sizeof ends;
    return is_same ? first : find_or_enter(text, length, ends);
}

const Spelling *find_spelling(const char *text, uint32_t length) {
    return find(text, length, ends_of(text, length));
}
