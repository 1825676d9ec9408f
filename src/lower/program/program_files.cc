// The files of a run.
#include "lower/program/program_files.h"

#include <assert.h>
#include <string.h>

#include "diagnose/messages.h"
#include "lexer/given_files.h"
#include "lexer/named_source.h"
#include "lexer/source_files.h"
#include "lexer/whole_source.h"
#include "lower/classes/class_folders.h"
#include "lower/classes/procedure_names.h"
#include "lower/conditions/host_conditions.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/program/host_words.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "syntax/scan/class_table.h"
#include "syntax/scan/spellings.h"
#include "translate/text_forms.h"

/* A folder of private functions. */
struct Folder {
    const char *path;
    NameMap files; /* SourceFile, or NO_FILE */
    Folder *next;
};

SourceFile *CurrentFile;

namespace {

NameMap FilesByStem;     // SourceFile, the newest one first
Folder *PrivateFolders;  // those that are there
NameMap PathFiles;       // what names mean on the search path: SourceFile, or NO_FILE
NameMap OnPath;          // names of which a file is there, or surely none
NameMap MethodFiles;     // by paths: SourceFile
NameMap LibraryFiles;    // by the addresses of their texts: SourceFile
NameMap Procedures;      // host names that are taken: SourceFile, or NO_FILE
NameMap LastNumbers;     // of names that several want: LastNumber
NameMap Texts;           // of files that have been read, by their paths: FileText

struct FileText {
    const char *bytes;
    uint32_t length;
};

// Where the file of a name is that the current file calls; for where knows_files.
struct KnownPlace {
    FileFinding finding;
    const char *path;
};

struct LastNumber {
    int number;
};

SourceLanguage Language;

SourceFile NoFile;
void *const NO_FILE = &NoFile;

bool is_taken(const char *written) { return find_name(&Procedures, written) != nullptr; }

const char *numbered_name(const char *name, int number) {
    return intern(form_text("%s_%s", {name, number_text(number)}));
}

// The name, with a number after it when it is taken: numbers up to the last one are, too.
const char *free_name(const char *name) {
    const char *plain = intern(name);
    if (!is_taken(plain)) return plain;
    LastNumber *last = static_cast<LastNumber *>(find_name(&LastNumbers, plain));
    if (!last) {
        last = AllocRecord<LastNumber>();
        *last = {1};
        enter_name(&LastNumbers, plain, last);
    }
    const char *free;
    do free = numbered_name(name, ++last->number);
    while (is_taken(free));
    return free;
}

const char *library_name(const char *name) { return form_text("qxrp_%s", {name}); }

// The first function of a name keeps it, every other has its file's name in front.
const char *choose_written(const SourceFile *file, const char *name) {
    if (file->is_library) return free_name(library_name(name));
    const char *plain = free_of_host_words(name);
    if (!is_taken(plain)) return plain;
    const char *stem = file->stem && is_identifier(file->stem) ? file->stem : "script";
    return free_name(form_text("qxrp_%s_%s", {stem, name}));
}

const char *without_dots(const char *name) {
    if (!strchr(name, '.')) return name;
    char *copy = KeepText(name, strlen(name));
    for (char *dot = copy; (dot = strchr(dot, '.'));) *dot = '_';
    return intern(copy);
}

bool is_first(const SourceFile *file) { return !file->functions && !file->is_script; }

// Those of a class file are called alike in every run.
const char *choose_name(const SourceFile *file, const char *name) {
    if (!file->place.name) return choose_written(file, name);
    return free_name(is_first(file) ? procedure_name(file->path)
                                    : inner_procedure_name(file->path, name));
}

FileFunction *new_function(SourceFile *file, Node *node, const char *name) {
    FileFunction *function = AllocRecord<FileFunction>();
    *function = {name, choose_name(file, without_dots(name)), node, false, nullptr};
    enter_name(&Procedures, function->written, file);
    return function;
}

void report_names(const SourceFile *file, const Node *node) {
    report(DIFFERENT_NAMES, file->source, node->offset, node->length, {node->text, file->stem});
}

// A called file's first function is called by the file's name; so is one that other runs call.
const char *function_name(const SourceFile *file, const Node *node, bool is_called) {
    bool is_by_file = is_called || file->place.name || (knows_files() && file->stem);
    if (!is_by_file || !is_first(file) || file->stem == node->text) return node->text;
    report_names(file, node);
    return file->stem;
}

void enter_functions(SourceFile *file, bool is_called) {
    assert(!file->functions);
    FileFunction **end = &file->functions;
    for (Node *node = file->tree->first_child; node; node = node->next) {
        if (node->kind != NODE_FUNCTION) continue;
        *end = new_function(file, node, function_name(file, node, is_called));
        end = &(*end)->next;
    }
}

Folder *private_folder_of(const char *path) {
    const char *folder = folder_of(path);
    // private functions call each other
    const char *wanted =
        strcmp(base_name(folder), "private") == 0 ? folder : form_text("%s/private", {folder});
    for (Folder *known = PrivateFolders; known; known = known->next)
        if (strcmp(known->path, wanted) == 0) return known;
    // one that cannot be looked at is not taken for none: a call then says why
    if (means_absent(look_at_folder(wanted))) return nullptr;
    Folder *found = AllocRecord<Folder>();
    *found = {wanted, {}, PrivateFolders};
    return PrivateFolders = found;
}

SourceFile *new_file(const char *path, const char *text, uint32_t length) {
    SourceFile *file = AllocRecord<SourceFile>();
    *file = {};
    file->path = path;
    file->source = new_source(path, text, length);
    if (!path) return file;
    file->stem = stem_of(path);
    file->namesake = static_cast<SourceFile *>(enter_name(&FilesByStem, file->stem, file));
    file->place = class_place_of(path);
    file->private_folder = private_folder_of(path);
    return file;
}

void parse_file(SourceFile *file, bool is_called) {
    assert(!file->tree);
    file->tree = parse_source(file->source, Language);
    file->is_script = is_script_file(file->tree, file->stem, file->source->errors > 0, Language);
    enter_functions(file, is_called);
}

// A file that has been read already, by another way to it.
SourceFile *find_loaded(const char *path, const char *stem) {
    SourceFile *file = static_cast<SourceFile *>(find_name(&FilesByStem, stem));
    while (file && !is_same_file(file->path, path)) file = file->namesake;
    return file;
}

void tell_text(const char *path, const FileText *text) {
    if (Observing.text) Observing.text(Observing.context, path, text->bytes, text->length);
}

FileText *read_opened_text(const char *path) {
    FileText *text = AllocRecord<FileText>();
    InputFileName = path;
    text->bytes = read_whole_source(&text->length);
    close_source();
    InputFileName = CurrentFile->path;
    tell_text(path, text);
    return text;
}

// Read once, whoever asks; null where there is none.
const FileText *text_at(const char *path) {
    path = intern(path);
    FileText *text = static_cast<FileText *>(find_name(&Texts, path));
    if (text) return text;
    if (!open_if_there(path)) return nullptr;
    text = read_opened_text(path);
    enter_name(&Texts, path, text);
    return text;
}

// Null where there is none.
SourceFile *load_file(const char *path, const Node *place) {
    const FileText *text = text_at(path);
    if (!text) return nullptr;
    if (SourceFile *loaded = find_loaded(path, stem_of(path))) return loaded;
    SourceFile *file = new_file(path, text->bytes, text->length);
    file->source->caller = CurrentFile->source;
    file->source->caller_offset = place->offset;
    parse_file(file, true);
    return file;
}

// @package.name is +package/name.m.
const char *file_name_of(const char *name) {
    if (!strchr(name, '.')) return name;
    const char *last = strrchr(name, '.');
    const char *file = "";
    for (const char *dot; (dot = strchr(name, '.')) && dot <= last; name = dot + 1)
        file = form_text("%s+%s/", {file, KeepText(name, static_cast<size_t>(dot - name))});
    return form_text("%s%s", {file, name});
}

const char *source_path(const char *directory, const char *name) {
    return form_text("%s/%s.m", {directory, name});
}

// Folders after the one in which a file was found are not looked into for a translation, only for
// the message.
void report_shadowed(const SearchDirectory *at, const char *name, const SourceFile *found,
                     const Node *place) {
    PathState state;
    for (; at; at = at->next) {
        const char *path = form_text("%s/%s.m", {at->directory, name});
        if (look_at(path, &state) != 0 || is_same_file(found->path, path)) continue;
        report_at(SHADOWED_FILE, place, {found->path, path});
        return;
    }
}

SourceFile *find_on_path(const Node *place) {
    const char *name = file_name_of(place->text);
    for (const SearchDirectory *at = search_directories(); at; at = at->next) {
        SourceFile *file = load_file(source_path(at->directory, name), place);
        if (!file) continue;
        report_shadowed(at->next, name, file, place);
        return file;
    }
    return nullptr;
}

SourceFile *find_private(Folder *folder, const Node *place) {
    return load_file(source_path(folder->path, place->text), place);
}

// Asked once for each name in a file, as all its calls ask.
const KnownPlace *known_place(const char *name) {
    assert(knows_files());
    NameMap *known = &CurrentFile->places;
    if (void *place = find_name(known, name)) return static_cast<const KnownPlace *>(place);
    KnownPlace *place = AllocRecord<KnownPlace>();
    place->finding = find_known_file(CurrentFile->path, name, &place->path);
    enter_name(known, name, place);
    return place;
}

// What has been found under the name before, or what search finds now.
template <typename Search>
SourceFile *find_once(NameMap *known, const char *name, Search search) {
    void *found = find_name(known, name);
    if (!found) {
        SourceFile *file = search();
        found = file ? file : NO_FILE;
        enter_name(known, name, found);
    }
    return found == NO_FILE ? nullptr : static_cast<SourceFile *>(found);
}

}  // namespace

