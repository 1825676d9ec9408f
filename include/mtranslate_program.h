/* mtranslate for tools: editors, build tools, pages in a browser.
 *
 * One call translates one program and answers all that is to be told about it in one result. There
 * is no host behind it: the caller answers for the host, where it likes to, by a function.
 *
 *     mTranslateProgramRequest request = {0};
 *     request.size = sizeof request;
 *     request.command = "x = a*b'";
 *     const mTranslateProgramResult *result = mTranslateProgram(&request);
 *     fputs(result->text, stdout);
 *     mTranslateProgramRelease(result);
 *
 * Every struct begins with its size. Those of the caller have sizeof as the caller knows it: where
 * the library knows more fields these are 0, where it knows fewer the rest has to be 0. Those of
 * the library have the size of what is there: MTRANSLATE_PROGRAM_HAS tells whether a field is.
 *
 * Texts are bytes with a NUL after them; where a length stands beside one it may hold NULs. Offsets
 * and lengths are in bytes from 0, lines and columns from 1. */
#ifndef MTRANSLATE_PROGRAM_H
#define MTRANSLATE_PROGRAM_H

#include <mtranslate.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Whether the record behind the pointer is long enough to hold the field. */
#define MTRANSLATE_PROGRAM_HAS(record, field)                            \
    ((size_t)((const char *)&(record)->field - (const char *)(record)) + \
         sizeof((record)->field) <=                                      \
     (record)->size)

/* A file that the caller brings along, whether there is one of that name on the disk or not. */
typedef struct mTranslateProgramSource {
    uint32_t size;
    const char *name; /* as a path: "f.m", "src/@point/move.m", "/home/me/f.m" */
    const char *text; /* length bytes, without a NUL if need be */
    size_t length;
} mTranslateProgramSource;

/* What is known of a file that the library asks for. */
enum {
    MTRANSLATE_FILE_ABSENT = 0, /* there is none, unless the disk has it */
    MTRANSLATE_FILE_TEXT = 1,   /* its text has been answered */
    MTRANSLATE_FILE_FAILED = 2  /* it is there and cannot be read: the run ends */
};

/* What the host is asked for. */
enum {
    MTRANSLATE_QUESTION_NAME = 0, /* its text for a name */
    MTRANSLATE_QUESTION_CALL =
        1 /* its text for a call, or for a construct that is offered as one */
};

/* A question of the translation. All of it is valid during the question. */
typedef struct mTranslateProgramQuestion {
    uint32_t size;
    int32_t kind;                 /* MTRANSLATE_QUESTION_... */
    const char *name;             /* of the source */
    const char *const *arguments; /* of a call: their host texts; null for none */
    size_t argument_count;
    int32_t results; /* how many are asked for, or HOST_RESULTS_... (mtranslate.h) */
} mTranslateProgramQuestion;

/* Whose file is looked for. */
enum {
    MTRANSLATE_SEARCH_FILE = 0,  /* of a function or a script */
    MTRANSLATE_SEARCH_METHOD = 1 /* of a method or a constructor */
};

/* A name whose file is looked for. All of it is valid during the question. */
typedef struct mTranslateProgramSearch {
    uint32_t size;
    int32_t kind;           /* MTRANSLATE_SEARCH_... */
    const char *name;       /* of a function, with the dots of packages; of a method alone */
    const char *class_name; /* of a method, with the same; null: of any class that has the method,
                               but for constructors */
    const char *caller;     /* path of the file that calls it; null for a command */
} mTranslateProgramSearch;

/* What the first result of a call is. */
enum {
    MTRANSLATE_RESULT_UNKNOWN = 0,
    MTRANSLATE_RESULT_NUMBER = 1, /* a single number */
    MTRANSLATE_RESULT_TRUTH = 2,  /* a single truth value */
    MTRANSLATE_RESULT_TEXT = 3,
    MTRANSLATE_RESULT_CELL = 4,
    MTRANSLATE_RESULT_RECORD = 5,
    MTRANSLATE_RESULT_SEVERAL = 6 /* an array of any number of elements */
};

/* What stands behind a path. */
enum {
    MTRANSLATE_IS_GIVEN = 0, /* the caller's text */
    MTRANSLATE_IS_REGULAR = 1,
    MTRANSLATE_IS_PIPE = 2,
    MTRANSLATE_IS_DEVICE = 3,
    MTRANSLATE_IS_OTHER = 4
};

