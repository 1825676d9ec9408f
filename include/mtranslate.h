/* mtranslate: MATLAB source to the language of a host computer-algebra system.
 *
 * The library has one entry, mTranslate. A host loads the library, fills a HostKernelTable with
 * its own operations and calls the entry with it; the library reaches the host through that table
 * alone. One run at a time: all state is process-wide, and no host operation may start another
 * run. */
#ifndef MTRANSLATE_H
#define MTRANSLATE_H

#include <stdint.h>

#define MTRANSLATE_VERSION_MAJOR 0
#define MTRANSLATE_VERSION_MINOR 1
#define MTRANSLATE_VERSION_PATCH 0

#if defined(__GNUC__)
#define MTRANSLATE_API __attribute__((visibility("default")))
#else
#define MTRANSLATE_API
#endif

/* The library's own references to its variables stay inside, whatever a program calls its own. */
#if defined(__GNUC__) && defined(MTRANSLATE_BUILD) && !defined(__wasm__)
#define MTRANSLATE_VARIABLE __attribute__((visibility("protected")))
#else
#define MTRANSLATE_VARIABLE MTRANSLATE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A host value: one word. 0 is null (no value). With the lowest bit set it is an immediate
 * integer. Otherwise it is the address of an array of pointer-sized words: word 0 is the header,
 * the words from 1 on hold the elements. The first 32-bit unit of the object holds the type in
 * its top 6 bits. */
typedef uintptr_t HostValue;

enum {
    HOST_TYPE_SHIFT = 26,   /* the type of an object is its first 32-bit unit >> 26 */
    HOST_TYPE_NAME = 8,     /* a name; ToText gives its characters */
    HOST_TYPE_EQUATION = 21 /* left side in word 1, right side in word 2 */
};

/* The operations that a host hands to mTranslate. The library calls them on the thread of the run
 * only. All texts are NUL-terminated. */
typedef struct HostKernelTable {
    /* Raises message as a host error; "%1" in it stands for value, which is 0 where the message
     * has no "%1". The operation may leave by longjmp or by a C++ exception: what the run held is
     * released by the next mTranslate or by mTranslateRelease. When it returns, its result is not
     * looked at and the run goes on or ends with a null result. */
    HostValue (*RaiseError)(const char *message, HostValue value);
    /* Calls procedure with argument (a host string or a sequence). Result: a value or null. */
    HostValue (*CallHostFunction)(HostValue procedure, HostValue argument);
    /* The procedure that the text names, such as "Matlab:-TranslateName". */
    HostValue (*ResolveHostName)(const char *name);
    /* Nonzero for a host string. */
    int (*IsString)(HostValue value);
    /* Element index (from 1) of a host list. */
    HostValue (*ListElement)(HostValue list, int index);
    /* 0 for false, nonzero for true. */
    int (*ToBoolean)(HostValue value);
    /* The text of a host string or name. It must stay valid until the run ends. */
    const char *(*ToText)(HostValue value);
    /* Number of elements of the argument vector or of a host list. */
    int (*ElementCount)(HostValue value);
    /* A new sequence of count elements; the library stores the elements in its words 1 to count. */
    HostValue (*NewSequence)(int count);
    /* A new host string with a copy of text. */
    HostValue (*ToHostString)(const char *text);
    /* Nonzero for a host list. */
    int (*IsList)(HostValue value);
} HostKernelTable;

/* One translation run.
 *
 * kernel: the host's operations; must outlive the call.
 * args: the argument vector, element i in word i:
 *   1  host string, the mode: "command" or "file";
 *   2  host string, the MATLAB text (command) or the name of the .m file (file);
 *   3… options in any order: a list of strings adds search directories for called functions (the
 *      last directory of the last list is tried first); an equation AddTranslator = false keeps
 *      the host's function translator out; an equation Language = "matlab", "octave" or "classic"
 *      (a string or a name) says how the sources are read, without it as classic; an equation
 *      KeepGoing = true has matlab and octave give the text of a source with errors or gaps
 *      without raising the first one when the run ends; an equation Display = true has them ask
 *      the host for what statements without a semicolon display; anything else is ignored.
 *
 * Result: a host string with the translation; null for any other mode. Errors (arguments, syntax,
 * unreadable files, exhausted memory) are raised through RaiseError. Where that returns, the result
 * is null, or for an error in the source what could be translated besides it. */
MTRANSLATE_API HostValue mTranslate(const HostKernelTable *kernel, HostValue args);

/* Releases what an abandoned run (one that RaiseError left) still holds, as the next run would, and
 * the memory (1 MB at most) that the library keeps from run to run. A host that unloads the library
 * calls it last. Nothing happens when nothing is held, or while a run is under way. */
MTRANSLATE_API void mTranslateRelease(void);

/* The version of the library that is running, "MAJOR.MINOR.PATCH", which need not be that of this
 * header. A constant; may be asked at any time. */
MTRANSLATE_API const char *mTranslateVersion(void);

/* State that a host may read during a run, in the operations that the library calls: by dlsym, or
 * in code compiled with -fPIC (without it a program would read a copy of its own, and is not
 * linked). The records behind LastComment and InputSequence are the library's own, and gone when
 * the run has ended. */
struct vExpr;
struct mStat;
union SemanticValue;

/* Innermost open bracket: 0, 40 "(", 123 "{", 91 "[" or 259 (the targets of an assignment). */
extern MTRANSLATE_VARIABLE int BracketDelimiter;
/* The comment list completed last, or null. */
extern MTRANSLATE_VARIABLE struct vExpr *LastComment;
/* Statements of the source parsed last: its script, or the body of its first function; or null. */
extern MTRANSLATE_VARIABLE struct mStat *InputSequence;
/* Look-ahead token: -2 none, 0 end of the input, else the token's number. */
extern MTRANSLATE_VARIABLE int yychar;
/* Value of the look-ahead token: three words. */
extern MTRANSLATE_VARIABLE union SemanticValue yylval;
/* Syntax errors of the current parse. */
extern MTRANSLATE_VARIABLE int yynerrs;
/* Number of the current source line, from 1. */
extern MTRANSLATE_VARIABLE unsigned int SourceLine;
/* Characters consumed on the current line. */
extern MTRANSLATE_VARIABLE int SourcePos;
/* The current line's text after the line ends before it, and the same for the line before. */
extern MTRANSLATE_VARIABLE const char *SourceText;
extern MTRANSLATE_VARIABLE const char *PrevLine;
/* While the host is asked for a call in matlab or octave: how many results the call is to give, 0
 * for a call that is a statement. In all other questions one of those below. */
extern MTRANSLATE_VARIABLE int RequestedResults;
enum {
    HOST_RESULTS_UNKNOWN = -1, /* in classic, and outside of questions about calls */
    HOST_RESULTS_VARY = -2,    /* known only where the translation runs */
    HOST_HANDLE = -3           /* the name asked for is that of a function handle */
};

#ifdef __cplusplus
}
#endif

#endif
