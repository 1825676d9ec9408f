/* What is known of MATLAB's own functions: the kind and the shape of what they give, and what they
 * do. */
#pragma once

#include "support/row_index.h"
#include "syntax/tree/value.h"

enum ResultShape : uint8_t {
    SHAPE_ONE,   /* a single value */
    SHAPE_TEST,  /* one; of a cell, any */
    SHAPE_NAMED, /* one; where an argument after the first is a cell, any */
    SHAPE_ALL,   /* element by element, of all arguments */
    SHAPE_FIRST, /* as the first argument */
    SHAPE_TEXT,  /* a text; of a cell a cell */
    SHAPE_TEXTS, /* the same; of a text of several rows one of several rows */
    SHAPE_ROW,
    SHAPE_COLUMN,
    SHAPE_VECTOR, /* a row or a column */
    SHAPE_ARRAY,  /* an array */
    SHAPE_ANY,
    SHAPE_SIZES,     /* the arguments are the numbers of rows and columns */
    SHAPE_REDUCED,   /* a vector to one value, else every column; with a dimension, any */
    SHAPE_EXTREME,   /* the same of one argument, element by element of two */
    SHAPE_POSITIONS, /* find: one position where one is asked for, else any number */
    SHAPE_SIZE,      /* size: one number of two arguments, else a row */
    SHAPE_STRUCT,    /* struct: one record, unless a value is a cell */
    SHAPE_JOINT,     /* any; it takes over from all arguments, where others do from the first */
    SHAPE_APPLIED,   /* cellfun: whatever, of the shape of the second argument; in a cell, or not */
    SHAPE_MATCHES,   /* regexp: what the first of its words asks for */
    SHAPE_FILE,      /* fopen: one number, where a file is opened */
    SHAPE_NOTHING,   /* it does not return */
    SHAPE_UNKNOWN    /* nothing is said of what it gives: library_result has no such row */
};

enum LibraryTrait : uint32_t {
    /* Of the result. */
    IS_TOTAL = 1 << 0,         /* it takes any arguments, and does nothing but give its result */
    IS_CONSTANT = 1 << 1,      /* without arguments it has a value that nothing can go wrong with */
    STANDS_FOR_VALUE = 1 << 2, /* its name is mostly read as that of a value */
    NEVER_NEGATIVE = 1 << 3,   /* whatever the arguments are */
    NEVER_BELOW = 1 << 4,      /* a bound below all arguments, which is whole, bounds it too */
    NEVER_CELL = 1 << 5,
    NEVER_OBJECT = 1 << 6, /* numbers or texts, whatever the arguments are */
    MAKES_MASK = 1 << 7,   /* as an index, a mask */
    /* What it asks for. */
    TELLS_KIND = 1 << 8,       /* of which kind its argument is */
    ASKS_SIDES = 1 << 9,       /* the sides of its first argument */
    ASKS_INPUTS = 1 << 10,     /* how many arguments the function has been given */
    ASKS_OUTPUTS = 1 << 11,    /* how many results it is asked for */
    ASKS_PRESENCE = 1 << 12,   /* whether something of a name is there */
    READS_VARIABLES = 1 << 13, /* any of its caller's */
    /* What it does. */
    SETS_VARIABLES = 1 << 14,   /* any of its caller's, also without running a text */
    CLEARS_VARIABLES = 1 << 15, /* of the names that it is given */
    RUNS_TEXT = 1 << 16,        /* as a program among the caller's variables */
    FINDS_FUNCTIONS = 1 << 17,  /* of the file, by texts or handles, or runs texts */
    APPLIES_FUNCTION = 1 << 18, /* its first argument, to each element */
    CALLS_FUNCTION = 1 << 19,   /* its first argument, once */
    RAISES_ERROR = 1 << 20,
    /* Of its arguments. */
    TAKES_CODE = 1 << 21,     /* texts that are programs, or names of variables to be set */
    TAKES_FIELD = 1 << 22,    /* the second one is the name of a field */
    PAIRS_ELEMENTS = 1 << 23, /* each two elements by themselves */
    IS_OPERATOR = 1 << 24,    /* operators, brackets or indices mean it: an object that has it as a
                                 method may be any argument */
    HOLDS_TEXTS = 1 << 25,    /* its result is a cell of texts */
    TAKES_NUMBERS = 1 << 26,  /* one argument, of any numbers, and only gives its result */
    TELLS_CELLS = 1 << 27,    /* a cell of one element from the element */
    KEEPS_INSIDE = 1 << 28,  /* what lies inside of its result is told by values/library_parts.cc */
    TAKES_FUNCTION = 1 << 29 /* its first argument is a function, or the name of one */
};

struct LibraryFunction {
    const char *name;
    Value value;         /* kinds and signs, whatever the arguments are */
    Value taken;         /* kinds and signs that it takes over from the arguments */
    ResultShape shape;   /* of the first result */
    Value others;        /* of results after the first: the whole value; 0: any */
    uint32_t traits = 0; /* of LibraryTrait */
};

/* The row of a function of MATLAB's library; null for an unknown one. */
const LibraryFunction *library_function(RowName name);
/* The same, where the row says what the function gives; null for others. */
const LibraryFunction *library_result(const char *name);
/* Whether a function of that name has one of the traits. What is asked of each name of a program
 * is asked of its spelling (scan/spellings.h). */
bool has_trait(const char *name, uint32_t traits);
