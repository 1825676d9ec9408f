/* What is at a path: of the files that a tool gives (support/observers.h), or on the disk. All
 * questions about sources that are looked for go through here. */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/stat.h>

enum GivenAnswer : uint8_t {
    NOT_GIVEN, /* the disk may have it */
    IS_GIVEN,
    IS_BROKEN /* it is there and cannot be read */
};

struct PathState {
    const char *text; /* of a given file, valid until the run ends; null for what is on the disk */
    size_t length;
    struct stat status; /* of what is on the disk */
};

/* What is at the path: 0, or the errno that tells why it cannot be known. */
int look_at(const char *path, PathState *state);
/* Whether a folder is there: 0, or the errno. Where a tool gives files every folder may be. */
int look_at_folder(const char *path);
/* Whether both paths lead to one file. */
bool is_same_file(const char *a, const char *b);
/* Whether the disk may be looked at. */
bool has_disk();
