/* Names, settled from a whole function before a line of it is lowered: which of them are variables,
 * and whose. Parameters, outputs, targets anywhere in the function, loop variables, global and
 * persistent names are variables; every other name is a function. */
#pragma once

#include "syntax/names/name_map.h"
#include "syntax/tree/tree.h"

struct AssignedValue;
struct SetBranchCell;
struct Capture;
struct FieldUse;
struct Giving;
struct KnownParts;
struct LaterUses;
struct Findings;
struct LibraryFunction;
struct LoopUse;
struct Outcome;
struct PartChange;
struct Summary;
struct TakenPart;

enum SymbolFlag : uint32_t {
    SYMBOL_PARAMETER = 1 << 0,
    SYMBOL_OUTPUT = 1 << 1,
    SYMBOL_ASSIGNED = 1 << 2, /* as a whole: a target, a loop variable, the name after catch */
    SYMBOL_CHANGED = 1 << 3,  /* an element or a field is assigned */
    SYMBOL_GLOBAL = 1 << 4,
    SYMBOL_PERSISTENT = 1 << 5,
    SYMBOL_VARIABLE = (1 << 6) - 1, /* one of those above makes it a variable */
    SYMBOL_OTHER_VALUE = 1 << 6,    /* a whole assignment has another value than an @ expression */
    SYMBOL_SHARED = 1 << 7,         /* a nested function uses it too */
    SYMBOL_READ = 1 << 8,
    SYMBOL_MAY_BE_MISSING = 1 << 9, /* a parameter that exist is asked for, that has a default, or
                                       that is set before anything of it is read */
    SYMBOL_IN_SCRIPT = 1 << 10,     /* a called script uses it too */
    SYMBOL_CALLED = 1 << 11,        /* a handle or a command names the function of that name */
    SYMBOL_OPTIONS = 1 << 12,       /* a parameter that collects arguments Name=value */
    SYMBOL_IS_VALUE = 1 << 13,   /* it is read as a function would not be: alone in an expression,
                                    or with braces, a field, a colon or end after it */
    SYMBOL_HAS_BRACES = 1 << 14, /* braces are used after it */
    SYMBOL_GROWS_IN_PLANE = 1 << 15, /* a target of it grows_in_plane */
    SYMBOL_STARTS_AS_PART = 1 << 16, /* its first use in the text is a target of which a part is
                                        set */
    SYMBOL_SET_INSIDE = 1 << 17,     /* a nested function sets it */
    SYMBOL_IS_INDEXED = 1 << 18,     /* a colon or end stands in its parentheses somewhere */
    SYMBOL_READ_FIRST = 1 << 19,     /* it is read before it is set, in the order of the text */
    SYMBOL_CLASS_ASKED = 1 << 20,    /* its class_name is being looked for */
    SYMBOL_CLASS_KNOWN = 1 << 21,    /* it has been found */
    SYMBOL_GIVEN_COUNTS = 1 << 22,   /* a parameter whose given value may be used: not all ways set
                                         it as a whole before */
    SYMBOL_SIDES_ASKED = 1 << 23,    /* size, rows or columns is asked of it */
    SYMBOL_CAPTURED = 1 << 24,       /* an anonymous function names it */
    SYMBOL_GIVEN_AWAY = 1 << 25,     /* an assignment gives away what it holds (names/givings.h) */
    SYMBOL_LIVES_ON = 1 << 26,       /* and to what outlives the function */
    SYMBOL_GIVEN_IS_OWN = 1 << 27,   /* a parameter of whose given value a part may be set, or which
                                        may be returned with it */
    SYMBOL_TAKES_PARTS = 1 << 28, /* what others hold becomes part of it: [x, y], {x}, x(k) = y */
    SYMBOL_CELL_ASKED = 1 << 29   /* it is asked whether it is a cell */
};

