/* What is known of MATLAB's own functions: the kind and the shape of what they give. */
#pragma once

#include "syntax/values/value.h"

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
    SHAPE_FILE,      /* fopen: one number, where a file is opened */
    SHAPE_NOTHING    /* it does not return */
};

struct LibraryFunction {
    const char *name;
    Value value;           /* kinds and signs, whatever the arguments are */
    Value taken;           /* kinds and signs that it takes over from the arguments */
    ResultShape shape;     /* of the first result */
    Value others;          /* of results after the first: the whole value; 0: any */
    bool is_total = false; /* it takes any arguments, and does nothing but give its result */
};

/* The row of a function of MATLAB's library; null for an unknown one. */
const LibraryFunction *library_function(const char *name);
/* The value of a call with these arguments, first one of ARGUMENTS, whose values have been traced;
 * first: null for none. */
Value library_value(const LibraryFunction *function, const Node *arguments);
/* The value of each result after the first. */
Value library_others(const LibraryFunction *function, const Node *arguments);
