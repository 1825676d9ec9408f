// Opening the files of called functions.
#include "lexer/named_source.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>

#include "lexer/source_files.h"
#include "run/run_end.h"
#include "run/run_state.h"
#include "support/allocation.h"

static const char *source_path(const char *directory, const char *name) {
    size_t size = strlen(directory) + strlen(name) + sizeof "/.m";
    char *path = static_cast<char *>(AllocKept(size));
    snprintf(path, size, "%s/%s.m", directory, name);
    return path;
}

bool means_absent(int cause) {
    return cause == ENOENT || cause == ENOTDIR || cause == EISDIR || cause == ELOOP ||
           cause == ENAMETOOLONG;
}

void refuse_file(const char *path, int cause) {
    const char *reason = strerror(cause);
    size_t size = sizeof "unable to open : " + strlen(path) + strlen(reason);
    char *message = static_cast<char *>(Alloc(size));
    snprintf(message, size, "unable to open %s: %s", path, reason);
    InputFileName = path;
    end_run({message, FILE_IS_UNREADABLE});
}

bool open_if_there(const char *path) {
    int cause = open_called_source(path);
    if (cause != 0 && !means_absent(cause)) refuse_file(path, cause);
    return cause == 0;
}

const char *open_named_source(const char *directory, const char *name) {
    const char *path = source_path(directory, name);
    return open_if_there(path) ? path : nullptr;
}
