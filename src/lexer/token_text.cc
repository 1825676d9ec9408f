// Values of tokens.
#include "lexer/token_text.h"

#include "support/allocation.h"

char *string_value(const char *literal, int length) {
    const char *end = literal + length - 1;
    char *value = static_cast<char *>(Alloc(static_cast<size_t>(length) - 1));
    char *to = value;
    for (const char *from = literal + 1; from < end; from++) {
        *to++ = *from;
        if (*from == '\\') from++;
    }
    *to = '\0';
    return value;
}
