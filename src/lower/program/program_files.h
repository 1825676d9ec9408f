/* The files of a run: where they are looked for, and what is in them. A file is read when a name is
 * first found in it. */
#pragma once

#include "diagnose/source.h"
#include "lower/classes/class_names.h"
#include "support/observers.h"
#include "syntax/names/name_map.h"
#include "syntax/parse/file_kinds.h"

struct Folder;
struct SourceFile;

/* A function of a file. */
struct FileFunction {
    const char *name;    /* interned; of the first one of a called file: the file's name */
    const char *written; /* what its procedure is called; no other function of the run is */
    Node *node;          /* FUNCTION */
    bool is_traced;      /* its names have been settled, and its values traced */
    FileFunction *next;  /* after it in the file, or null */
};

struct SourceFile {
    const char *path; /* null for a command */
    const char *stem; /* its name without folder and ending, interned; null for a command */
    ClassPlace place; /* the class whose folder it is in */
    Source *source;
    Node *tree;              /* FILE */
    FileFunction *functions; /* in source order; null for none */
    bool is_script;          /* its name stands for its statements, not for a function */
    bool is_queued;          /* it has been called */
    bool is_open;            /* its statements are being lowered */
    bool is_library;         /* a function that the front end brings along */
    bool is_apart;           /* and that is not written: it has a name, and no tree */
    Folder *private_folder;  /* of what only this file's folder may call; null for none */
    bool has_fewest;         /* the next is made */
    NameMap fewest;          /* arguments of calls in it (argument_counts.cc) */
    NameMap callees;         /* what names mean in this file (called_functions.cc) */
    NameMap places;          /* of files that names mean, for who knows_files */
    NameMap outside;         /* what functions of others give (outside_functions.cc) */
    NameMap globals;         /* what its functions give them (syntax/trace/held_values.h) */
    NameMap undecided;       /* methods about which a message has been given (methods.cc) */
    SourceFile *namesake;    /* another file with this stem, read before, or null */
};

/* Where the file of a name that a file calls is, for who knows all files beforehand. */
enum FileFinding : uint8_t {
    NOT_FOUND,
    FOUND_ELSEWHERE, /* it is translated for itself: the run needs its name alone */
    FOUND_HERE       /* a script, whose statements the run needs: its path is answered */
};
/* Whether an observer knows them. */
inline bool knows_files() { return Observing.find_file; }
/* As described at Observers::find_file; for where knows_files. */
inline FileFinding find_known_file(const char *caller, const char *name, const char **path) {
    return Observing.find_file(Observing.context, caller, name, path);
}

/* The file whose nodes are being settled and lowered. */
extern SourceFile *CurrentFile;

/* Forgets the files of the run before, at the start of a run; all are read in this language. */
void begin_files(SourceLanguage language);
/* The file of the run's own source; path null for a command. */
SourceFile *read_main_file(const char *path, const char *text, uint32_t length);
/* Where a function is found: the file of the run, or of what is translated for itself the path
 * alone. Both null: nowhere. */
struct FoundFile {
    SourceFile *file;
    const char *path;
};
/* The file NAME.m that the name means in the current file: in the private folder beside it, the
 * constructor of a class, then along the search path. place: whose message it is, NAME or HANDLE.
 */
FoundFile find_file(const Node *place);
/* The same of a method; both names are interned. */
FoundFile find_method_file(const Node *place, const char *class_name, const char *method);
/* Whether the file's first function is a method or the constructor of its class. */
bool is_method_file(const SourceFile *file);
/* The file of functions that the front end brings along as this MATLAB text, a constant: the first
 * of them is called. Their procedures are named apart from all others. */
SourceFile *library_file(const char *text);

/* Whether there may be such a file, or a method of the name; none is read. */
bool has_file(const Node *place);
/* Whether there may be a file of the interned name on the search path. */
bool is_on_path(const char *name);

/* The path of the file that the name means in the current file, in no class folder; null for none,
 * and perhaps for a script. */
const char *path_of_function(const Node *place);
/* Whether that is a script. Its text may be read. */
bool means_script(const Node *place);
/* What is in that file, read for what it tells: it does not become part of the run, and nothing is
 * reported. Null where it has errors, or is no regular file. */
SourceFile *look_into_file(const char *path);

/* Whether the text of a file makes it a script; for who knows_files, while the run lowers. The text
 * may go afterwards. */
bool is_script_text(const char *path, const char *text, uint32_t length);

/* Lets nobody else be called by the interned host name; for what is not in the run's files. */
void reserve_name(const char *written);
/* The host name, or if that is taken with a number after it; from now on it is taken. */
const char *claim_name(const char *written);
/* The file with a function of that host name; null when there is none. */
const SourceFile *file_with_procedure(const char *written);
