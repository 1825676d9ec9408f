/* Indices: argument lists after the text of whatever is indexed or called. */
#pragma once

#include "translate/expressions.h"

/* What an index selects from, which decides how its ranges are written. */
enum IndexKind {
    FUNCTION_INDEX, /* a function, or a name that is not known: its ranges are values */
    VARIABLE_INDEX, /* an array */
    CELL_INDEX,     /* the contents of a cell array */
    ARGS_INDEX      /* the host procedure's own arguments: in square brackets */
};

/* base(arguments), with colons and ranges as host index ranges where the kind allows it.
 * base: any host text; it lends itself to the bound of a stepped range that ends with end.
 * arguments: null for none; the cells are read during the call only. */
mExpr *new_element_node(const char *base, IndexKind kind, const vExpr *arguments);
/* The same as a value: of a lone colon, a column. */
mExpr *new_index_node(const char *base, IndexKind kind, const vExpr *arguments);

/* An argument list that is being written. */
struct Index {
    const char *base;
    IndexKind kind;
    int count; /* of the arguments */
};

/* Bytes that suffice for the arguments, with what stands between them. */
size_t arguments_size(const char *base, const vExpr *arguments);
/* Writes the arguments, separated by ", ". */
void write_arguments(Writer *to, const Index *index, const vExpr *arguments);
/* Writes one of them, number k from 1. */
void write_argument(Writer *to, const Index *index, int k, const mExpr *argument);
