// Opening, reading and closing source files.
#include "lexer/source_files.h"

#include <assert.h>
#include <errno.h>

#include "run/run_end.h"
#include "support/heap.h"

namespace {

struct OpenSource {
    FILE *file;
    OpenSource *outer;  // opened before this one and still open
};

OpenSource *OpenSources;

constexpr int BLOCK_SIZE = 8192;
// A scanner buffer of the initial size takes one block a refill. A larger one holds a token that
// outgrew it and is filled whole: its text then moves a number of times that grows with the
// logarithm of its length.
constexpr int INITIAL_BUFFER_SIZE = 16384;

int read_line(FILE *file, char *buffer, int room) {
    int count = 0;
    int c = 0;
    while (count < room && c != '\n' && (c = getc(file)) != EOF) {
        buffer[count++] = static_cast<char>(c);
    }
    return count;
}

int read_block(FILE *file, char *buffer, int room) {
    size_t wanted = static_cast<size_t>(room < BLOCK_SIZE ? room : BLOCK_SIZE);
    return static_cast<int>(fread(buffer, 1, wanted, file));
}

int read_some(FILE *file, bool interactive, char *buffer, int room) {
    for (;;) {
        errno = 0;
        int count = interactive ? read_line(file, buffer, room) : read_block(file, buffer, room);
        if (count > 0 || !ferror(file)) return count;
        if (errno != EINTR) end_run("input in flex scanner failed");
        clearerr(file);
    }
}

}  // namespace

FILE *open_source(const char *path) {
    OpenSource *source = static_cast<OpenSource *>(HeapAlloc(sizeof(OpenSource)));
    if (!source) end_run("memory exhausted");
    *source = {fopen(path, "r"), OpenSources};
    if (!source->file) {
        bool is_exhausted = errno == ENOMEM;
        HeapFree(source);
        if (is_exhausted) end_run("memory exhausted");
        return nullptr;
    }
    OpenSources = source;
    return source->file;
}

void close_source() {
    OpenSource *source = OpenSources;
    assert(source);
    OpenSources = source->outer;
    fclose(source->file);
    HeapFree(source);
}

void close_all_sources() {
    while (OpenSources) close_source();
}

int read_source(FILE *file, bool interactive, char *buffer, int room) {
    int count = read_some(file, interactive, buffer, room);
    if (interactive) return count;
    while (room >= INITIAL_BUFFER_SIZE && count < room) {
        int more = read_some(file, interactive, buffer + count, room - count);
        if (more == 0) break;
        count += more;
    }
    return count;
}
