// Reading a source at once.
#include "lexer/whole_source.h"

#include <limits.h>

#include "lexer/source_files.h"
#include "run/run_end.h"
#include "support/allocation.h"

static constexpr int FIRST_ROOM = 16384;

char *read_whole_source(uint32_t *length) {
    int room = FIRST_ROOM;
    int filled = 0;
    char *text = static_cast<char *>(Alloc(FIRST_ROOM));
    while (int count = read_source(text + filled, room - filled - 1)) {
        filled += count;
        if (filled < room - 1) continue;
        if (room > INT_MAX / 2) end_run(TEXT_TOO_LONG);
        room *= 2;
        text = static_cast<char *>(Realloc(text, static_cast<size_t>(room)));
    }
    text[filled] = '\0';
    *length = static_cast<uint32_t>(filled);
    return static_cast<char *>(Realloc(text, static_cast<size_t>(filled) + 1));
}