/* A name in the functions that share it. */
struct Symbol {
    const char *name; /* interned */
    Scope *scope;     /* to which it belongs */
    uint32_t flags;
    uint32_t depth_changed; /* most selectors of a target of it, as depth_of counts them */
    PartChange *changes;    /* of parts (part_changes.h); null for none */
    LaterUses *later;       /* what is done with it after statements (later_uses.h), or null */
    const Giving *given;    /* the first one that gives away what it holds, or null */
    int32_t position;       /* of a parameter, from 1; else 0 */
    Node *definition;       /* FUNCTION of a nested function, FILE of a called script; else null */
    const char *written;    /* its host name; null until lowering asks for it */
    const Node *default_in; /* statement from which it has the given value (lower/procedures/
                               defaults.h); null for none */
    const Node *taken_in;   /* assignment that replaces what was given, which it reads
                               (lower/procedures/taken_parameters.h); null for none */
    Symbol *also_taken;     /* another parameter of which that is so, or the one of before; null for
                               none */
    const char *presence;   /* a host variable that tells whether it has a value; null for none */
    Symbol *next;           /* in its scope, or null */
    Symbol *around;         /* what the name stands for around the scope, or null */
    uint32_t last_change;   /* moment of the last assignment in the text; 0 for none */
    uint32_t last_read;     /* moment of the last reading outside of loops over it */
    uint32_t mark;          /* number of the anonymous function that captured it last */
    bool is_set;            /* where the walk over the names is (set_variables.h) */
    uint32_t unset_since;
    SetBranchCell *in_branches;
    const Node *last_named; /* NAME or HANDLE that stands last in the text */
    const Node *set_in;     /* block in which it is set as a whole before anything else is done with
                               it; null for none */
    uint32_t first_set;     /* end of the first target that sets it or a part of it; 0 for none */
    uint32_t last_asked;   /* where exist is last asked for it, of a parameter when it may have been
                              set; UINT32_MAX within a loop, 0 for nowhere */
    LoopUse *loops;        /* loops over it; null for none */
    int32_t results;       /* most targets that a call of it, as a variable, is assigned to */
    AssignedValue *values; /* what it is set to as a whole, the last one first; null for nothing */
    Findings *findings;    /* what has been found of its values; null before anybody asks */
    const LibraryFunction *library; /* of a function: MATLAB's own, unless the program has it */
    FieldUse *fields;               /* of it that are named in the text; null for none */
    FieldUse *cell_fields;          /* after which braces are used; null for none */
    Symbol *parts;                  /* the values of its fields (values/field_values.h), or null */
    bool has_given_parts;   /* it may have had fields that the walk has not seen being set */
    const Node *first_part; /* selector of that part; null for none */
    const Node *starts_in;  /* outermost statement that sets a part of it first; null for none */
    bool
        starts_in_front; /* it may have no value at a later target in that, so it begins in front */
    const Node *start;   /* selector of a target before which it may have no value, so that it must
                            begin with one; null for none */
    uint16_t now;    /* what its value may be where the values are being traced (tree/value.h) */
    uint16_t since;  /* what it has been since the outermost loop or try around began */
    uint16_t ever;   /* what it may be anywhere in the function; 0 before its values are traced */
    uint16_t result; /* of an output: what it may be where the function ends (values/summaries.h) */
    uint16_t given_kinds;  /* of a global: what it surely is given (values/held_values.h) */
    bool has_parts_result; /* it may have an inside there */
    const KnownParts *parts_result; /* and what is known of that; null for nothing */
    Outcome *outcome;       /* in the branches or the loop that are being joined (values/flow.cc) */
    const char *class_name; /* what class_of_value has found of all its values; null for nothing */
};

enum ScopeFlag : uint32_t {
    READS_NARGIN = 1 << 0, /* or checks the number of arguments in another way */
    READS_NARGOUT = 1 << 1,
    ASKS_EXIST = 1 << 2,
    HAS_VARARGIN = 1 << 3,    /* as last parameter */
    HAS_VARARGOUT = 1 << 4,   /* as last output */
    CHANGES_PARTS = 1 << 5,   /* an element or a field of a variable is assigned */
    NAMES_VARIABLES = 1 << 6, /* clear has names of variables among its words */
    HAS_COLON_TEXT = 1 << 7,  /* the text ":" stands somewhere */
    IS_LEFT_OPEN = 1 << 8,    /* a command: later ones may use and change its variables */
    IS_HANDLED = 1 << 9,      /* a variable may hold the function, as values are traced */
    HAS_LATER_USES = 1 << 10  /* they have been looked for (names/later_uses.h) */
};