/* A file that the run opens. Names of files are in their shortest form. */
typedef struct mTranslateProgramFile {
    uint32_t size;
    const char *name;
    const char *path; /* as the run makes it of a folder and a name: "./f.m" for the name "f.m" */
    int32_t kind;     /* MTRANSLATE_IS_... */
    uint64_t bytes;   /* of what is on the disk, as it tells; and what it is known by there: */
    uint64_t device;
    uint64_t inode;
    const char *text; /* what has been read, in matlab and octave, where MTRANSLATE_TEXTS asks for
                         it; else null */
    size_t text_length;
} mTranslateProgramFile;

/* Flags of a request. */
enum {
    MTRANSLATE_WITHOUT_DISK = 1,       /* no file or folder of the disk is looked at */
    MTRANSLATE_WITHOUT_TRANSLATOR = 2, /* no calls are asked for, no called files looked for */
    /* Of matlab and octave alone: */
    MTRANSLATE_DISPLAYS = 4, /* the host is asked how to display values */
    MTRANSLATE_DETAILS = 8,  /* pieces, outline and names */
    MTRANSLATE_TREE = 16,    /* the tree */
    MTRANSLATE_VALUES = 32,  /* the tree with what is known of values */
    MTRANSLATE_TEXTS = 64,   /* the texts of the files */
    MTRANSLATE_PIECES = 128,
    MTRANSLATE_OUTLINE = 256,        /* functions, statements, calls, comments, statistics */
    MTRANSLATE_ONLY_READ = 512,      /* the source is read, with messages about that, and no more */
    MTRANSLATE_LIBRARY_APART = 1024, /* the text leaves out the functions of MATLAB's library that
                                        the translator brings along */
    MTRANSLATE_WHOLE_LIBRARY = 2048, /* the text holds all of these */
    MTRANSLATE_TOKENS = 8192,        /* the tokens */
    MTRANSLATE_WITHOUT_METHODS = 16384, /* find knows no methods of classes: it is asked for none */
    /* Of classic alone: */
    MTRANSLATE_COUNTS_ON = 4096 /* it numbers its variables on from the run before */
};

/* What is to be translated. All of it belongs to the caller and has to stay as it is until
 * mTranslateProgram returns. The functions may be null; they are called on its thread, and have to
 * return. */
typedef struct mTranslateProgramRequest {
    uint32_t size;
    uint32_t flags; /* of MTRANSLATE_WITHOUT_DISK ... */
    /* Either the text of a command or the name of a file, the other null. */
    const char *command;
    const char *file;
    const char *language; /* "matlab", "octave" or "classic"; null: matlab */
    /* Sources that the run may need, that of the file among them or not: source_count structs of
     * the size that the first one tells; null for none. */
    const mTranslateProgramSource *sources;
    size_t source_count;
    /* Where called functions are looked for, the first one first. Null: beside the file, and for a
     * command nowhere. */
    const char *const *folders;
    size_t folder_count;
    uint32_t max_memory; /* of the run, in MB, 1 to 1048576; 0: by the length of its sources */
    void *context;       /* handed to all functions */
    /* The text of a file that is none of the sources. Asked once in a run for a path, in
     * its shortest form ("a/b.m" for "a/./b.m"). Answers MTRANSLATE_FILE_...; sets text and length
     * for a text, which is copied at once. */
    int32_t (*read)(void *context, const char *name, const char **text, size_t *length);
    /* The host's text, which is copied at once; null where it has none. */
    const char *(*answer)(void *context, const mTranslateProgramQuestion *question);
    /* Whether a file of the disk may be opened: 0 ends the run as unreadable. Asked each time
     * before one is; the file is valid during the question, and has no text. */
    int32_t (*allow)(void *context, const mTranslateProgramFile *file);
    /* For a caller that knows all files and translates each for itself, in matlab and octave: the
     * path of a file, which is copied at once, or null for none, in the place of looking into
     * folders. Functions stay calls; the statements of a script still stand where it is called. */
    const char *(*find)(void *context, const mTranslateProgramSearch *search);
    /* What the result is of a function that no file of the run defines: MTRANSLATE_RESULT_..., in
     * matlab and octave. The name is valid during the question, and has the dots of packages. */
    int32_t (*result_kind)(void *context, const char *name);
    /* For who translates many files of find's: what a run has found out about the file of a path,
     * a text that the next runs with the same find, result_kind and language need not find out
     * again as long as the files stay as they are; the caller keeps it. It is valid during the
     * call. */
    void (*remember)(void *context, const char *path, const char *results);
    /* That text, which is copied at once, or null for none. */
    const char *(*recall)(void *context, const char *path);
} mTranslateProgramRequest;

