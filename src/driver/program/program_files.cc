// The files of a program: what is told of them, who may open them, and where their names lead.
#include <errno.h>
#include <string.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "driver/program/program_run.h"
#include "lexer/named_source.h"
#include "lower/program/program_files.h"

namespace {

using File = mTranslateProgramFile;

int32_t kind_of(mode_t mode) {
    if (S_ISREG(mode)) return MTRANSLATE_IS_REGULAR;
    if (S_ISFIFO(mode)) return MTRANSLATE_IS_PIPE;
    return S_ISCHR(mode) || S_ISBLK(mode) ? MTRANSLATE_IS_DEVICE : MTRANSLATE_IS_OTHER;
}

// name and path as the caller keeps them. status: null for a text of the tool.
File describe(const char *name, const char *path, const struct stat *status) {
    File file = {};
    file.size = sizeof file;
    file.name = name;
    file.path = path;
    if (!status) return file;
    file.kind = kind_of(status->st_mode);
    file.bytes = static_cast<uint64_t>(status->st_size);
    file.device = status->st_dev;
    file.inode = status->st_ino;
    return file;
}

bool is_allowed(const ProgramRun *run, const File *file) {
    bool is_asked = run->request.allow && file->kind != MTRANSLATE_IS_GIVEN;
    return !is_asked || run->request.allow(run->request.context, file) != 0;
}

// False, with errno, where the file cannot be read to its end.
bool read_file(const char *path, std::string *text) {
    std::ifstream file(path, std::ios::binary);
    char block[16384];
    while (file.read(block, sizeof block), file.gcount() > 0)
        text->append(block, static_cast<size_t>(file.gcount()));
    return file.is_open() && !file.bad();
}

bool note_unread(ProgramRun *run, const char *path, int cause) {
    run->unread = std::string("unable to open ") + path + ": " + strerror(cause);
    return true;
}

// A pipe is read only once. What is not there, or may not be read, is taken for a script: who opens
// it then finds out why. What cannot be read ends the run.
bool is_program_script(ProgramRun *run, const char *path) {
    PathState state;
    int cause = look_at(path, &state);
    if (cause != 0) return means_absent(cause) || note_unread(run, path, cause);
    if (state.text) return is_script_text(path, state.text, static_cast<uint32_t>(state.length));
    if (!S_ISREG(state.status.st_mode)) return false;
    const std::string name = shortest_path(path);
    File file = describe(name.c_str(), path, &state.status);
    if (!is_allowed(run, &file)) return true;
    std::string text;
    if (!read_file(path, &text)) return note_unread(run, path, errno);
    return is_script_text(path, text.data(), static_cast<uint32_t>(text.size()));
}

// An earlier run has read the file for what its function gives.
bool is_recalled(const ProgramRun *run, const char *path) {
    return run->request.recall && run->request.recall(run->request.context, path);
}

// Null also for a path that ends with no name.
const char *ask_for_file(const ProgramRun *run, int32_t kind, const char *name,
                         const char *class_name) {
    mTranslateProgramSearch search = {};
    search.size = sizeof search;
    search.kind = kind;
    search.name = name;
    search.class_name = class_name;
    search.caller = CurrentFile->path;
    const char *path = run->request.find(run->request.context, &search);
    bool is_name = path && *path && path[strlen(path) - 1] != '/';
    return is_name ? path : nullptr;
}

}  // namespace

void note_program_file(ProgramRun *run, const char *path, const struct stat *status) {
    const std::string name = shortest_path(path);
    File described = describe(name.c_str(), path, status);
    if (!is_allowed(run, &described))
        end_program(run, MTRANSLATE_PROGRAM_UNREADABLE,
                    std::string("the caller does not allow to open ") + path);
    const auto [at, is_new] = run->files_by_path.try_emplace(path);
    if (!is_new) return;
    File *file = at->second = new_result<File>(memory_of(run));
    *file = described;
    file->name = keep_result(memory_of(run), name.c_str());
    file->path = keep_result(memory_of(run), path);
    run->files.push_back(file);
}

void note_program_text(ProgramRun *run, const char *path, const char *text, size_t length) {
    const auto found = run->files_by_path.find(path);
    if (found == run->files_by_path.end()) return;
    found->second->text = keep_result(memory_of(run), text, length);
    found->second->text_length = length;
}

FileFinding find_program_file(ProgramRun *run, const char *name, const char **path) {
    const char *found = ask_for_file(run, MTRANSLATE_SEARCH_FILE, name, nullptr);
    if (!found) return NOT_FOUND;
    const auto [at, is_new] = run->found_files.try_emplace(found);
    *path = at->first.c_str();
    // which may ask the caller for more
    if (is_new) at->second = !is_recalled(run, *path) && is_program_script(run, *path);
    return at->second ? FOUND_HERE : FOUND_ELSEWHERE;
}

// A file in no folder of a class has no method.
const char *find_program_method(ProgramRun *run, const char *class_name, const char *method) {
    const char *found = ask_for_file(run, MTRANSLATE_SEARCH_METHOD, method, class_name);
    bool is_method = found && class_place_of(found).name;
    return is_method ? run->found_methods.emplace(found).first->c_str() : nullptr;
}

bool find_program_text(ProgramRun *run, const char *path, std::string *text) {
    if (!path) {
        if (run->request.command) *text = run->request.command;
        return run->request.command != nullptr;
    }
    const GivenText *given = find_given(&run->request, &run->texts, path);
    if (given->answer == IS_GIVEN) *text = given->text;
    if (given->answer != NOT_GIVEN) return given->answer == IS_GIVEN;
    if (wants(run, MTRANSLATE_WITHOUT_DISK)) return false;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return false;  // a pipe is read only once
    return read_file(path, text);
}
