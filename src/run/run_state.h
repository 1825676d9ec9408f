/* The run state: process-wide variables that mTranslate sets up at the start of a run and that are
 * valid until it ends. AllocationTable, LastComment and the scanner's variables belong to it too
 * and stand with their subsystems. */
#pragma once

#include <stdint.h>

struct HashTable;
struct mProc;

/* One directory of the search path; node and text are kept until the run ends. */
struct SearchDirectory {
    const char *directory;
    SearchDirectory *next;
};

/* Names of functions that the translated code calls and the host did not translate: the work list
 * of the resolution, which replaces the table at every pass. */
extern HashTable *CalledNames;
/* Names of procedures that have been written, and of called names searched for already. */
extern HashTable *DefinedNames;
/* Names that denote variables: targets of assignments, parameters, outputs, globals. Grows through
 * the whole run, over all its procedures and files. */
extern HashTable *KnownVariables;
/* The generated text, a LongString. Every writer stores the handle that its append returns. */
extern char *OutputText;

/* 1 once the generated code uses a member of the host package. */
extern int32_t UsesArrayTools;
extern int32_t UsesLinearAlgebra;

/* Directories of called functions, first tried first; null when there is none. */
extern SearchDirectory *SearchPath;
/* 1 while a file is translated, 0 for a command: members of host packages then carry a prefix. */
extern int32_t FileMode;
/* Whether the host's function translator is asked and called names are recorded. */
extern int32_t AddTranslator;
/* Whether a source with errors or gaps gives a text and no error. */
extern int32_t KeepGoing;
/* Whether the host is asked how to display what statements without a semicolon do. */
extern int32_t Displays;
/* The procedure being written, or null. */
extern mProc *CurrentProc;
/* Parses that wait for the resolution of a script's functions. */
extern int32_t ResolutionDepth;
/* Name of the file being parsed, or null for a command. */
extern const char *InputFileName;