/* How a run has ended. */
enum {
    MTRANSLATE_PROGRAM_DONE = 0,    /* what can be translated is: the messages tell what is not */
    MTRANSLATE_PROGRAM_STOPPED = 1, /* an error of a source ended it (classic only) */
    MTRANSLATE_PROGRAM_UNREADABLE = 2, /* a file is absent or cannot be read */
    MTRANSLATE_PROGRAM_TOO_LARGE = 3,  /* it would take more memory than it may */
    MTRANSLATE_PROGRAM_NO_MEMORY = 4,  /* the system gives no more */
    MTRANSLATE_PROGRAM_INVALID = 5,    /* the request is not as described here: nothing was done */
    MTRANSLATE_PROGRAM_REFUSED = 6     /* another run is under way: nothing was done */
};

/* How much a message matters. */
enum {
    MTRANSLATE_SEVERITY_ERROR = 0,   /* the source is not valid, or of a part that is left out */
    MTRANSLATE_SEVERITY_GAP = 1,     /* valid, and without a form in the host's language */
    MTRANSLATE_SEVERITY_WARNING = 2, /* translated, and it may mean something else */
    MTRANSLATE_SEVERITY_NOTE = 3     /* translated, and worth a look */
};

/* A part of a source. Ends are not included. Columns in UTF-16 count 2 for a character beyond
 * U+FFFF, and 1 for a byte that is no UTF-8; those in characters always count 1. */
typedef struct mTranslateProgramRange {
    uint32_t size;
    const char *file; /* its name in the shortest form; null for the command */
    uint32_t begin;
    uint32_t end;
    uint32_t line;
    uint32_t column; /* in bytes */
    uint32_t column_utf16;
    uint32_t end_line;
    uint32_t end_column;
    uint32_t end_column_utf16;
    uint32_t column_characters;
    uint32_t end_column_characters;
} mTranslateProgramRange;

/* A kind of messages, as docs/messages.md has it. Texts are constants. */
typedef struct mTranslateMessageKind {
    uint32_t size;
    int32_t severity; /* MTRANSLATE_SEVERITY_... */
    const char *code; /* "MT201" */
    const char *name; /* "try-catch" */
    const char *form; /* the text of a message, with a %s for each operand */
    uint32_t operand_count;
    const char *explanation; /* what it means, in sentences */
    const char *example;     /* a source with this message alone; null for none */
    const char *help;        /* what to do, in sentences */
} mTranslateMessageKind;

typedef struct mTranslateProgramMessage {
    uint32_t size;
    int32_t severity;            /* MTRANSLATE_SEVERITY_... */
    const char *code;            /* "MT201" (docs/messages.md); empty for what ended the run */
    const char *name;            /* "try-catch"; empty for the same */
    const char *text;            /* one line */
    const char *help;            /* what to do, in sentences; may be empty */
    const char *const *operands; /* what stands in the text: names, mostly; null for none */
    size_t operand_count;
    const mTranslateProgramRange *place; /* null for none */
    const char *source_line; /* the line it begins in, without line end; null for none */
    size_t source_line_length;
    const char *called_from; /* name of the file that calls that of the place, or null */
    uint32_t called_from_line;
    const mTranslateMessageKind *kind; /* null for what ended the run */
} mTranslateProgramMessage;

/* Where a run has ended that is not done: what it was reading then. */
typedef struct mTranslateProgramEnd {
    uint32_t size;
    const char *path; /* of the file; null for the command, and where it was reading nothing */
    uint32_t line;    /* that it has reached; 0 for none */
    uint64_t
        offset; /* the same in bytes: after the end, where classic asks for more of a command */
} mTranslateProgramEnd;

