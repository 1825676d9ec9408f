// What the class folders hold.
#include "lower/classes/class_folders.h"

#include <string.h>

#include "lexer/folders.h"
#include "lower/classes/class_names.h"
#include "lower/lines/lines.h"
#include "lower/program/program_files.h"
#include "support/allocation.h"
#include "syntax/names/name_map.h"
#include "syntax/scan/spellings.h"
#include "translate/text_forms.h"

namespace {

// The paths of methods; keys are names.
struct Class {
    NameMap methods;
};

struct FolderName {
    const char *name;
    FolderName *next;
};

NameMap Classes;
NameMap AnyMethods;  // path, or NOWHERE
bool AreRead;
const SearchDirectory *Directories;
bool HasDirectories;

const char NOWHERE[] = "";

constexpr int DEEPEST_PACKAGE = 16;

Class *class_of_name(const char *name) {
    void *known = find_name(&Classes, name);
    if (known) return static_cast<Class *>(known);
    Class *found = AllocRecord<Class>();
    *found = {};
    enter_name(&Classes, name, found);
    return found;
}

void *as_value(const char *path) { return const_cast<char *>(path); }

// Of several classes the first by its path, so that the order on disk makes no difference.
void enter_any(const char *method, const char *path) {
    const char *other = static_cast<const char *>(find_name(&AnyMethods, method));
    if (!other || strcmp(path, other) < 0) enter_name(&AnyMethods, method, as_value(path));
}

bool is_source(const char *name) {
    size_t length = strlen(name);
    return length > 2 && strcmp(name + length - 2, ".m") == 0;
}

void read_class_folder(const char *folder, const char *class_name) {
    if (!open_folder(folder)) return;
    Class *found = class_of_name(intern(class_name));
    const char *constructor = name_in_package(intern(class_name));
    while (const char *name = next_in_folder()) {
        if (!is_source(name)) continue;
        const char *method = stem_of(name);
        if (find_name(&found->methods, method)) continue;  // of a folder before
        const char *path = form_text("%s/%s", {folder, name});
        enter_name(&found->methods, method, as_value(path));
        if (method != constructor) enter_any(method, path);
    }
}

// Names in the folder that begin so, without that byte.
FolderName *names_with(const char *folder, char first) {
    FolderName *names = nullptr;
    if (!open_folder(folder)) return nullptr;
    while (const char *name = next_in_folder()) {
        if (*name != first || !is_identifier(name + 1)) continue;
        FolderName *cell = AllocRecord<FolderName>();
        *cell = {KeepText(name + 1, strlen(name + 1)), names};
        names = cell;
    }
    return names;
}

void read_folder(const char *folder, const char *package, int depth) {
    for (const FolderName *at = names_with(folder, '@'); at; at = at->next)
        read_class_folder(form_text("%s/@%s", {folder, at->name}),
                          form_text("%s%s", {package, at->name}));
    if (depth == DEEPEST_PACKAGE) return;
    for (const FolderName *at = names_with(folder, '+'); at; at = at->next)
        read_folder(form_text("%s/+%s", {folder, at->name}),
                    form_text("%s%s.", {package, at->name}), depth + 1);
}

void read_folders() {
    AreRead = true;
    for (const SearchDirectory *at = search_directories(); at; at = at->next)
        read_folder(at->directory, "", 0);
}

const SearchDirectory *directories_from(const SearchDirectory *path) {
    SearchDirectory *first = nullptr;
    SearchDirectory **end = &first;
    for (; path; path = path->next) {
        SearchDirectory *cell = AllocRecord<SearchDirectory>();
        *cell = {around_class_folder(path->directory), nullptr};
        *end = cell;
        end = &cell->next;
    }
    return first;
}

// Asked once for each name, as every call asks.
const char *find_any_elsewhere(const char *method) {
    const char *known = static_cast<const char *>(find_name(&AnyMethods, method));
    if (known) return known == NOWHERE ? nullptr : known;
    const char *path = Observing.find_method(Observing.context, nullptr, method);
    enter_name(&AnyMethods, method, as_value(path ? path : NOWHERE));
    return path;
}

}  // namespace

void begin_class_folders() {
    Classes = AnyMethods = {};
    AreRead = HasDirectories = false;
}

const SearchDirectory *search_directories() {
    if (!HasDirectories) Directories = directories_from(SearchPath);
    HasDirectories = true;
    return Directories;
}

bool may_find_methods() { return AddTranslator && (!knows_files() || Observing.find_method); }

const char *find_method(const char *class_name, const char *method) {
    if (!may_find_methods()) return nullptr;
    if (knows_files()) {
        if (!class_name) return find_any_elsewhere(method);
        return Observing.find_method(Observing.context, class_name, method);
    }
    if (!AreRead) read_folders();
    const NameMap *methods = &AnyMethods;
    if (class_name) {
        const Class *found = static_cast<Class *>(find_name(&Classes, class_name));
        if (!found) return nullptr;
        methods = &found->methods;
    }
    return static_cast<const char *>(find_name(methods, method));
}

const char *find_constructor(const char *class_name) {
    return find_method(class_name, name_in_package(class_name));
}
