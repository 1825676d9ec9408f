// Classes by the names of folders.
#include "lower/classes/class_names.h"

#include <limits.h>
#include <string.h>
#include <unistd.h>

#include "support/allocation.h"
#include "syntax/scan/spellings.h"
#include "translate/text_forms.h"

const char *base_name(const char *path) {
    const char *slash = strrchr(path, '/');
    return slash ? slash + 1 : path;
}

const char *folder_of(const char *path) {
    const char *base = base_name(path);
    if (base == path) return ".";
    return KeepText(path, static_cast<size_t>(base - path - (base - 1 > path)));
}

const char *stem_of(const char *path) {
    const char *base = base_name(path);
    size_t length = strlen(base);
    if (length > 2 && strcmp(base + length - 2, ".m") == 0) length -= 2;
    if (length == 0) return "";
    return text_of(spelling_of_bytes(base, static_cast<uint32_t>(length)));
}

const char *name_in_package(const char *class_name) {
    const char *dot = strrchr(class_name, '.');
    return dot ? intern(dot + 1) : class_name;
}

namespace {

const char *CurrentFolder;  // of the process; null until it is asked for

const char *current_folder() {
    char buffer[PATH_MAX];
    if (CurrentFolder) return CurrentFolder;
    const char *folder = getcwd(buffer, sizeof buffer);
    return CurrentFolder = folder ? KeepText(folder, strlen(folder)) : "/";
}

// Puts the parts of the folder after those of text, without "." and "..".
void append_parts(char *text, const char *folder) {
    while (*folder) {
        size_t length = strcspn(folder, "/");
        bool is_up = length == 2 && memcmp(folder, "..", 2) == 0;
        bool is_none = length == 0 || (length == 1 && *folder == '.');
        if (is_up && *text) *strrchr(text, '/') = '\0';
        if (!is_up && !is_none) {
            size_t before = strlen(text);
            text[before] = '/';
            memcpy(text + before + 1, folder, length);
            text[before + 1 + length] = '\0';
        }
        folder += length + (folder[length] == '/');
    }
}

// From the root, by the names alone: a link keeps its name.
char *whole_path(const char *folder) {
    const char *start = *folder == '/' ? "" : current_folder();
    char *text = static_cast<char *>(AllocKept(strlen(start) + strlen(folder) + 3));
    *text = '\0';
    append_parts(text, start);
    append_parts(text, folder);
    return text;
}

bool may_be_in_class(const char *folder) {
    return strchr(folder, '@') || (*folder != '/' && strchr(current_folder(), '@'));
}

// Cuts the last part off a whole path, and answers it.
const char *cut_part(char *path) {
    char *slash = strrchr(path, '/');
    if (!slash) return "";
    *slash = '\0';
    return slash + 1;
}

// parts: how many of the folder's last parts the class has made.
ClassPlace class_of_folder(const char *folder, int *parts) {
    char *path = whole_path(folder);
    const char *part = cut_part(path);
    bool is_private = strcmp(part, "private") == 0;
    if (is_private) part = cut_part(path);
    *parts = is_private ? 2 : 1;
    if (*part != '@' || part[1] == '\0') return {nullptr, false};
    const char *name = part + 1;
    while (*(part = cut_part(path)) == '+') {
        name = form_text("%s.%s", {part + 1, name});
        ++*parts;
    }
    return {intern(name), is_private};
}

// Null where the names in the path do not suffice.
const char *without_parts(const char *folder, int parts) {
    for (; parts > 0; parts--) {
        const char *part = base_name(folder);
        if (*part == '.' || *part == '\0') return nullptr;
        folder = folder_of(folder);
    }
    return *folder ? folder : "/";
}

}  // namespace

void begin_class_names() { CurrentFolder = nullptr; }

ClassPlace class_place_of(const char *path) {
    const char *folder = folder_of(path);
    int parts;
    return may_be_in_class(folder) ? class_of_folder(folder, &parts) : ClassPlace{nullptr, false};
}

const char *around_class_folder(const char *folder) {
    int parts;
    if (!may_be_in_class(folder) || !class_of_folder(folder, &parts).name) return folder;
    const char *around = without_parts(folder, parts);
    return around ? around : without_parts(whole_path(folder), parts);
}
