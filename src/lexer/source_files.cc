// Opening, reading and closing source files.
#include "lexer/source_files.h"

#include <assert.h>
#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lexer/error_reporter.h"
#include "lexer/given_files.h"
#include "run/run_end.h"
#include "support/budget.h"
#include "support/heap.h"
#include "support/observers.h"

namespace {

// A regular file up to this size is read when it is opened: scripts that wait for the functions
// they call would hold a descriptor each.
constexpr off_t LARGEST_WHOLE_FILE = 65536;
constexpr int CLOSED = -1;

// The text of a file that was read at once lies after its record, with a byte to spare.
struct OpenSource {
    int descriptor;     // or CLOSED
    bool has_failed;    // a read did, after the characters given out
    size_t given;       // characters of the text that the scanner has
    size_t length;      // of the text
    off_t size;         // of a regular file, when it was opened; else 0
    off_t left;         // to come of these bytes
    OpenSource *outer;  // opened before this one and still open
};

OpenSource *OpenSources;

constexpr int BLOCK_SIZE = 8192;
// A scanner buffer of the initial size takes one block a refill. A larger one holds a token that
// outgrew it and is filled whole: its text then moves a number of times that grows with the
// logarithm of its length.
constexpr int INITIAL_BUFFER_SIZE = 16384;

char *text_of(OpenSource *source) { return reinterpret_cast<char *>(source + 1); }

// The host's signals may interrupt both: on a pipe they wait.
int open_file(const char *path, bool waits) {
    int flags = O_RDONLY | O_CLOEXEC | (waits ? 0 : O_NONBLOCK);
    int descriptor;
    do {
        descriptor = open(path, flags);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

// At its end: whether something has been cut off since it was opened. The sizes that some file
// systems tell are not those of their files, but stay as they are.
bool is_cut(const OpenSource *source) {
    struct stat status;
    return source->left > 0 &&
           (fstat(source->descriptor, &status) != 0 || status.st_size < source->size);
}

size_t read_file(OpenSource *source, char *buffer, size_t capacity) {
    ssize_t count;
    do {
        count = read(source->descriptor, buffer, capacity);
    } while (count < 0 && errno == EINTR);
    source->has_failed = count < 0 || (count == 0 && is_cut(source));
    if (count <= 0) return 0;
    source->left -= count;
    widen_budget(static_cast<size_t>(count));
    return static_cast<size_t>(count);
}

void close_file(OpenSource *source) {
    if (source->descriptor != CLOSED) close(source->descriptor);
    source->descriptor = CLOSED;
}

OpenSource *new_source(int descriptor, size_t text_size, off_t size) {
    OpenSource *source = static_cast<OpenSource *>(HeapAlloc(sizeof(OpenSource) + text_size));
    if (!source) {
        if (descriptor != CLOSED) close(descriptor);
        end_run(OUT_OF_MEMORY);
    }
    *source = {descriptor, false, 0, 0, size, size, OpenSources};
    OpenSources = source;
    return source;
}

// The tool's text is the tool's; reading goes on as with a file that was read at once.
void open_given(const PathState *state) {
    OpenSource *source = new_source(CLOSED, state->length, 0);
    memcpy(text_of(source), state->text, state->length);
    source->length = state->length;
    widen_budget(state->length);
}

// A file that changes its length meanwhile stays open, to be read like a pipe.
void open_whole(int descriptor, off_t size) {
    size_t capacity = static_cast<size_t>(size) + 1;
    OpenSource *source = new_source(descriptor, capacity, size);
    source->length = read_file(source, text_of(source), capacity);
    if (source->left == 0) close_file(source);
}

size_t take_text(OpenSource *source, char *buffer, size_t capacity) {
    size_t rest = source->length - source->given;
    size_t count = rest < capacity ? rest : capacity;
    memcpy(buffer, text_of(source) + source->given, count);
    source->given += count;
    return count;
}

// 0 at the end of the file, and where a read fails.
size_t read_some(OpenSource *source, char *buffer, size_t capacity) {
    if (source->given < source->length) return take_text(source, buffer, capacity);
    if (source->descriptor == CLOSED || source->has_failed) return 0;
    return read_file(source, buffer, capacity);
}

int open_as(const char *path, const PathState *state) {
    const struct stat *status = state->text ? nullptr : &state->status;
    if (Observing.opens) Observing.opens(Observing.context, path, status);
    if (!status) {
        open_given(state);
        return 0;
    }
    int descriptor = open_file(path, !S_ISREG(status->st_mode));  // a pipe may be in its place
    if (descriptor < 0) return errno;
    off_t size = S_ISREG(status->st_mode) ? status->st_size : 0;
    if (size > 0 && size <= LARGEST_WHOLE_FILE) {
        open_whole(descriptor, size);
    } else {
        new_source(descriptor, 0, size);
    }
    return 0;
}

}  // namespace

int open_source(const char *path) {
    PathState state;
    int cause = look_at(path, &state);
    return cause == 0 ? open_as(path, &state) : cause;
}

// Most names that are looked for have no file, which stat finds out at half the price of open.
int open_called_source(const char *path) {
    PathState state;
    int cause = look_at(path, &state);
    if (cause != 0) return cause;
    bool is_folder = !state.text && S_ISDIR(state.status.st_mode);
    return is_folder ? EISDIR : open_as(path, &state);
}

void close_source() {
    OpenSource *source = OpenSources;
    assert(source);
    OpenSources = source->outer;
    close_file(source);
    HeapFree(source);
}

void close_all_sources() {
    while (OpenSources) close_source();
}

int read_source(char *buffer, int capacity) {
    OpenSource *source = OpenSources;
    assert(source && capacity > 0);
    bool fills = capacity >= INITIAL_BUFFER_SIZE;
    size_t wanted = static_cast<size_t>(fills || capacity < BLOCK_SIZE ? capacity : BLOCK_SIZE);
    size_t count = 0;
    size_t more;
    do {
        more = read_some(source, buffer + count, wanted - count);
        count += more;
    } while (fills && more > 0 && count < wanted);
    if (count == 0 && source->has_failed) {
        raise_where_read({"input in flex scanner failed", FILE_IS_UNREADABLE});
        abandon_run();
    }
    return static_cast<int>(count);
}
