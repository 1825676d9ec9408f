/* A run for a tool, from its request to its result. */
#pragma once

#include <mtranslate_program.h>

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "driver/program/program_memory.h"
#include "driver/program/program_places.h"
#include "driver/program/program_texts.h"
#include "support/observers.h"

/* A result with its memory, in which it lies itself. */
struct OwnedResult {
    mTranslateProgramResult result; /* first: its address is that of this record */
    ResultMemory memory;
};

/* What has become of a call; texts are the run's. */
struct NotedCall {
    const char *name;
    const char *target;
    uint32_t length;
    PieceEnd end;
};

/* Lines that come from an origin. */
struct NotedLines {
    const Origin *origin;
    uint32_t first;
    uint32_t last;
};

/* Lives in the frame of the call, above all frames of the run, which may not return. */
struct ProgramRun {
    mTranslateProgramRequest request;
    OwnedResult *owned;
    GivenTexts texts;
    GivenFolders folders;
    ProgramPlaces places;
    std::vector<const Message *> messages; /* the run's */
    std::vector<mTranslateProgramFile *> files;
    std::map<std::string, mTranslateProgramFile *, std::less<>> files_by_path;
    std::map<std::string, bool, std::less<>> found_files; /* by their paths: whether scripts */
    std::set<std::string, std::less<>> found_methods;     /* paths */
    std::map<uint32_t, NotedCall> calls;      /* of the run's own source, by their offsets */
    std::set<uint32_t> put_comments;          /* offsets */
    std::map<uint32_t, uint32_t> put_sources; /* put as comments: their ends by their begins */
    std::vector<const Node *> commands;       /* of the run's own source */
    std::vector<const mTranslateProgramToken *> tokens;
    std::vector<NotedLines> lines;
    std::unordered_map<const Origin *, size_t> newest_lines;
    std::string unread; /* why a file cannot be read, which ends the run; else empty */
    bool lacks_memory;  /* an observer had not enough: the result would not be whole */
};

inline mTranslateProgramResult *result_of(ProgramRun *run) { return &run->owned->result; }
inline bool wants(const ProgramRun *run, uint32_t flags) {
    return (run->request.flags & flags) != 0;
}
inline ResultMemory *memory_of(ProgramRun *run) { return &run->owned->memory; }

/* Thrown by the host's RaiseError. */
struct ProgramEnd {};
/* Enters the status and the failure's text, with all messages, into the result, and throws it. */
[[noreturn]] void end_program(ProgramRun *run, int32_t status, const std::string &failure);

/* The operations of the host that the tool stands for. They find their run by Observing.context. */
extern const HostKernelTable ProgramHost;
/* The same where the request has no answers. */
extern const HostKernelTable SilentHost;
/* What the library tells of the run and asks. */
Observers observers_of(ProgramRun *run);

/* Files as they are opened, and as their names are looked for; as described at Observers. */
void note_program_file(ProgramRun *run, const char *path, const struct stat *status);
void note_program_text(ProgramRun *run, const char *path, const char *text, size_t length);
FileFinding find_program_file(ProgramRun *run, const char *name, const char **path);
const char *find_program_method(ProgramRun *run, const char *class_name, const char *method);
/* The text of the file, or of the command for null; false where it cannot be read again. Throws
 * std::bad_alloc. */
bool find_program_text(ProgramRun *run, const char *path, std::string *text);

/* While the run's sources are there: enters its messages into the result, and failure, null for
 * none, as one with the place of LastError. Throws std::bad_alloc. */
void finish_messages(ProgramRun *run, const char *failure);