/* What lines of the host text come from. */
enum {
    MTRANSLATE_LINES_STATEMENT = 0, /* a statement, with what it needs in front */
    MTRANSLATE_LINES_HEAD = 1,      /* a part of one that holds others: if, elseif, case ... */
    MTRANSLATE_LINES_END = 2,       /* its end, or that of a function */
    MTRANSLATE_LINES_COMMENT = 3,
    MTRANSLATE_LINES_FUNCTION = 4, /* the head of a function, with declarations */
    MTRANSLATE_LINES_PRELUDE = 5,  /* what parameters need in front of the statements */
    MTRANSLATE_LINES_RESULT = 6,   /* the return that a function ends with */
    MTRANSLATE_LINES_GAP = 7       /* source that is put as comments */
};

/* A part of a source and the lines of the host text that come from it. Several pieces may share a
 * line, and a part may be several pieces. */
typedef struct mTranslateProgramPiece {
    uint32_t size;
    int32_t kind;                        /* MTRANSLATE_LINES_... */
    const mTranslateProgramRange *place; /* empty where nothing stands in the source */
    uint32_t first_line;
    uint32_t last_line; /* included */
} mTranslateProgramPiece;

/* A function of the run's own source. */
typedef struct mTranslateProgramFunction {
    uint32_t size;
    int32_t outer;    /* the function around it, by its place in the list; -1 for none */
    const char *name; /* with dots as written */
    const mTranslateProgramRange *place;
} mTranslateProgramFunction;

/* The second operand of the message that a function is found nowhere (MT401), after its name. */
#define MTRANSLATE_FOUND_NOWHERE "nowhere"
#define MTRANSLATE_FOUND_IN_CLASSES "nowhere but in classes"

/* What becomes of a call. */
enum {
    MTRANSLATE_CALL_OF_OWN = 0,      /* a function of the same file is called */
    MTRANSLATE_CALL_OF_FILE = 1,     /* one of another file, or a script */
    MTRANSLATE_CALL_OF_HOST = 2,     /* the host has answered */
    MTRANSLATE_CALL_OF_LANGUAGE = 3, /* the translator has a form for it */
    MTRANSLATE_CALL_OF_CLASS = 4,    /* only classes have it: the host gets the call as it is */
    MTRANSLATE_CALL_OF_UNKNOWN = 5   /* none of these: the host gets the call as it is */
};

/* A statement of the run's own source. */
typedef struct mTranslateProgramStatement {
    uint32_t size;
    int32_t outer;       /* the statement that holds it, by its place in the list; -1 for none */
    int32_t is_read;     /* 0 where it could not be read: its place may hold many */
    int32_t has_message; /* 1 where an error, a gap or a warning is about it, and not about what it
                            holds; that a function is unknown, its calls tell */
    const mTranslateProgramRange *place;
} mTranslateProgramStatement;

/* A call, or a handle of a function, in the run's own source. */
typedef struct mTranslateProgramCall {
    uint32_t size;
    int32_t end; /* MTRANSLATE_CALL_... */
    const char *name;
    const char *target;                  /* the file that holds what is called, or null: its name,
                                            or the path that find has answered */
    int32_t function;                    /* in which it stands; -1 for none */
    const mTranslateProgramRange *place; /* of the name */
    int32_t statement;                   /* the innermost in which it stands; -1 for none */
} mTranslateProgramCall;

/* What a name is. */
enum {
    MTRANSLATE_NAME_FUNCTION = 0, /* not of the function: how each use ends, the calls tell */
    MTRANSLATE_NAME_VARIABLE = 1,
    MTRANSLATE_NAME_PARAMETER = 2,
    MTRANSLATE_NAME_OUTPUT = 3,
    MTRANSLATE_NAME_GLOBAL = 4,
    MTRANSLATE_NAME_PERSISTENT = 5
};

/* A name of a function or of the statements of the run's own source. */
typedef struct mTranslateProgramName {
    uint32_t size;
    int32_t kind; /* MTRANSLATE_NAME_... */
    const char *text;
    int32_t function;                          /* to which it belongs; -1 for the statements */
    const mTranslateProgramRange *definition;  /* the first place that gives it a value, or the
                                                  function of the same file; null for none */
    const mTranslateProgramRange *const *uses; /* all places, in source order */
    size_t use_count;
} mTranslateProgramName;

typedef struct mTranslateProgramComment {
    uint32_t size;
    int32_t is_kept; /* 1 where it stands in the host text */
    const mTranslateProgramRange *place;
} mTranslateProgramComment;