void begin_files(SourceLanguage language) {
    Language = language;
    CurrentFile = nullptr;
    PrivateFolders = nullptr;
    FilesByStem = PathFiles = MethodFiles = LibraryFiles = OnPath = Texts = {};
    Procedures = LastNumbers = {};
    begin_class_names();
    begin_class_folders();
}

SourceFile *read_main_file(const char *path, const char *text, uint32_t length) {
    SourceFile *file = CurrentFile = new_file(path, text, length);
    FileText told = {text, length};
    if (path) tell_text(path, &told);
    file->is_queued = true;  // whoever calls it finds it written
    parse_file(file, false);
    return file;
}

namespace {

// What is known beforehand.
FoundFile find_known(const Node *place) {
    const KnownPlace *known = known_place(place->text);
    if (known->finding == FOUND_ELSEWHERE) return {nullptr, known->path};
    SourceFile *file = known->finding == FOUND_HERE ? load_file(known->path, place) : nullptr;
    return {file, file ? known->path : nullptr};
}

FoundFile found_file(SourceFile *file) { return {file, file ? file->path : nullptr}; }

FoundFile find_private_file(const Node *place) {
    Folder *folder = CurrentFile->private_folder;
    if (!folder) return {};
    return found_file(
        find_once(&folder->files, place->text, [=] { return find_private(folder, place); }));
}

// path: null for none.
FoundFile method_file(const char *path, const Node *place) {
    if (!path || knows_files()) return {nullptr, path};
    return found_file(
        find_once(&MethodFiles, intern(path), [=] { return load_file(path, place); }));
}

bool is_private_path(const char *path) {
    return strcmp(base_name(folder_of(path)), "private") == 0;
}

}  // namespace

