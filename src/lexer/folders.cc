// Folders on disk.
#include "lexer/folders.h"

#include <assert.h>
#include <dirent.h>

static DIR *Folder;

bool open_folder(const char *path) {
    assert(!Folder);
    Folder = opendir(path);
    return Folder != nullptr;
}

const char *next_in_folder() {
    const dirent *entry = readdir(Folder);
    if (entry) return entry->d_name;
    close_folder();
    return nullptr;
}

void close_folder() {
    if (Folder) closedir(Folder);
    Folder = nullptr;
}
