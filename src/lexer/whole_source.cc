// Reading a source at once.
#include "lexer/whole_source.h"

#include <limits.h>

#include "lexer/source_files.h"
#include "run/run_end.h"
#include "support/allocation.h"

static constexpr int FIRST_CAPACITY = 16384;

char *read_whole_source(uint32_t *length) {
    int capacity = FIRST_CAPACITY;
    int filled = 0;
    char *text = static_cast<char *>(Alloc(FIRST_CAPACITY));
    while (int count = read_source(text + filled, capacity - filled - 1)) {
        filled += count;
        if (filled < capacity - 1) continue;
        if (capacity > INT_MAX / 2) end_run(TEXT_TOO_LONG);
        capacity *= 2;
        text = static_cast<char *>(Realloc(text, static_cast<size_t>(capacity)));
    }
    text[filled] = '\0';
    *length = static_cast<uint32_t>(filled);
    return static_cast<char *>(Realloc(text, static_cast<size_t>(filled) + 1));
}