/* What a token is. */
enum {
    MTRANSLATE_TOKEN_NAME = 0,
    MTRANSLATE_TOKEN_NUMBER = 1,
    MTRANSLATE_TOKEN_TEXT = 2,    /* with its quotes */
    MTRANSLATE_TOKEN_KEYWORD = 3, /* end as a position too */
    MTRANSLATE_TOKEN_OPERATOR = 4,
    MTRANSLATE_TOKEN_BRACKET = 5,
    MTRANSLATE_TOKEN_SEPARATOR = 6, /* a comma or semicolon */
    MTRANSLATE_TOKEN_COMMENT = 7,   /* a line */
    MTRANSLATE_TOKEN_FIELD = 8,     /* with its dot */
    MTRANSLATE_TOKEN_COMMAND = 9,   /* a name and its words: hold on; or a line for the system */
    MTRANSLATE_TOKEN_BAD = 10       /* an error, after which the rest of the line is left out */
};

/* A token of the run's own source. */
typedef struct mTranslateProgramToken {
    uint32_t size;
    int32_t kind; /* MTRANSLATE_TOKEN_... */
    const mTranslateProgramRange *place;
} mTranslateProgramToken;

/* Of the run's own source. */
typedef struct mTranslateProgramStatistics {
    uint32_t size;
    uint32_t lines;
    uint32_t bytes;
    uint32_t statements;      /* what could not be read is one */
    uint32_t without_message; /* those without error, gap and warning, all of whose calls end */
    uint32_t comments;        /* each line of a block comment is one */
    uint32_t comments_kept;
} mTranslateProgramStatistics;

/* All of it is valid until it is released, and the caller's alone. Lists hold pointers, none of
 * them null; a list itself is null where it is empty. */
typedef struct mTranslateProgramResult {
    uint32_t size;
    int32_t status;      /* MTRANSLATE_PROGRAM_... */
    const char *failure; /* what ended the run, in a line; null where it is done */
    const char *text;    /* the host text; empty where the run is not done */
    size_t text_length;
    /* Those of the run's own source first, then of each file that is called, by their places. */
    const mTranslateProgramMessage *const *messages;
    size_t message_count;
    /* In the order in which they have been opened, that of the request first. */
    const mTranslateProgramFile *const *files;
    size_t file_count;
    /* The rest is of matlab and octave, empty and null where the run is not done. Asked for by
     * MTRANSLATE_DETAILS, pieces by their first lines: */
    const mTranslateProgramPiece *const *pieces;
    size_t piece_count;
    /* In source order: */
    const mTranslateProgramFunction *const *functions; /* nested ones too */
    size_t function_count;
    const mTranslateProgramCall *const *calls;
    size_t call_count;
    const mTranslateProgramName *const *names; /* by their first uses */
    size_t name_count;
    const mTranslateProgramComment *const *comments;
    size_t comment_count;
    const mTranslateProgramStatistics *statistics;
    const char *tree; /* of the run's own source, as mtranslate --dump-tree prints it; asked for by
                         MTRANSLATE_TREE */
    const char *values; /* the same as --dump-values prints it; asked for by MTRANSLATE_VALUES */
    const mTranslateProgramStatement *const *statements; /* in source order */
    size_t statement_count;
    int32_t needs_library; /* 1 where the text leaves out functions that it calls, by
                              MTRANSLATE_LIBRARY_APART */
    const mTranslateProgramEnd
        *end; /* of classic too; null where the run is done or has not begun */
    const mTranslateProgramToken *const
        *tokens; /* in source order; asked for by MTRANSLATE_TOKENS */
    size_t token_count;
} mTranslateProgramResult;

/* Translates. Never null; whatever fails is told in the status. All state is process-wide: a second
 * call while one is under way, or a run of mTranslate, is refused. */
MTRANSLATE_API const mTranslateProgramResult *mTranslateProgram(
    const mTranslateProgramRequest *request);

/* All kinds of messages, by their codes; count, unless null, gets their number. Constants; may be
 * asked at any time. */
MTRANSLATE_API const mTranslateMessageKind *const *mTranslateMessageKinds(size_t *count);

/* The kind with the code ("MT201", in any case) or the name; null when there is none. The same. */
MTRANSLATE_API const mTranslateMessageKind *mTranslateFindMessageKind(const char *code_or_name);

/* Gives the result's memory back; nothing happens for null. Of any thread, at any time. */
MTRANSLATE_API void mTranslateProgramRelease(const mTranslateProgramResult *result);

#ifdef __cplusplus
}
#endif

#endif
