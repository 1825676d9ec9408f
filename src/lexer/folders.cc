// Folders on disk.
#include "lexer/folders.h"

#include <assert.h>
#include <dirent.h>
#include <errno.h>

#include "lexer/named_source.h"

static DIR *Folder;

static const char *Path;  // of the open folder

bool open_folder(const char *path) {
    assert(!Folder);
    Folder = opendir(path);
    Path = path;
    if (!Folder && !means_absent(errno)) refuse_file(path, errno);
    return Folder != nullptr;
}

const char *next_in_folder() {
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