FoundFile find_file(const Node *place) {
    if (CurrentFile->is_library) return {};
    FoundFile found = knows_files() ? find_known(place) : find_private_file(place);
    if (found.path && (!knows_files() || is_private_path(found.path))) return found;
    if (const char *constructor = find_constructor(place->text))
        return method_file(constructor, place);
    if (knows_files()) return found;
    return found_file(find_once(&PathFiles, place->text, [=] { return find_on_path(place); }));
}

FoundFile find_method_file(const Node *place, const char *class_name, const char *method) {
    return method_file(find_method(class_name, method), place);
}

bool is_method_file(const SourceFile *file) {
    return file->place.name && !file->place.is_private && !file->is_script;
}

// Of "function r = name(x)", as the library's texts begin.
static const char *name_in_head(const char *text) {
    const char *end = text + strcspn(text, "(");
    const char *name = end;
    while (name > text && is_word(name[-1])) name--;
    return text_of(spelling_of_bytes(name, static_cast<uint32_t>(end - name)));
}

// A procedure that stands elsewhere need not be read, as long as it has its own name.
static SourceFile *read_library_file(const char *text) {
    SourceFile *file = new_file(nullptr, text, static_cast<uint32_t>(strlen(text)));
    file->is_library = true;
    const char *name = name_in_head(text);
    file->is_apart = Observing.library_call && !is_taken(intern(library_name(name)));
    if (file->is_apart)
        file->functions = new_function(file, nullptr, name);
    else
        parse_file(file, false);
    return file;
}