/* A cell of a list of nodes or symbols. */
struct NodeCell {
    Node *node;
    NodeCell *next;
};
struct SymbolCell {
    Symbol *symbol;
    SymbolCell *next;
};

/* A name that a function asks exist for. */
struct AskedName {
    const Node *text; /* STRING */
    bool in_loop;
    AskedName *next;
};

/* The names of a function, an anonymous function or a script. */
struct Scope {
    Scope *outer;         /* of the function around it, or null */
    Node *owner;          /* FUNCTION, ANONYMOUS or FILE */
    uint32_t flags;       /* of ScopeFlag */
    int32_t parameters;   /* number of them, ~ included, varargin as last one not */
    Symbol *first_symbol; /* names that belong here, functions too: outputs, parameters, then in the
                             order of their first appearance */
    Symbol *last_symbol;
    SymbolCell *globals; /* global and persistent names declared here, in source order */
    SymbolCell *last_global;
    NodeCell *settings; /* of a nested function: NAME, where it first sets a variable around it */
    NodeCell *last_setting;
    NodeCell *nested; /* nested functions: FUNCTION, in source order */
    NodeCell *last_nested;
    Node *creator;     /* first statement that may create variables at run time, or null */
    NameMap words;     /* words of commands: the first COMMAND with the word */
    NameMap names;     /* in a function that asks exist, or clears by names: its symbols */
    AskedName *asked;  /* the last one first; null for none */
    Capture *captures; /* of an anonymous function: see first_captured */
    Capture *last_capture;
    uint32_t last_clear; /* moment of the last clear of all variables; 0 for none */
    uint32_t moment;     /* of an anonymous function: it does not see changes after it */
    uint32_t number;     /* of an anonymous function, within its function */
    const TakenPart
        *taken;       /* parts of parameters that are taken for arrays (values/taken_parts.h) */
    Summary *summary; /* of a function whose calls are followed (values/summaries.h), or null */
};

/* What a name may mean that the source does not tell. */
struct NameFinders {
    Node *(*script)(const Node *name);  /* the FILE of the script that a bare name calls, found and
                                           parsed; null when it is no script */
    bool (*function)(const Node *name); /* whether a file has a function of the name */
    bool is_prompt = false;             /* commands before may have set any variables */
};

/* Settles the names of a FUNCTION with its nested and anonymous functions, or of the statements of
 * a FILE (a script), and of the scripts that they call; sets the symbol of each NAME and HANDLE,
 * the scope of PARAMETERS and FILE, and the flag KEEPS_VARIABLE of FOR. Finders may be null. Where
 * the statements of a script are settled for a second caller, they forget the first. Answers the
 * scope, which the node has too. */
Scope *settle_function(Node *function, NameFinders finders);
Scope *settle_script(Node *file, NameFinders finders);

/* Called scripts are followed this deep. */
constexpr int DEEPEST_SCRIPT = 20;

/* The scope of a FUNCTION, ANONYMOUS or FILE; null before its names are settled. */
Scope *scope_of(const Node *node);

inline bool is_variable(const Symbol *symbol) { return (symbol->flags & SYMBOL_VARIABLE) != 0; }
/* Whether it is a variable that holds a function: all its values are @ expressions. */
bool holds_function(const Symbol *symbol);
/* Whether the parameter is changed in the function: it is a variable of its own in the host. */
bool is_copied_parameter(const Symbol *symbol);
/* Whether what it is given is changed or returned inside of the function, so that the caller's must
 * be another. */
bool owns_given_value(const Symbol *parameter);
/* What an interned name is in the scope or around it, or null. Where exist is not asked it takes
 * time for each name. */
Symbol *find_symbol(const Scope *scope, const char *name);

/* Whether the anonymous function's value of a variable around it may differ from what the variable
 * holds later: then it needs a copy of its own. */
bool needs_binding(const Scope *anonymous, const Symbol *symbol);
/* The next variable, in the order of first appearance, that an anonymous function takes from around
 * it: of capture null, the first. Null after the last. */
const Capture *next_captured(const Scope *anonymous, const Capture *capture);
Symbol *symbol_of(const Capture *capture);

/* The statement in front of offset that may create the name as a variable at run time: load, eval
 * and the like, or a command with the name among its words. Null when there is none. */
const Node *creator_of(const Scope *scope, const char *name, uint32_t offset);
