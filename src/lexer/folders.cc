// Folders: those on disk, and what a tool gives in them.
#include "lexer/folders.h"

#include <assert.h>
#include <dirent.h>
#include <errno.h>

#include "lexer/given_files.h"
#include "lexer/named_source.h"
#include "support/observers.h"

static DIR *Folder;

static const char *Path;   // of the open folder
static const char *Given;  // the next thing in it that the tool gives, or null
static size_t GivenCursor;

static void read_given() {
    bool may_be = Observing.given_file && Observing.given_in_folder;
    Given = may_be ? Observing.given_in_folder(Observing.context, Path, &GivenCursor) : nullptr;
}

bool open_folder(const char *path) {
    assert(!Folder);
    Path = path;
    GivenCursor = 0;
    read_given();
    if (!has_disk()) return Given != nullptr;
    Folder = opendir(path);
    if (!Folder && !means_absent(errno)) refuse_file(path, errno);
    return Folder || Given;
}

const char *next_in_folder() {
    if (const char *name = Given) {
        read_given();
        return name;
    }
    if (!Folder) return nullptr;
    errno = 0;
    const dirent *entry = readdir(Folder);
    if (entry) return entry->d_name;
    int cause = errno;
    close_folder();
    if (cause != 0) refuse_file(Path, cause);
    return nullptr;
}

void close_folder() {
    if (Folder) closedir(Folder);
    Folder = nullptr;
}
