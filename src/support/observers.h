/* What a tool is told of a run while it goes on, and asked by it. */
#pragma once

#include <stddef.h>
#include <stdint.h>

struct Message;
struct Node;
struct Origin;
struct SourceFile;
struct stat;
enum FileFinding : uint8_t;
enum GivenAnswer : uint8_t;
enum PieceEnd : uint8_t;
enum ResultKind : uint8_t;

/* All of it may be null. But opens, no function may throw, and none may end the run. */
struct Observers {
    /* Handed to each function; belongs to the tool. */
    void *context;
    /* A file is about to be opened; status null where the tool gives it. May leave by an exception:
     * the run is then abandoned. */
    void (*opens)(void *context, const char *path, const struct stat *status);
    /* The text of a file that the tool gives, valid until the run ends (lexer/given_files.h). */
    GivenAnswer (*given_file)(void *context, const char *path, const char **text, size_t *length);
    /* With given_file: the name of the next thing in a folder among what the tool gives, valid
     * until the run ends. cursor: 0 at first, then as it was left. Null after the last one. */
    const char *(*given_in_folder)(void *context, const char *folder, size_t *cursor);
    /* With given_file: there are no others. */
    bool without_disk;

    /* The following are of matlab and octave alone. A message has been reported. */
    void (*message)(void *context, const Message *message);
    /* A file has been read: length bytes, valid until the run ends. */
    void (*text)(void *context, const char *path, const char *text, size_t length);
    /* The run's own source has been read. */
    void (*tree)(void *context, const Node *tree);
    /* There it ends. */
    bool only_reads;
    /* What becomes of a call's NAME or HANDLE, of a COMMENT or of a statement in CurrentFile,
     * unless the front end has brought that along; perhaps several times, the last of which counts.
     * target: the path of the file that holds what is called, null where the run has none. */
    void (*piece)(void *context, const Node *node, PieceEnd end, const char *target);
    /* Lines of the output come from the origin, in their order: the first one, from 1, and how
     * many. Several origins may share a line, and one may be told of several times. */
    void (*lines)(void *context, const Origin *origin, uint32_t first, uint32_t count);
    /* The run's own file has been lowered, with all that it calls. Its names are settled. */
    void (*program)(void *context, const SourceFile *file);

    /* What the first result of a call is, where no function of the same file is meant. name: of the
     * source, with the dots of packages. */
    ResultKind (*result_kind)(void *context, const char *name);
    /* The translation calls a function that the front end brings along. Where this is not null,
     * such functions are no part of translations: they stand in a text of their own. */
    void (*library_call)(void *context);
    /* The translation holds all functions that the front end brings along. */
    bool holds_library;

    /* For programs that translate many files and know all of them beforehand. Where the file of a
     * name is that a file calls, in the place of the look-up described at find_file
     * (lower/program/program_files.h). The path stays valid until the run ends. */
    FileFinding (*find_file)(void *context, const char *caller, const char *name,
                             const char **path);
    /* With find_file: what an earlier run has found out about the function of the file, as the last
     * of these has been told; null for nothing. The text is valid until the next question. */
    const char *(*recall)(void *context, const char *path);
    void (*remember)(void *context, const char *path, const char *results);
    /* With find_file, in the place of class folders: the path of the file of a class's method, of
     * class_name null of any class that has it, but of a constructor; null for none. The path stays
     * valid until the run ends. */
    const char *(*find_method)(void *context, const char *class_name, const char *method);
};

/* Of the run under way; empty outside of one. */
extern Observers Observing;

/* For the next run that begins, of whatever thread, and for no other. */
void observe_next_run(const Observers &observers);
/* The start of a run, which gets what has been given, and its end. */
void begin_observation();
void end_observation();
