// Values of tokens.
#include "lexer/token_text.h"

#include <assert.h>
#include <stdint.h>
#include <string.h>

#include "support/allocation.h"

namespace {

// The copies made last, each at its hash; a text that meets another in its place displaces it.
constexpr uint32_t CACHE_SIZE = 1024;
char *ValueCache[CACHE_SIZE];

char **cache_place(const char *text, int length) {
    uint32_t hash = 0;
    for (int i = 0; i < length; i++) hash = hash * 31 + static_cast<unsigned char>(text[i]);
    return &ValueCache[(hash ^ hash >> 10) % CACHE_SIZE];
}

bool is_copy(const char *copy, const char *text, size_t length) {
    return strncmp(copy, text, length) == 0 && copy[length] == '\0';
}

}  // namespace

char *shared_value(const char *text, int length) {
    char **place = cache_place(text, length);
    size_t size = static_cast<size_t>(length);
    if (!*place || !is_copy(*place, text, size)) *place = KeepText(text, size);
    return *place;
}

void forget_values() { memset(ValueCache, 0, sizeof ValueCache); }

char *string_value(const char *literal, int length) {
    assert(length >= 2 && literal[0] == '\'' && literal[length - 1] == '\'');
    const char *end = literal + length - 1;
    char *value = static_cast<char *>(AllocKept(static_cast<size_t>(length) - 1));
    char *to = value;
    for (const char *from = literal + 1; from < end; from++) {
        *to++ = *from;
        if (*from == '\\') from++;
    }
    *to = '\0';
    return value;
}