SourceFile *library_file(const char *text) {
    return find_once(&LibraryFiles, text, [=] { return read_library_file(text); });
}

// The run ends where that cannot be known.
static bool exists(const char *folder, const char *name) {
    const char *path = source_path(folder, name);
    PathState state;
    int cause = look_at(path, &state);
    if (cause != 0 && !means_absent(cause)) refuse_file(path, cause);
    return cause == 0;
}

static bool find_on_disk(const char *name) {
    for (const SearchDirectory *at = search_directories(); at; at = at->next)
        if (exists(at->directory, name)) return true;
    return false;
}

bool is_on_path(const char *name) {
    void *known = find_name(&OnPath, name);
    if (!known) {
        known = find_on_disk(name) ? &OnPath : NO_FILE;
        enter_name(&OnPath, name, known);
    }
    return known != NO_FILE;
}

bool has_file(const Node *place) {
    if (CurrentFile->is_library) return false;
    const char *name = place->text;
    if (find_method(nullptr, name) || find_constructor(name)) return true;
    if (knows_files()) return known_place(name)->finding != NOT_FOUND;
    const Folder *folder = CurrentFile->private_folder;
    return (folder && exists(folder->path, name)) || is_on_path(name);
}

// As find_file finds it.
static const char *path_on_disk(const Node *place) {
    const Folder *folder = CurrentFile->private_folder;
    if (folder && exists(folder->path, place->text)) return source_path(folder->path, place->text);
    const char *name = file_name_of(place->text);
    for (const SearchDirectory *at = search_directories(); at; at = at->next)
        if (exists(at->directory, name)) return source_path(at->directory, name);
    return nullptr;
}

const char *path_of_function(const Node *place) {
    if (!knows_files()) return path_on_disk(place);
    const KnownPlace *known = known_place(place->text);
    return known->finding == FOUND_ELSEWHERE ? known->path : nullptr;
}

bool means_script(const Node *place) {
    if (knows_files()) return known_place(place->text)->finding == FOUND_HERE;
    const char *path = path_on_disk(place);
    const FileText *text = path ? text_at(path) : nullptr;
    return text && is_script_text(path, text->bytes, text->length);
}

// Others may be read once only, or never end. One that cannot be looked at is not taken for one of
// these: reading it says why.
static bool may_be_read(const char *path) {
    PathState state;
    return look_at(path, &state) != 0 || state.text || S_ISREG(state.status.st_mode);
}

SourceFile *look_into_file(const char *path) {
    const FileText *text = may_be_read(path) ? text_at(path) : nullptr;
    if (!text) return nullptr;
    SourceFile *file = AllocRecord<SourceFile>();
    *file = {};
    file->path = path;
    file->stem = stem_of(path);
    file->source = new_source(path, text->bytes, text->length);
    file->place = class_place_of(path);
    file->private_folder = private_folder_of(path);
    bool has_errors;
    file->tree = parse_unreported(file->source, Language, &has_errors);
    if (has_errors) return nullptr;
    file->is_script = is_script_file(file->tree, file->stem, false, Language);
    FileFunction **end = &file->functions;
    for (Node *node = file->tree->first_child; node; node = node->next) {
        if (node->kind != NODE_FUNCTION) continue;
        *end = AllocRecord<FileFunction>();
        const char *name = end == &file->functions ? file->stem : node->text;
        **end = {name, name, node, false, nullptr};
        end = &(*end)->next;
    }
    return file;
}

bool is_script_text(const char *path, const char *text, uint32_t length) {
    return is_script_source(new_source(path, text, length), stem_of(path), Language);
}

void reserve_name(const char *written) {
    if (!is_taken(written)) enter_name(&Procedures, written, NO_FILE);
}

const char *claim_name(const char *written) {
    const char *name = free_name(written);
    reserve_name(name);
    return name;
}

const SourceFile *file_with_procedure(const char *written) {
    const SourceFile *file = static_cast<SourceFile *>(find_name(&Procedures, written));
    return file == NO_FILE ? nullptr : file;
}
